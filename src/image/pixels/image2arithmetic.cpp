// Part of `Image2`: the operators, which `ImageArithmetic` carries out.

#include "image/pixels/image2.h"
#include "image/pixels/imagearithmetic.h"
#include "numerics/scalar.h"

Image2& Image2::operator+=(const Scalar& value)
{
    ImageArithmetic().add(*this, value);
    return *this;
}

Image2& Image2::operator-=(const Scalar& value)
{
    ImageArithmetic().subtract(*this, value);
    return *this;
}

Image2& Image2::operator*=(const Scalar& value)
{
    ImageArithmetic().multiply(*this, value);
    return *this;
}

Image2& Image2::operator/=(const Scalar& value)
{
    ImageArithmetic().divide(*this, value);
    return *this;
}

Image2& Image2::operator+=(const Image2& other)
{
    ImageArithmetic().add(*this, other);
    return *this;
}

Image2& Image2::operator-=(const Image2& other)
{
    ImageArithmetic().subtract(*this, other);
    return *this;
}

Image2& Image2::operator*=(const Image2& other)
{
    ImageArithmetic().multiply(*this, other);
    return *this;
}

Image2& Image2::operator/=(const Image2& other)
{
    ImageArithmetic().divide(*this, other);
    return *this;
}

Image2 Image2::operator+(const Scalar& value) const
{
    return Image2(*this) += value;
}

Image2 Image2::operator-(const Scalar& value) const
{
    return Image2(*this) -= value;
}

Image2 Image2::operator*(const Scalar& value) const
{
    return Image2(*this) *= value;
}

Image2 Image2::operator/(const Scalar& value) const
{
    return Image2(*this) /= value;
}

Image2 Image2::operator+(const Image2& other) const
{
    return Image2(*this) += other;
}

Image2 Image2::operator-(const Image2& other) const
{
    return Image2(*this) -= other;
}

Image2 Image2::operator*(const Image2& other) const
{
    return Image2(*this) *= other;
}

Image2 Image2::operator/(const Image2& other) const
{
    return Image2(*this) /= other;
}
