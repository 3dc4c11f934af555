#include "image/filters/maskpixelmatrixprocessing.h"

template <class T>
MaskPixelMatrixProcessing<T>::MaskPixelMatrixProcessing() = default;

template <class T>
MaskPixelMatrixProcessing<T>::~MaskPixelMatrixProcessing() = default;

template <class T>
void MaskPixelMatrixProcessing<T>::setMask(const PixelMatrix<T>& newMask)
{
    mask = &newMask;
}

template <class T>
const PixelMatrix<T>& MaskPixelMatrixProcessing<T>::getMask() const
{
    return *mask;
}

template <class T>
void MaskPixelMatrixProcessing<T>::unsetMask()
{
    mask = nullptr;
}

template class MaskPixelMatrixProcessing<char>;
template class MaskPixelMatrixProcessing<unsigned char>;
template class MaskPixelMatrixProcessing<short>;
template class MaskPixelMatrixProcessing<unsigned short>;
template class MaskPixelMatrixProcessing<int>;
template class MaskPixelMatrixProcessing<unsigned int>;
template class MaskPixelMatrixProcessing<float>;
template class MaskPixelMatrixProcessing<double>;
template class MaskPixelMatrixProcessing<long double>;
