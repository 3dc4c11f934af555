#pragma once

#include "image/filters/maskpixelmatrixprocessing.h"
#include "image/filters/maskvoxelmatrixprocessing.h"
#include "image/filters/neighbourhoodfilter.h"

/// Replaces each element by the sum of its window, which is cut at the border: a square or cube or,
/// in ball mode, a disc or ball. Sums are computed in `T`. A mask is not used. A radius below 1
/// leaves square and cube alone.
///
/// Square and cube are running sums, of constant time per element; their last digits for real types
/// depend on what the window met before.
template <class T>
class SumFilter0 : public virtual MaskPixelMatrixProcessing<T>,
                   public virtual MaskVoxelMatrixProcessing<T>,
                   public NeighbourhoodFilter
{
public:
    SumFilter0();
    ~SumFilter0() override;

    using MaskPixelMatrixProcessing<T>::setMask;
    using MaskVoxelMatrixProcessing<T>::setMask;

    void apply(PixelMatrix<T>& matrix) override;
    void apply(VoxelMatrix<T>& matrix) override;

    void applySquareCase(PixelMatrix<T>& matrix) const;
    void applyCircularCase(PixelMatrix<T>& matrix) const;
    void applyCubicCase(VoxelMatrix<T>& matrix) const;
    void applySphericalCase(VoxelMatrix<T>& matrix) const;
};

extern template class SumFilter0<char>;
extern template class SumFilter0<unsigned char>;
extern template class SumFilter0<short>;
extern template class SumFilter0<unsigned short>;
extern template class SumFilter0<int>;
extern template class SumFilter0<unsigned int>;
extern template class SumFilter0<float>;
extern template class SumFilter0<double>;
extern template class SumFilter0<long double>;
