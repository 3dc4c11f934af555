#pragma once

#include "image/filters/maskpixelmatrixprocessing.h"
#include "image/filters/maskvoxelmatrixprocessing.h"

/// Convolution with a kernel that is an outer product of one kernel for each index of the matrix.
///
/// Values beyond the border count as 0, so a filter of sum 1 darkens the border. Kernels have odd
/// sizes (`ValueError`); an empty one leaves its index out. The result is that of `Vector::conv`
/// on each row, then on each column, then along the planes, to the last digit.
template <class T>
class SeparableFilterBase : public virtual MaskPixelMatrixProcessing<T>,
                            public virtual MaskVoxelMatrixProcessing<T>
{
public:
    SeparableFilterBase();
    ~SeparableFilterBase() override;

    using MaskPixelMatrixProcessing<T>::setMask;
    using MaskVoxelMatrixProcessing<T>::setMask;

    /// With a mask: the work of `maskedApply`, without the scale. Without: the convolutions, then
    /// the scale. The form for volumes goes on with the third index.
    void apply(PixelMatrix<T>& matrix) override;
    void apply(VoxelMatrix<T>& matrix) override;

    /// Convolutions over the elements whose mask is not 0, see `Vector::conv` with a mask.
    /// `UsageError` without a mask, `SizeError` if it has another size.
    void maskedApply(PixelMatrix<T>& matrix);
    void maskedApply(VoxelMatrix<T>& matrix);

    const Vector<T>& getKernel1() const { return kernel1; }

    const Vector<T>& getKernel2() const { return kernel2; }

    const Vector<T>& getKernel3() const { return kernel3; }

    const T& getScale() const { return scale; }

    /// Each element of the result is divided by this, or multiplied; the later call holds.
    void setDivideBy(const T& value);
    void setMultiplyBy(const T& value);

    /// Outer product of the kernels of the first and second index.
    Matrix<T> kernel2D() const;

protected:
    /// Kernels for the first index (along a column), the second (along a row) and the third.
    void setKernel1(const Vector<T>& kernel);
    void setKernel2(const Vector<T>& kernel);
    void setKernel3(const Vector<T>& kernel);

    /// Other names for the kernels of the second and of the first index.
    void setHMask(const Vector<T>& kernel) { setKernel2(kernel); }

    void setVMask(const Vector<T>& kernel) { setKernel1(kernel); }

private:
    void applyScale(PixelMatrix<T>& matrix) const;

    Vector<T> kernel1;
    Vector<T> kernel2;
    Vector<T> kernel3;
    T scale;
    bool divide = false;
};

extern template class SeparableFilterBase<char>;
extern template class SeparableFilterBase<unsigned char>;
extern template class SeparableFilterBase<short>;
extern template class SeparableFilterBase<unsigned short>;
extern template class SeparableFilterBase<int>;
extern template class SeparableFilterBase<unsigned int>;
extern template class SeparableFilterBase<float>;
extern template class SeparableFilterBase<double>;
extern template class SeparableFilterBase<long double>;
