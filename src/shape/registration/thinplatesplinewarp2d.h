#pragma once

#include "shape/registration/radialbasisfunctionwarp.h"

/// The thin-plate spline of the plane: the basis function is r2 log(r2), of the squared distance.
template <class T>
class ThinPlateSplineWarp2D : public RadialBasisFunctionWarp<T>
{
public:
    ThinPlateSplineWarp2D();
    ~ThinPlateSplineWarp2D() override;

    T rbf(const Vector<T>& a, const Vector<T>& b) const override;

private:
    /// Squared distance up to which two points count as one, for which the function is 0.
    T threshold_;
};

extern template class ThinPlateSplineWarp2D<float>;
extern template class ThinPlateSplineWarp2D<double>;
extern template class ThinPlateSplineWarp2D<long double>;
