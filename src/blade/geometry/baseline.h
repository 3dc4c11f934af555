#pragma once

#include "numerics/vector.h"

/// The straight line through two points of the plane, as the reference for heights of teeth, widths
/// of blades and places along the blade axis. All arithmetic is in float, in the order written
/// here, so that all stages get the same digits.
class BaseLine
{
public:
    /// The line from `from` to `to`; only their first two coordinates count. Two equal points give
    /// a line without direction: all its results are NaN.
    BaseLine(const Vector<float>& from, const Vector<float>& to);

    /// Distance from `from` to `to`.
    float length() const { return length_; }

    /// Distance of a point from the line.
    float distance(const Vector<float>& point) const;

    /// Distance of the foot of a point's perpendicular from `from` and from `to`, without sign.
    float footFromStart(const Vector<float>& point) const;
    float footFromEnd(const Vector<float>& point) const;

private:
    struct Point
    {
        float x;
        float y;
    };

    Point foot(const Vector<float>& point) const;
    static float distance(Point a, Point b);

    Point from_;
    Point to_;
    Point direction_;
    float length_;
};

/// The midpoint of two points of the plane, computed as ((a - b) * 0.5) + b in each coordinate.
Vector<float> midpoint(const Vector<float>& a, const Vector<float>& b);
