#include "shape/registration/thinplatesplinewarp2d.h"

#include <cmath>

template <class T>
ThinPlateSplineWarp2D<T>::ThinPlateSplineWarp2D()
    : threshold_(Vector<T>::epsilon())
{}

template <class T>
ThinPlateSplineWarp2D<T>::~ThinPlateSplineWarp2D() = default;

template <class T>
T ThinPlateSplineWarp2D<T>::rbf(const Vector<T>& a, const Vector<T>& b) const
{
    const T squared = a.sdistance(b);
    if (!(squared > threshold_)) {
        return 0;
    }
    const double wide = static_cast<double>(squared);
    return static_cast<T>(wide * std::log(wide));
}

template class ThinPlateSplineWarp2D<float>;
template class ThinPlateSplineWarp2D<double>;
template class ThinPlateSplineWarp2D<long double>;
