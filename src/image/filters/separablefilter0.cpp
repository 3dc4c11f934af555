#include "image/filters/separablefilter0.h"

template <class T>
SeparableFilter0<T>::SeparableFilter0() = default;

template <class T>
SeparableFilter0<T>::~SeparableFilter0() = default;

template class SeparableFilter0<char>;
template class SeparableFilter0<unsigned char>;
template class SeparableFilter0<short>;
template class SeparableFilter0<unsigned short>;
template class SeparableFilter0<int>;
template class SeparableFilter0<unsigned int>;
template class SeparableFilter0<float>;
template class SeparableFilter0<double>;
template class SeparableFilter0<long double>;
