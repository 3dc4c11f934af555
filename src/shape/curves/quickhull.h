#pragma once

#include "shape/curves/curve.h"

#include <type_traits>
#include <vector>

/// Convex hull of a curve's vertices in coordinates 0 and 1.
///
/// Source: C. B. Barber, D. P. Dobkin and H. Huhdanpaa, The quickhull algorithm for convex hulls,
/// ACM Transactions on Mathematical Software 22, 1996, in the plane.
template <class T>
class QuickHull
{
public:
    /// No curve.
    QuickHull();

    /// Takes the curve to wrap, which must live until `process` is done.
    void setCurve(const Curve<T>& curve);

    /// The hull: a closed curve on its own server, of positive area, beginning at the first vertex
    /// with the largest coordinate 0. A vertex on a straight side stays only where it comes first
    /// among the outermost ones of a direction that is looked in. Collinear vertices give the two
    /// ends, one vertex alone gives it twice, none an empty hull. Raises `UsageError` without a
    /// curve. Costs the number of vertices times that of the hull.
    Curve<T> process();

private:
    using Points = std::vector<const Vector<T>*>;

    /// Areas of integer triangles are halves of integers.
    using Real = std::conditional_t<std::is_integral_v<T>, double, T>;

    void findEnds(const Vector<T>*& minPoint, const Vector<T>*& maxPoint) const;
    Real computeAreaTriangle(const Vector<T>& a, const Vector<T>& b, const Vector<T>& c) const;
    Real height(const Vector<T>& a, const Vector<T>& b, const Vector<T>& point) const;
    void
    quickHull(const Vector<T>& a, const Vector<T>& b, const Points& points, Curve<T>& result) const;

    const Curve<T>* curve_ = nullptr;
    int space_ = 0;
};

extern template class QuickHull<int>;
extern template class QuickHull<float>;
extern template class QuickHull<double>;
extern template class QuickHull<long double>;
