#pragma once

#include "shape/vertices/vertexdistance.h"

#include <cmath>
#include <type_traits>

/// The type in which products of coordinates are computed: integer products outgrow `int`.
template <class T>
using Widened = std::conditional_t<std::is_integral_v<T>, long double, T>;

/// The scalar product, wide enough for integers.
template <class T>
inline Widened<T> widenedProduct(const Vector<T>& a, const Vector<T>& b)
{
    requireEqualSizes(a, b);
    Widened<T> product = 0;
    for (int i = 0; i < a.getSize(); ++i) {
        product += Widened<T>(a[i]) * Widened<T>(b[i]);
    }
    return product;
}

/// An edge seen in a plane of two coordinates.
template <class T>
struct Segment
{
    Segment(const Vector<T>& a, const Vector<T>& b, int c1, int c2)
        : x1(a[c1])
        , y1(a[c2])
        , x2(b[c1])
        , y2(b[c2])
    {}

    Widened<T> x1, y1, x2, y2;
};

/// How a segment meets another one, found without a division: `d / f` and `e / f` are the places of
/// the crossing along the two. Source: F. Antonio, Faster line segment intersection, Graphics Gems
/// III, 1992.
template <class T>
struct SegmentCrossing
{
    SegmentCrossing(const Segment<T>& segment, const Segment<T>& other)
    {
        const Widened<T> ax = segment.x1 - segment.x2;
        const Widened<T> ay = segment.y1 - segment.y2;
        const Widened<T> bx = other.x1 - other.x2;
        const Widened<T> by = other.y1 - other.y2;
        const Widened<T> cx = other.x1 - segment.x1;
        const Widened<T> cy = segment.y1 - other.y1;
        f = ay * bx - ax * by;
        d = by * cx + bx * cy;
        e = ay * cx + ax * cy;
    }

    /// The segment meets the infinite line through the other; never for parallels.
    bool meetsLine() const { return f != 0 && spans(d); }

    /// The segments meet, end points included; never for parallels.
    bool meetsSegment() const { return meetsLine() && spans(e); }

    Widened<T> d, e, f;

private:
    bool spans(Widened<T> value) const
    {
        return f > 0 ? 0 <= value && value <= f : f <= value && value <= 0;
    }
};

/// The edge's share in twice the signed area, in double precision from the coordinates on.
template <class T>
inline double twiceAreaOfEdge(const Vector<T>& a, const Vector<T>& b, int c1, int c2)
{
    return static_cast<double>(a[c1]) * static_cast<double>(b[c2]) -
           static_cast<double>(a[c2]) * static_cast<double>(b[c1]);
}

/// Where `position` falls along the line from `a` to `b`: 0 at `a`, 1 at `b`, 0 where these
/// coincide. Whole numbers are truncated for `int`.
template <class T>
inline T placeOnLine(const Vector<T>& a, const Vector<T>& b, const Vector<T>& position)
{
    requireEqualSizes(a, b);
    requireEqualSizes(a, position);
    Widened<T> along = 0;
    Widened<T> square = 0;
    for (int i = 0; i < a.getSize(); ++i) {
        const Widened<T> step = Widened<T>(b[i]) - Widened<T>(a[i]);
        along += (Widened<T>(position[i]) - Widened<T>(a[i])) * step;
        square += step * step;
    }
    return square == 0 ? T(0) : static_cast<T>(along / square);
}

/// Writes the point of the segment from `a` to `b` at `place`, or the end beyond which it lies.
template <class T>
inline void pointOnSegment(const Vector<T>& a, const Vector<T>& b, T place, Vector<T>& q)
{
    q.setSize(a.getSize());
    for (int i = 0; i < a.getSize(); ++i) {
        if (place <= 0) {
            q[i] = a[i];
        } else if (place >= 1) {
            q[i] = b[i];
        } else {
            q[i] = a[i] + place * (b[i] - a[i]);
        }
    }
}
