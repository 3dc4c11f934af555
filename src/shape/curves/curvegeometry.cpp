// Part of `Curve`: measures, containment and crossings.

#include "numerics/elementtype.h"
#include "shape/curves/curve.h"
#include "shape/curves/edge.h"
#include "shape/vertices/segment.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// Calls `visit(index, a, b)` for every edge from vertex `a` to vertex `b`, closing edge last, until
/// it returns false.
template <class T, class Visit>
void visitEdges(const Curve<T>& curve, Visit&& visit)
{
    const int size = curve.getSize();
    for (int i = 0; i + 1 < size; ++i) {
        if (!visit(i, curve[i], curve[i + 1])) {
            return;
        }
    }
    if (curve.isClosed() && size > 1) {
        visit(size - 1, curve[size - 1], curve[0]);
    }
}

template <class T>
std::vector<Segment<T>> segments(const Curve<T>& curve, int c1, int c2)
{
    std::vector<Segment<T>> edges;
    edges.reserve(static_cast<std::size_t>(curve.getSize()));
    visitEdges(curve, [&](int, const Vector<T>& a, const Vector<T>& b) {
        edges.emplace_back(a, b, c1, c2);
        return true;
    });
    return edges;
}

/// Rounds to `T`; what is too large for an `int` becomes the largest of its sign.
template <class T>
T rounded(double value)
{
    if constexpr (std::is_integral_v<T>) {
        return static_cast<T>(std::clamp(value, static_cast<double>(std::numeric_limits<T>::min()),
                                         static_cast<double>(std::numeric_limits<T>::max())));
    } else {
        return static_cast<T>(value);
    }
}

} // namespace

template <class T>
T Curve<T>::length() const
{
    const int size = this->getSize();
    T sum = 0;
    if (isClosed() && size > 1) {
        sum += vertexDistance((*this)[0], (*this)[size - 1]);
    }
    for (int i = 1; i < size; ++i) {
        sum += vertexDistance((*this)[i - 1], (*this)[i]);
    }
    return sum;
}

template <class T>
T Curve<T>::twiceArea(int c1, int c2) const
{
    const int size = this->getSize();
    if (open_ || size < 3) {
        return 0;
    }
    double sum = twiceAreaOfEdge((*this)[size - 1], (*this)[0], c1, c2);
    for (int i = 1; i < size; ++i) {
        sum += twiceAreaOfEdge((*this)[i - 1], (*this)[i], c1, c2);
    }
    return rounded<T>(sum);
}

template <class T>
int Curve<T>::projectedAreaSign(int c1, int c2) const
{
    static const T epsilon = Vector<T>::epsilon();
    const T area = twiceArea(c1, c2);
    return area > epsilon ? 1 : area < -epsilon ? -1 : 0;
}

template <class T>
bool Curve<T>::isClockwise(int c1, int c2) const
{
    return projectedAreaSign(c1, c2) < 0;
}

template <class T>
void Curve<T>::setClockwise(bool clockwise, int c1, int c2)
{
    const int sign = projectedAreaSign(c1, c2);
    if ((sign > 0 && clockwise) || (sign < 0 && !clockwise)) {
        this->reverse();
    }
}

template <class T>
bool Curve<T>::contains(const Vector<T>& position, int c1, int c2) const
{
    if (open_) {
        return false;
    }
    const Widened<T> epsilon = Vector<T>::epsilon();
    const Widened<T> px = position[c1];
    const Widened<T> py = position[c2];
    bool onVertex = false;
    bool inside = false;
    visitEdges(*this, [&](int, const Vector<T>& a, const Vector<T>& b) {
        const Segment<T> edge(a, b, c1, c2);
        if (edge.x1 == px && edge.y1 == py) {
            onVertex = true;
            return false;
        }
        const Widened<T> k = (edge.x2 - px) * (edge.y1 - py) - (edge.y2 - py) * (edge.x1 - px);
        if (py >= edge.y2 && edge.y1 > py) {
            inside ^= k >= epsilon;
        } else if (py >= edge.y1 && edge.y2 > py) {
            inside ^= k <= -epsilon;
        }
        return true;
    });
    return onVertex || inside;
}

template <class T>
bool Curve<T>::containsAll(const Vertices<T>& vertices, int c1, int c2) const
{
    for (int i = 0; i < vertices.getSize(); ++i) {
        if (!contains(vertices[i], c1, c2)) {
            return false;
        }
    }
    return true;
}

