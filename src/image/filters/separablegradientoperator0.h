#pragma once

#include "image/filters/gradientoperator0.h"
#include "image/filters/separablefilter0.h"

/// A gradient whose components are three separable filters, one for each index.
template <class T>
class SeparableGradientOperator0 : public GradientOperator0<T>
{
public:
    SeparableGradientOperator0();
    ~SeparableGradientOperator0() override;

    void gradient1(PixelMatrix<T>& matrix) override;
    void gradient2(PixelMatrix<T>& matrix) override;
    void gradient1(VoxelMatrix<T>& matrix) override;
    void gradient2(VoxelMatrix<T>& matrix) override;
    void gradient3(VoxelMatrix<T>& matrix) override;

    /// Hands a borrowed mask to the three filters; it must outlive this object.
    void setMask(const PixelMatrix<T>& mask);
    void setMask(const VoxelMatrix<T>& mask);

protected:
    SeparableFilter0<T> filter1_;
    SeparableFilter0<T> filter2_;
    SeparableFilter0<T> filter3_;
};

extern template class SeparableGradientOperator0<char>;
extern template class SeparableGradientOperator0<unsigned char>;
extern template class SeparableGradientOperator0<short>;
extern template class SeparableGradientOperator0<unsigned short>;
extern template class SeparableGradientOperator0<int>;
extern template class SeparableGradientOperator0<unsigned int>;
extern template class SeparableGradientOperator0<float>;
extern template class SeparableGradientOperator0<double>;
extern template class SeparableGradientOperator0<long double>;
