#include "shape/vertices/boundingbox.h"

#include "shape/vertices/vertices.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <limits>

template <class T>
BoundingBox<T>::BoundingBox() = default;

template <class T>
BoundingBox<T>::BoundingBox(const Vector<T>& vertex1, const Vector<T>& vertex2)
    : vertex1_(vertex1)
    , vertex2_(vertex2)
{}

template <class T>
void BoundingBox<T>::setVertex1(const Vector<T>& vertex)
{
    vertex1_ = vertex;
}

template <class T>
void BoundingBox<T>::setVertex2(const Vector<T>& vertex)
{
    vertex2_ = vertex;
}

template <class T>
bool BoundingBox<T>::isValid() const
{
    return vertex1_.getSize() > 0 && vertex1_.getSize() == vertex2_.getSize();
}

template <class T>
void BoundingBox<T>::rectify()
{
    for (int i = 0; i < std::min(vertex1_.getSize(), vertex2_.getSize()); ++i) {
        if (vertex1_[i] > vertex2_[i]) {
            std::swap(vertex1_[i], vertex2_[i]);
        }
    }
}

template <class T>
T BoundingBox<T>::min(int i) const
{
    return std::min(vertex1_[i], vertex2_[i]);
}

template <class T>
T BoundingBox<T>::max(int i) const
{
    return std::max(vertex1_[i], vertex2_[i]);
}

template <class T>
T BoundingBox<T>::width(int i) const
{
    return max(i) - min(i);
}

template <class T>
Vector<T> BoundingBox<T>::widths() const
{
    Vector<T> result(vertex1_.getSize());
    for (int i = 0; i < result.getSize(); ++i) {
        result[i] = width(i);
    }
    return result;
}

template <class T>
T BoundingBox<T>::diagonal() const
{
    return vertex1_.distance(vertex2_);
}

template <class T>
Vector<T> BoundingBox<T>::cog() const
{
    if constexpr (std::is_integral_v<T>) {
        return (vertex1_ + vertex2_) / T(2);
    } else {
        return (vertex1_ + vertex2_) * T(0.5);
    }
}

template <class T>
void BoundingBox<T>::expand(T margin)
{
    vertex1_ -= margin;
    vertex2_ += margin;
}

template <class T>
void BoundingBox<T>::expand(const Vector<T>& margins)
{
    vertex1_ -= margins;
    vertex2_ += margins;
}

template <class T>
void BoundingBox<T>::expandUpToPosition(const Vector<T>& position)
{
    vertex1_ = Vector<T>::pmin(vertex1_, position);
    vertex2_ = Vector<T>::pmax(vertex2_, position);
}

template <class T>
bool BoundingBox<T>::contains(const Vector<T>& position) const
{
    for (int i = 0; i < std::min(vertex1_.getSize(), position.getSize()); ++i) {
        if (!(vertex1_[i] <= position[i] && position[i] <= vertex2_[i])) {
            return false;
        }
    }
    return true;
}

template <class T>
bool BoundingBox<T>::containsAllVertices(const Shape<T>& shape) const
{
    for (ConstVertexIterator<T> walk = shape.vertexIterator(); walk.current() != nullptr; walk++) {
        if (!contains(*walk.current())) {
            return false;
        }
    }
    return true;
}

template <class T>
bool BoundingBox<T>::containsAny(const Shape<T>& shape) const
{
    for (ConstVertexIterator<T> walk = shape.vertexIterator(); walk.current() != nullptr; walk++) {
        if (contains(*walk.current())) {
            return true;
        }
    }
    return false;
}

template <class T>
bool BoundingBox<T>::intersects(const BoundingBox& box) const
{
    for (int i = 0; i < std::min(vertex1_.getSize(), box.vertex1_.getSize()); ++i) {
        if (vertex2_[i] < box.vertex1_[i] || box.vertex2_[i] < vertex1_[i]) {
            return false;
        }
    }
    return true;
}