template <class T>
bool Curve<T>::contains(const Curve& curve, int c1, int c2) const
{
    if (open_) {
        return false;
    }
    const std::vector<Segment<T>> edges = segments(*this, c1, c2);
    for (int i = 0; i < curve.getSize() && !edges.empty(); ++i) {
        Segment<T> ray(curve[i], curve[i], c1, c2);
        ray.x2 = (*this)[this->findMax(c1)][c1];
        int crossings = 0;
        for (const Segment<T>& edge : edges) {
            const bool reachesAcross =
                std::min(edge.y1, edge.y2) < ray.y1 && ray.y1 < std::max(edge.y1, edge.y2);
            if (reachesAcross && std::max(edge.x1, edge.x2) > ray.x1 &&
                SegmentCrossing<T>(edge, ray).meetsSegment()) {
                ++crossings;
            }
        }
        if (crossings > 0 && crossings % 2 == 0) {
            return false;
        }
    }
    return !intersects(curve, c1, c2);
}

template <class T>
T Curve<T>::closestPoint(const Vector<T>& position, Vector<T>& q, int* edge) const
{
    bool found = false;
    T smallest = 0;
    Vector<T> candidate;
    Vector<T> best;
    visitEdges(*this, [&](int index, const Vector<T>& a, const Vector<T>& b) {
        pointOnSegment(a, b, placeOnLine(a, b, position), candidate);
        const T distance = squaredDistance(candidate, position);
        if (found ? distance < smallest : distance == distance) {
            found = true;
            smallest = distance;
            best = candidate;
            if (edge != nullptr) {
                *edge = index;
            }
        }
        return true;
    });
    if (!found) {
        return std::numeric_limits<T>::quiet_NaN();
    }
    q = best;
    return static_cast<T>(std::sqrt(smallest));
}

template <class T>
bool Curve<T>::intersects(const Curve& curve, int c1, int c2) const
{
    const std::vector<Segment<T>> others = segments(curve, c1, c2);
    for (const Segment<T>& edge : segments(*this, c1, c2)) {
        for (const Segment<T>& other : others) {
            if (SegmentCrossing<T>(edge, other).meetsSegment()) {
                return true;
            }
        }
    }
    return false;
}

template <class T>
bool Curve<T>::selfIntersects(int c1, int c2) const
{
    const std::vector<Segment<T>> edges = segments(*this, c1, c2);
    const std::size_t count = edges.size();
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t j = 0; j < count; ++j) {
            const std::size_t apart = i < j ? j - i : i - j;
            const bool neighbours = apart < 2 || (isClosed() && apart == count - 1);
            if (!neighbours && SegmentCrossing<T>(edges[i], edges[j]).meetsSegment()) {
                return true;
            }
        }
    }
    return false;
}

template <class T>
std::vector<int> Curve<T>::intersectionIndexes(const Curve& curve, int c1, int c2) const
{
    const std::vector<Segment<T>> edges = segments(*this, c1, c2);
    const std::vector<Segment<T>> others = segments(curve, c1, c2);
    std::vector<int> indexes;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        for (const Segment<T>& other : others) {
            if (SegmentCrossing<T>(edges[i], other).meetsSegment()) {
                indexes.push_back(static_cast<int>(i));
            }
        }
    }
    return indexes;
}

template <class T>
Vertices<T> Curve<T>::normals(int c1, int c2) const
{
    const int size = this->getSize();
    Vertices<T> result(2, size, 0, 0);
    for (int i = 0; i < size; ++i) {
        const int before = i > 0 ? i - 1 : open_ ? 0 : size - 1;
        const int behind = i < size - 1 ? i + 1 : open_ ? size - 1 : 0;
        Vector<T>& normal = result[i];
        normal[0] = -((*this)[behind][c2] - (*this)[before][c2]);
        normal[1] = (*this)[behind][c1] - (*this)[before][c1];
        normal.normalize();
    }
    return result;
}

#define INSTANTIATE_CURVE_GEOMETRY(T)                                                              \
    template T Curve<T>::length() const;                                                           \
    template T Curve<T>::twiceArea(int, int) const;                                                \
    template int Curve<T>::projectedAreaSign(int, int) const;                                      \
    template bool Curve<T>::isClockwise(int, int) const;                                           \
    template void Curve<T>::setClockwise(bool, int, int);                                          \
    template bool Curve<T>::contains(const Vector<T>&, int, int) const;                            \
    template bool Curve<T>::containsAll(const Vertices<T>&, int, int) const;                       \
    template bool Curve<T>::contains(const Curve<T>&, int, int) const;                             \
    template T Curve<T>::closestPoint(const Vector<T>&, Vector<T>&, int*) const;                   \
    template bool Curve<T>::intersects(const Curve<T>&, int, int) const;                           \
    template bool Curve<T>::selfIntersects(int, int) const;                                        \
    template std::vector<int> Curve<T>::intersectionIndexes(const Curve<T>&, int, int) const;      \
    template Vertices<T> Curve<T>::normals(int, int) const;

INSTANTIATE_CURVE_GEOMETRY(int)
INSTANTIATE_CURVE_GEOMETRY(float)
INSTANTIATE_CURVE_GEOMETRY(double)
INSTANTIATE_CURVE_GEOMETRY(long double)
