#pragma once

#include "shape/curves/curve.h"

template <class T>
class Edge;

/// A closed curve of three vertices A, B, C: a triangle of its own, or a view on three vertices of
/// a shape, which it follows. Its normal is AB x AC.
///
/// All but the choice of vertices needs three dimensions; others raise `SizeError`.
template <class T>
class Triangle : public Curve<T>
{
public:
    /// No server, no vertices.
    Triangle();

    /// Three vertices on a new server.
    explicit Triangle(int space);

    /// A view on three positions of `shape`, whose server it shares.
    Triangle(const Vertices<T>& shape, int i, int j, int k);
    Triangle(const Triangle& other);
    ~Triangle() override;

    using Curve<T>::operator=;
    Triangle& operator=(const Triangle& other);
    Triangle* clone() const override;

    /// `TypeError` for `int`, also the normal of unit length.
    T area() const;
    Vector<T> normal(bool unit) const;

    /// Where `position` lies, seen in the plane of `c1` and `c2`: 0 outside, 1 inside, 2 on the
    /// lines through the sides, within `Vector<T>::epsilon()` of twice the area.
    int projectionContains(const Vector<T>& position, int c1, int c2) const;

    using Curve<T>::contains;
    /// Whether `position` lies in the triangle, the border included. It must not be off the plane
    /// by more than `Vector<T>::epsilon()`, divided by the length of the normal; a triangle of area
    /// 0 has no plane, and its projection decides.
    bool contains(const Vector<T>& position, const Vector<T>& normal) const;
    bool contains(const Vector<T>& position) const;

    using Curve<T>::intersects;
    /// The triangle against a segment: 0 no point in common; 1 one point, which `q` receives; 2 the
    /// segment touches the border or lies in the plane and meets it. `TypeError` for `int`.
    int intersects(const Edge<T>& edge, Vector<T>& q, const Vector<T>& normal) const;
    int intersects(const Edge<T>& edge, Vector<T>& q) const;

    /// The nearest point of the triangle, in any dimension; that of the border is the curve's, which
    /// this hides, since two arguments fit both. Returns the region in which `position`
    /// is seen: 0 inside; 1, 3, 5 beyond BC, CA, AB; 2, 4, 6 beyond C, A, B. `TypeError` for `int`.
    ///
    /// Source: D. Eberly, Distance Between Point and Triangle in 3D, 1999.
    int closestPoint(const Vector<T>& position, Vector<T>& q) const;
};

extern template class Triangle<int>;
extern template class Triangle<float>;
extern template class Triangle<double>;
extern template class Triangle<long double>;
