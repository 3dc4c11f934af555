#pragma once

#include "image/pixels/pixelmatrix.h"
#include "system/progresssubject.h"

/// An operation on a two-dimensional image: made, given its parameters by setters, and applied in
/// place. Who watches it is told of its progress.
template <class T>
class PixelMatrixProcessing : public virtual ProgressSubject
{
public:
    PixelMatrixProcessing();
    ~PixelMatrixProcessing() override;

    virtual void apply(PixelMatrix<T>& matrix) = 0;
};

extern template class PixelMatrixProcessing<char>;
extern template class PixelMatrixProcessing<unsigned char>;
extern template class PixelMatrixProcessing<short>;
extern template class PixelMatrixProcessing<unsigned short>;
extern template class PixelMatrixProcessing<int>;
extern template class PixelMatrixProcessing<unsigned int>;
extern template class PixelMatrixProcessing<float>;
extern template class PixelMatrixProcessing<double>;
extern template class PixelMatrixProcessing<long double>;
