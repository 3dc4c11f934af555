#include "shape/registration/thinplatesplinewarp3d.h"

template <class T>
ThinPlateSplineWarp3D<T>::ThinPlateSplineWarp3D() = default;

template <class T>
ThinPlateSplineWarp3D<T>::~ThinPlateSplineWarp3D() = default;

template <class T>
T ThinPlateSplineWarp3D<T>::rbf(const Vector<T>& a, const Vector<T>& b) const
{
    return a.distance(b);
}

template class ThinPlateSplineWarp3D<float>;
template class ThinPlateSplineWarp3D<double>;
template class ThinPlateSplineWarp3D<long double>;
