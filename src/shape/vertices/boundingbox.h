#pragma once

#include "numerics/vector.h"

template <class T>
class QuadMesh;
template <class T>
class Shape;
template <class T>
class Vertices;

/// Axis-aligned box, kept as two opposite corners. The corners may stand in any order; operations
/// that need `vertex1 <= vertex2` say so, and `rectify` makes it so.
template <class T>
class BoundingBox
{
public:
    /// A box of no dimension.
    BoundingBox();

    /// The corners are taken as they are.
    BoundingBox(const Vector<T>& vertex1, const Vector<T>& vertex2);

    const Vector<T>& getVertex1() const { return vertex1_; }

    const Vector<T>& getVertex2() const { return vertex2_; }

    void setVertex1(const Vector<T>& vertex);
    void setVertex2(const Vector<T>& vertex);

    /// At least one dimension, and corners of equal size.
    bool isValid() const;

    /// Swaps coordinates where needed, so that `vertex1 <= vertex2` in each.
    void rectify();

    /// Smaller and larger corner coordinate `i`.
    T min(int i) const;
    T max(int i) const;

    /// Extent in coordinate `i`, never negative; the extents in all coordinates.
    T width(int i) const;
    Vector<T> widths() const;

    /// Distance between the corners; `TypeError` for `int`.
    T diagonal() const;

    /// The middle; truncated for `int`. Corners of different size raise `SizeError`.
    Vector<T> cog() const;

    /// Moves `vertex1` down and `vertex2` up, by one amount or by one for each coordinate. The box
    /// must be rectified.
    void expand(T margin);
    void expand(const Vector<T>& margins);

    /// Grows a rectified box so that it contains `position`.
    void expandUpToPosition(const Vector<T>& position);

    /// Whether `position` lies in the rectified box, the border included; true for a box of no
    /// dimension.
    bool contains(const Vector<T>& position) const;

    /// Whether all vertices, or any vertex, of the shape lie in the rectified box. A shape without
    /// vertices has all of them inside and none.
    bool containsAllVertices(const Shape<T>& shape) const;
    bool containsAny(const Shape<T>& shape) const;

    /// Whether two rectified boxes have a point in common, touching included.
    bool intersects(const BoundingBox& box) const;

    /// The smallest box around both; a box of no dimension gives the other one.
    BoundingBox merge(const BoundingBox& box) const;

    /// Widens the box about its centre to whole cells of size `resolution` and returns the number
    /// of cells in each coordinate. Raises `ValueError` unless `resolution` is above 0.
    Vector<int> adjustToResolution(T resolution);

    /// Whether a ray meets the rectified box of three dimensions. `inverseDirection` holds the
    /// reciprocals of `direction`. Hits within `Vector<T>::epsilon()` of the border count; a ray
    /// that starts inside always hits.
    ///
    /// Source: A. Woo, Fast ray-box intersection, Graphics Gems, 1990.
    bool intersectsRay(const Vector<T>& origin,
                       const Vector<T>& direction,
                       const Vector<T>& inverseDirection) const;

    /// The same against the planes of `vertex1` alone, wherever the ray starts.
    bool intersectsLeftRay(const Vector<T>& origin,
                           const Vector<T>& direction,
                           const Vector<T>& inverseDirection) const;

    /// The `2^space` corners. Bit `d` of a position chooses the corner that gives coordinate `d`.
    Vertices<T> asVertices() const;

    /// The corners as two curves, one for each end of the last coordinate, in an order in which
    /// neighbours differ in one coordinate: closed rings in three dimensions, open in two.
    QuadMesh<T> asQuadMesh() const;

private:
    bool
    hits(const Vector<T>& origin, const Vector<T>& direction, const Vector<T>& distances) const;

    Vector<T> vertex1_;
    Vector<T> vertex2_;
};

extern template class BoundingBox<int>;
extern template class BoundingBox<float>;
extern template class BoundingBox<double>;
extern template class BoundingBox<long double>;
