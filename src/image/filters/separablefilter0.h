#pragma once

#include "image/filters/separablefilterbase.h"

/// A separable filter with kernels of the caller's choice.
template <class T>
class SeparableFilter0 : public SeparableFilterBase<T>
{
public:
    SeparableFilter0();
    ~SeparableFilter0() override;

    using SeparableFilterBase<T>::setHMask;
    using SeparableFilterBase<T>::setKernel1;
    using SeparableFilterBase<T>::setKernel2;
    using SeparableFilterBase<T>::setKernel3;
    using SeparableFilterBase<T>::setVMask;
};

extern template class SeparableFilter0<char>;
extern template class SeparableFilter0<unsigned char>;
extern template class SeparableFilter0<short>;
extern template class SeparableFilter0<unsigned short>;
extern template class SeparableFilter0<int>;
extern template class SeparableFilter0<unsigned int>;
extern template class SeparableFilter0<float>;
extern template class SeparableFilter0<double>;
extern template class SeparableFilter0<long double>;
