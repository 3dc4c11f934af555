#include "image/filters/separablegradientoperator0.h"

template <class T>
SeparableGradientOperator0<T>::SeparableGradientOperator0() = default;

template <class T>
SeparableGradientOperator0<T>::~SeparableGradientOperator0() = default;

template <class T>
void SeparableGradientOperator0<T>::gradient1(PixelMatrix<T>& matrix)
{
    filter1_.apply(matrix);
}

template <class T>
void SeparableGradientOperator0<T>::gradient2(PixelMatrix<T>& matrix)
{
    filter2_.apply(matrix);
}

template <class T>
void SeparableGradientOperator0<T>::gradient1(VoxelMatrix<T>& matrix)
{
    filter1_.apply(matrix);
}

template <class T>
void SeparableGradientOperator0<T>::gradient2(VoxelMatrix<T>& matrix)
{
    filter2_.apply(matrix);
}

template <class T>
void SeparableGradientOperator0<T>::gradient3(VoxelMatrix<T>& matrix)
{
    filter3_.apply(matrix);
}

template <class T>
void SeparableGradientOperator0<T>::setMask(const PixelMatrix<T>& mask)
{
    filter1_.setMask(mask);
    filter2_.setMask(mask);
    filter3_.setMask(mask);
}

template <class T>
void SeparableGradientOperator0<T>::setMask(const VoxelMatrix<T>& mask)
{
    filter1_.setMask(mask);
    filter2_.setMask(mask);
    filter3_.setMask(mask);
}

template class SeparableGradientOperator0<char>;
template class SeparableGradientOperator0<unsigned char>;
template class SeparableGradientOperator0<short>;
template class SeparableGradientOperator0<unsigned short>;
template class SeparableGradientOperator0<int>;
template class SeparableGradientOperator0<unsigned int>;
template class SeparableGradientOperator0<float>;
template class SeparableGradientOperator0<double>;
template class SeparableGradientOperator0<long double>;