template <class T>
BoundingBox<T> BoundingBox<T>::merge(const BoundingBox& box) const
{
    if (vertex1_.getSize() == 0 && vertex2_.getSize() == 0) {
        return box;
    }
    if (box.vertex1_.getSize() == 0 && box.vertex2_.getSize() == 0) {
        return *this;
    }
    const Vector<T> smallest = Vector<T>::pmin(vertex1_, vertex2_);
    const Vector<T> largest = Vector<T>::pmax(vertex1_, vertex2_);
    return BoundingBox(Vector<T>::pmin(smallest, Vector<T>::pmin(box.vertex1_, box.vertex2_)),
                       Vector<T>::pmax(largest, Vector<T>::pmax(box.vertex1_, box.vertex2_)));
}

template <class T>
Vector<int> BoundingBox<T>::adjustToResolution(T resolution)
{
    using Real = std::conditional_t<std::is_integral_v<T>, double, T>;
    const char* where = "Vector<int> BoundingBox<T>::adjustToResolution(const T)";
    if (!(resolution > 0)) {
        raise<ValueError>(where, "The resolution must be positive");
    }
    Vector<int> cells(vertex1_.getSize());
    for (int i = 0; i < cells.getSize(); ++i) {
        const Real count = std::ceil(static_cast<Real>(width(i)) / static_cast<Real>(resolution));
        if (!(static_cast<long double>(count) <= std::numeric_limits<int>::max())) {
            raise<ValueError>(where, "The resolution is too small for this box");
        }
        cells[i] = static_cast<int>(count);
    }
    for (int i = 0; i < cells.getSize(); ++i) {
        const T margin = (static_cast<T>(cells[i]) * resolution - width(i)) / T(2);
        vertex1_[i] -= margin;
        vertex2_[i] += margin;
    }
    return cells;
}

template <class T>
bool BoundingBox<T>::intersectsRay(const Vector<T>& origin,
                                   const Vector<T>& direction,
                                   const Vector<T>& inverseDirection) const
{
    Vector<T> distances(vertex1_.getSize());
    bool inside = true;
    for (int i = 0; i < distances.getSize(); ++i) {
        const bool below = origin[i] < vertex1_[i];
        const bool above = origin[i] > vertex2_[i];
        const T plane = below ? vertex1_[i] : vertex2_[i];
        distances[i] = (below || above) && direction[i] != 0
                           ? (plane - origin[i]) * inverseDirection[i]
                           : T(-1);
        inside = inside && !below && !above;
    }
    return inside || hits(origin, direction, distances);
}

template <class T>
bool BoundingBox<T>::intersectsLeftRay(const Vector<T>& origin,
                                       const Vector<T>& direction,
                                       const Vector<T>& inverseDirection) const
{
    Vector<T> distances(vertex1_.getSize());
    for (int i = 0; i < distances.getSize(); ++i) {
        distances[i] = direction[i] != 0 ? (vertex1_[i] - origin[i]) * inverseDirection[i] : T(-1);
    }
    return hits(origin, direction, distances);
}

template <class T>
bool BoundingBox<T>::hits(const Vector<T>& origin,
                          const Vector<T>& direction,
                          const Vector<T>& distances) const
{
    if (distances.getSize() == 0) {
        return true;
    }
    const int axis = distances.maxPos();
    if (distances[axis] < 0) {
        return false;
    }
    const T tolerance = Vector<T>::epsilon();
    for (int i = 0; i < distances.getSize(); ++i) {
        const T hit = origin[i] + distances[axis] * direction[i];
        if (i != axis && (hit < vertex1_[i] - tolerance || hit > vertex2_[i] + tolerance)) {
            return false;
        }
    }
    return true;
}

template <class T>
Vertices<T> BoundingBox<T>::asVertices() const
{
    const int space = vertex1_.getSize();
    Vertices<T> corners(space, 1 << space, 0, 0);
    for (int i = 0; i < corners.getSize(); ++i) {
        for (int d = 0; d < space; ++d) {
            corners[i][d] = ((i >> d) & 1) != 0 ? vertex2_[d] : vertex1_[d];
        }
    }
    return corners;
}

template class BoundingBox<int>;
template class BoundingBox<float>;
template class BoundingBox<double>;
template class BoundingBox<long double>;
