#pragma once

#include "image/filters/pixelmatrixprocessing.h"

/// A two-dimensional operation that can be limited to the elements whose mask is not 0. The mask is
/// borrowed: it must outlive the operation, or be unset before it goes.
template <class T>
class MaskPixelMatrixProcessing : public virtual PixelMatrixProcessing<T>
{
public:
    MaskPixelMatrixProcessing();
    ~MaskPixelMatrixProcessing() override;

    virtual void setMask(const PixelMatrix<T>& newMask);

    /// A mask must be set.
    virtual const PixelMatrix<T>& getMask() const;
    virtual void unsetMask();

    bool hasMask() const { return mask != nullptr; }

private:
    const PixelMatrix<T>* mask = nullptr;
};

extern template class MaskPixelMatrixProcessing<char>;
extern template class MaskPixelMatrixProcessing<unsigned char>;
extern template class MaskPixelMatrixProcessing<short>;
extern template class MaskPixelMatrixProcessing<unsigned short>;
extern template class MaskPixelMatrixProcessing<int>;
extern template class MaskPixelMatrixProcessing<unsigned int>;
extern template class MaskPixelMatrixProcessing<float>;
extern template class MaskPixelMatrixProcessing<double>;
extern template class MaskPixelMatrixProcessing<long double>;
