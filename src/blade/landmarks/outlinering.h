#pragma once

#include "shape/curves/curve.h"

#include <cstddef>
#include <vector>

/// The outline of a leaf as points at equal steps along it, without the stairs of the pixels. It is
/// read around: any index has a point. The way of increasing indices has the blade on the side of a
/// positive `twiceArea(0, 1)`.
class OutlineRing
{
public:
    struct Point
    {
        double x;
        double y;
    };

    /// Takes a closed curve of positive `twiceArea(0, 1)` with its length and the square root of its
    /// area, `scale`. The step is 0.003 of the scale; long outlines get a larger one.
    OutlineRing(const Curve<float>& outline, double perimeter, double scale);

    int size() const { return size_; }

    double step() const { return step_; }

    double scale() const { return scale_; }

    /// The distance of the outline's own vertices, on average.
    double vertexDistance() const { return vertexDistance_; }

    const std::vector<Point>& points() const { return points_; }

    /// The index from 0 to `size() - 1` of the same point. Made for indices a few rounds off: a
    /// remainder would take longer than most of what is done with the point.
    int wrapped(int i) const
    {
        while (i < 0) {
            i += size_;
        }
        while (i >= size_) {
            i -= size_;
        }
        return i;
    }

    const Point& at(int i) const { return points_[static_cast<std::size_t>(wrapped(i))]; }

    /// The distance between two points.
    double distance(int a, int b) const;

    /// Degrees by which the outline, on its way in a direction, 1 or -1, turns outward at a point, over
    /// `width` steps to either side.
    double turn(int i, int direction, int width) const;

    /// The place of a point on the curve, as a length from vertex 0.
    double along(int i) const { return wrapped(i) * step_; }

private:
    void smooth();

    int size_;
    double step_;
    double scale_;
    double vertexDistance_;
    std::vector<Point> points_;
};

OutlineRing::Point operator-(const OutlineRing::Point& a, const OutlineRing::Point& b);
double dot(const OutlineRing::Point& a, const OutlineRing::Point& b);
double cross(const OutlineRing::Point& a, const OutlineRing::Point& b);
