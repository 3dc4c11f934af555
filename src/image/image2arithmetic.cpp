// The operators of images, which `ImageArithmetic` carries out.

#include "image/image2.h"
#include "image/imagearithmetic.h"
#include "numerics/scalar.h"

#define CRENARA_IMAGE2_OPERATOR(SIGN, OPERATION, OPERAND)                                          \
    Image2& Image2::operator SIGN##=(const OPERAND & operand)                                      \
    {                                                                                              \
        ImageArithmetic().OPERATION(*this, operand);                                               \
        return *this;                                                                              \
    }                                                                                              \
                                                                                                   \
    Image2 Image2::operator SIGN(const OPERAND & operand) const                                    \
    {                                                                                              \
        Image2 result(*this);                                                                      \
        result SIGN##= operand;                                                                    \
        return result;                                                                             \
    }

CRENARA_IMAGE2_OPERATOR(+, add, Scalar)
CRENARA_IMAGE2_OPERATOR(-, subtract, Scalar)
CRENARA_IMAGE2_OPERATOR(*, multiply, Scalar)
CRENARA_IMAGE2_OPERATOR(/, divide, Scalar)
CRENARA_IMAGE2_OPERATOR(+, add, Image2)
CRENARA_IMAGE2_OPERATOR(-, subtract, Image2)
CRENARA_IMAGE2_OPERATOR(*, multiply, Image2)
CRENARA_IMAGE2_OPERATOR(/, divide, Image2)

#undef CRENARA_IMAGE2_OPERATOR
