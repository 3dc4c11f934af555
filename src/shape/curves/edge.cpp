#include "shape/curves/edge.h"

#include "numerics/elementtype.h"
#include "shape/vertices/segment.h"

namespace {

template <class T>
void storeCrossing(const Segment<T>& segment, const SegmentCrossing<T>& crossing, Vector<T>* q)
{
    if (q == nullptr) {
        return;
    }
    Widened<T> place = crossing.d / crossing.f;
    if constexpr (std::is_integral_v<T>) {
        place = std::trunc(place);
    }
    q->setSize(2);
    (*q)[0] = static_cast<T>(segment.x1 - place * (segment.x1 - segment.x2));
    (*q)[1] = static_cast<T>(segment.y1 - place * (segment.y1 - segment.y2));
}

} // namespace

template <class T>
Edge<T>::Edge()
{
    this->open_ = true;
}

template <class T>
Edge<T>::Edge(int space)
    : Curve<T>(space, 2, 0, 0, true)
{}

template <class T>
Edge<T>::Edge(const Vertices<T>& shape, int i, int j)
    : Edge()
{
    // The view shares the server without ever changing the shape; the server is not const-aware.
    this->setServer(const_cast<VertexServer<T>&>(*shape.getServer()));
    this->indices_ = {shape.getIndex(i), shape.getIndex(j)};
}

template <class T>
Edge<T>::Edge(const Edge& other) = default;

template <class T>
Edge<T>::~Edge() = default;

template <class T>
Edge<T>& Edge<T>::operator=(const Edge& other)
{
    this->assign(other);
    return *this;
}

template <class T>
Edge<T>* Edge<T>::clone() const
{
    return new Edge(*this);
}

template <class T>
T Edge<T>::closestPoint(const Vector<T>& position, Vector<T>& q) const
{
    const T place = placeOnLine((*this)[0], (*this)[1], position);
    pointOnSegment((*this)[0], (*this)[1], place, q);
    return place;
}

template <class T>
int Edge<T>::intersects([[maybe_unused]] const Vector<T>& normal,
                        [[maybe_unused]] T offset,
                        [[maybe_unused]] Vector<T>& q) const
{
    if constexpr (std::is_integral_v<T>) {
        raiseNotAvailable<T>("int Edge<T>::intersects(...)");
    } else {
        const Vector<T>& first = (*this)[0];
        const Vector<T>& second = (*this)[1];
        const T a = first.scalarProduct(normal);
        const T b = second.scalarProduct(normal);
        if (a == b) {
            if (a != offset) {
                return 0;
            }
            q = first;
            return 2;
        }
        const T place = (offset - a) / (b - a);
        if (!(place >= 0 && place <= 1)) {
            return 0;
        }
        pointOnSegment(first, second, place, q);
        return 1;
    }
}

template <class T>
bool Edge<T>::projectionIntersects(const Edge& other, int c1, int c2, Vector<T>* q) const
{
    const Segment<T> segment((*this)[0], (*this)[1], c1, c2);
    const SegmentCrossing<T> crossing(segment, Segment<T>(other[0], other[1], c1, c2));
    if (!crossing.meetsSegment()) {
        return false;
    }
    storeCrossing(segment, crossing, q);
    return true;
}

template <class T>
bool Edge<T>::projectionIntersectsLine(const Edge& other, int c1, int c2, Vector<T>* q) const
{
    const Segment<T> segment((*this)[0], (*this)[1], c1, c2);
    const SegmentCrossing<T> crossing(segment, Segment<T>(other[0], other[1], c1, c2));
    if (!crossing.meetsLine()) {
        return false;
    }
    storeCrossing(segment, crossing, q);
    return true;
}

template class Edge<int>;
template class Edge<float>;
template class Edge<double>;
template class Edge<long double>;
