#include "image/maskvoxelmatrixprocessing.h"

template <class T>
MaskVoxelMatrixProcessing<T>::MaskVoxelMatrixProcessing() = default;

template <class T>
MaskVoxelMatrixProcessing<T>::~MaskVoxelMatrixProcessing() = default;

template <class T>
void MaskVoxelMatrixProcessing<T>::setMask(const VoxelMatrix<T>& mask)
{
    mask_ = &mask;
}

template <class T>
const VoxelMatrix<T>& MaskVoxelMatrixProcessing<T>::getMask() const
{
    return *mask_;
}

template <class T>
void MaskVoxelMatrixProcessing<T>::unsetMask()
{
    mask_ = nullptr;
}

template class MaskVoxelMatrixProcessing<char>;
template class MaskVoxelMatrixProcessing<unsigned char>;
template class MaskVoxelMatrixProcessing<short>;
template class MaskVoxelMatrixProcessing<unsigned short>;
template class MaskVoxelMatrixProcessing<int>;
template class MaskVoxelMatrixProcessing<unsigned int>;
template class MaskVoxelMatrixProcessing<float>;
template class MaskVoxelMatrixProcessing<double>;
template class MaskVoxelMatrixProcessing<long double>;
