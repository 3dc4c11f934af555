#pragma once

#include "image/filters/maskpixelmatrixprocessing.h"
#include "image/filters/maskvoxelmatrixprocessing.h"
#include "image/filters/neighbourhoodfilter.h"

/// Replaces each element by the smallest one of its window, which is cut at the border. In a plane
/// the window is always the square; in a volume it is the cube or, in ball mode, the ball.
///
/// With a mask, elements whose mask is 0 are neither looked at nor changed (square and cube, row by
/// row and column by column). A radius below 1 leaves the image alone. The time per element grows
/// with the logarithm of the radius for the square and the cube, with its square for the ball. A
/// NaN is not smaller than anything; where one is, the result is not determined.
template <class T>
class MinFilter0 : public virtual MaskPixelMatrixProcessing<T>,
                   public virtual MaskVoxelMatrixProcessing<T>,
                   public NeighbourhoodFilter
{
public:
    MinFilter0();
    ~MinFilter0() override;

    using MaskPixelMatrixProcessing<T>::setMask;
    using MaskVoxelMatrixProcessing<T>::setMask;

    void apply(PixelMatrix<T>& matrix) override;
    void apply(VoxelMatrix<T>& matrix) override;

    /// The result goes to `out`; the mask is not used.
    void apply(PixelMatrix<T>& out, const PixelMatrix<T>& in) const;
    void apply(VoxelMatrix<T>& out, const VoxelMatrix<T>& in) const;

    /// One dimension. `out` gets the size of `in` and must be another vector.
    void apply(const Vector<T>& in, Vector<T>& out) const;

    /// `SizeError` for a mask of another size.
    void apply(const Vector<T>& in, Vector<T>& out, const Vector<T>& mask) const;

    void applyCubicCase(VoxelMatrix<T>& matrix) const;

    /// One thread for each block of planes; the result does not depend on their number.
    void applySphericalCase(VoxelMatrix<T>& matrix) const;

private:
    void applySquareCase(PixelMatrix<T>& matrix) const;
    void maskedApply(PixelMatrix<T>& matrix, const PixelMatrix<T>& mask) const;
    void maskedApply(VoxelMatrix<T>& matrix, const VoxelMatrix<T>& mask) const;
};

extern template class MinFilter0<char>;
extern template class MinFilter0<unsigned char>;
extern template class MinFilter0<short>;
extern template class MinFilter0<unsigned short>;
extern template class MinFilter0<int>;
extern template class MinFilter0<unsigned int>;
extern template class MinFilter0<float>;
extern template class MinFilter0<double>;
extern template class MinFilter0<long double>;
