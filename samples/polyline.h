#pragma once

#include <vector>

/// A position, in pixels of a picture (y down) or along and across a leaf.
struct Point
{
    double x = 0.0;
    double y = 0.0;
};

Point operator+(const Point& a, const Point& b);
Point operator-(const Point& a, const Point& b);
Point operator*(const Point& a, double factor);
double length(const Point& a);

using Polyline = std::vector<Point>;

/// `count` points of the quadratic Bezier curve from `a` to `c` with the control point `b`, the
/// first point included and the last one left out.
Polyline bezier(const Point& a, const Point& b, const Point& c, int count);

/// Points at equal distances of about `spacing` along a closed line; the first one stays.
Polyline resampledLoop(const Polyline& loop, double spacing);

/// Each point of a closed line replaced by a Gaussian mean of its neighbours; `sigma` in points.
Polyline smoothedLoop(const Polyline& loop, double sigma);

/// Index of the point nearest to `target`.
int nearestPoint(const Polyline& line, const Point& target);

/// Area of a closed line, positive if it runs clockwise on a screen.
double area(const Polyline& loop);

/// The outline of a line drawn with a pen of `firstWidth` at its start and `lastWidth` at its end.
Polyline stroke(const Polyline& line, double firstWidth, double lastWidth);
