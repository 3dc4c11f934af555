#pragma once

#include "shape/curves/curve.h"

/// An open curve of two vertices: a segment of its own, or a view on two vertices of a shape.
template <class T>
class Edge : public Curve<T>
{
public:
    /// No server, no vertices.
    Edge();

    /// Two vertices on a new server.
    explicit Edge(int space);

    /// A view on positions `i` and `j` of `shape`, whose server it shares.
    Edge(const Vertices<T>& shape, int i, int j);
    Edge(const Edge& other);
    ~Edge() override;

    using Curve<T>::operator=;
    Edge& operator=(const Edge& other);

    Edge* clone() const override;

    /// The point of the segment that is nearest to `position`. Returns where `position` falls along
    /// the line: 0 at the first end, 1 at the second, not clamped; 0 for coincident ends.
    T closestPoint(const Vector<T>& position, Vector<T>& q) const;

    using Curve<T>::intersects;
    /// The segment against the plane `x . normal = offset`: 0 no point in common, 1 one point,
    /// which `q` receives, 2 the segment lies in the plane, and `q` is its first end. `TypeError`
    /// for `int`.
    int intersects(const Vector<T>& normal, T offset, Vector<T>& q) const;

    /// Whether the segments cross or touch in the plane of `c1` and `c2`; parallel segments never
    /// do, even if they overlap. A given `q` receives the crossing as two elements.
    bool projectionIntersects(const Edge& other, int c1, int c2, Vector<T>* q = nullptr) const;

    /// The same for this segment and the infinite line through the other.
    bool projectionIntersectsLine(const Edge& other, int c1, int c2, Vector<T>* q = nullptr) const;
};

extern template class Edge<int>;
extern template class Edge<float>;
extern template class Edge<double>;
extern template class Edge<long double>;
