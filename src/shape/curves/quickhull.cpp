#include "shape/curves/quickhull.h"

#include "shape/vertices/segment.h"
#include "system/exception.h"

#include <cmath>

template <class T>
QuickHull<T>::QuickHull() = default;

template <class T>
void QuickHull<T>::setCurve(const Curve<T>& curve)
{
    curve_ = &curve;
}

template <class T>
Curve<T> QuickHull<T>::process()
{
    if (curve_ == nullptr) {
        raise<UsageError>("Curve<T> QuickHull<T>::process()", "No curve has been set");
    }
    const Curve<T>& curve = *curve_;
    space_ = curve.getSpace();
    Curve<T> result(space_, 0, 0, 0, false);
    if (curve.getSize() == 0) {
        return result;
    }
    const Vector<T>* minPoint = &curve[0];
    const Vector<T>* maxPoint = &curve[0];
    findEnds(minPoint, maxPoint);

    Points upper;
    Points lower;
    for (int i = 0; i < curve.getSize(); ++i) {
        const Vector<T>& point = curve[i];
        if (squaredDistance(point, *minPoint) == 0 || squaredDistance(point, *maxPoint) == 0) {
            continue;
        }
        if (computeAreaTriangle(*maxPoint, *minPoint, point) < 0) {
            upper.push_back(&point);
        }
        if (computeAreaTriangle(*minPoint, *maxPoint, point) < 0) {
            lower.push_back(&point);
        }
    }
    result.append(*maxPoint);
    quickHull(*maxPoint, *minPoint, upper, result);
    result.append(*minPoint);
    quickHull(*minPoint, *maxPoint, lower, result);
    return result;
}

template <class T>
void QuickHull<T>::findEnds(const Vector<T>*& minPoint, const Vector<T>*& maxPoint) const
{
    const Curve<T>& curve = *curve_;
    for (int i = 0; i < curve.getSize(); ++i) {
        if (curve[i][0] > (*maxPoint)[0]) {
            maxPoint = &curve[i];
        } else if (curve[i][0] < (*minPoint)[0]) {
            minPoint = &curve[i];
        }
    }
    if ((*minPoint)[0] != (*maxPoint)[0] || space_ < 2) {
        return;
    }
    minPoint = &curve[0];
    maxPoint = &curve[0];
    for (int i = 0; i < curve.getSize(); ++i) {
        if (curve[i][1] < (*minPoint)[1]) {
            minPoint = &curve[i];
        } else if (curve[i][1] > (*maxPoint)[1]) {
            maxPoint = &curve[i];
        }
    }
}

template <class T>
typename QuickHull<T>::Real
QuickHull<T>::computeAreaTriangle(const Vector<T>& a, const Vector<T>& b, const Vector<T>& c) const
{
    const double twiceArea =
        twiceAreaOfEdge(c, a, 0, 1) + twiceAreaOfEdge(a, b, 0, 1) + twiceAreaOfEdge(b, c, 0, 1);
    return static_cast<Real>(twiceArea) / 2;
}

template <class T>
typename QuickHull<T>::Real
QuickHull<T>::height(const Vector<T>& a, const Vector<T>& b, const Vector<T>& point) const
{
    const Real distance = std::sqrt(static_cast<Real>(squaredDistance(a, b)));
    return 2 * std::abs(computeAreaTriangle(a, b, point) / distance);
}

template <class T>
void QuickHull<T>::quickHull(const Vector<T>& a,
                             const Vector<T>& b,
                             const Points& points,
                             Curve<T>& result) const
{
    if (points.size() < 2) {
        for (const Vector<T>* point : points) {
            result.append(*point);
        }
        return;
    }
    const Vector<T>* far = points.front();
    Real farHeight = height(a, b, *far);
    for (const Vector<T>* point : points) {
        const Real candidate = height(a, b, *point);
        if (candidate > farHeight) {
            far = point;
            farHeight = candidate;
        }
    }
    Points first;
    Points second;
    for (const Vector<T>* point : points) {
        if (squaredDistance(*point, *far) == 0) {
            continue;
        }
        if (computeAreaTriangle(a, *far, *point) < 0) {
            first.push_back(point);
        }
        if (computeAreaTriangle(*far, b, *point) < 0) {
            second.push_back(point);
        }
    }
    quickHull(a, *far, first, result);
    result.append(*far);
    quickHull(*far, b, second, result);
}

template class QuickHull<int>;
template class QuickHull<float>;
template class QuickHull<double>;
template class QuickHull<long double>;
