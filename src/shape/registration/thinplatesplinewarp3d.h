#pragma once

#include "shape/registration/radialbasisfunctionwarp.h"

/// The thin-plate spline of space: the basis function is the distance.
template <class T>
class ThinPlateSplineWarp3D : public RadialBasisFunctionWarp<T>
{
public:
    ThinPlateSplineWarp3D();
    ~ThinPlateSplineWarp3D() override;

    T rbf(const Vector<T>& a, const Vector<T>& b) const override;
};

extern template class ThinPlateSplineWarp3D<float>;
extern template class ThinPlateSplineWarp3D<double>;
extern template class ThinPlateSplineWarp3D<long double>;
