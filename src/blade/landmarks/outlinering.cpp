#include "blade/landmarks/outlinering.h"

#include "shape/curves/curveresampling.h"

#include <algorithm>
#include <cmath>

namespace {

/// Distance of the points, relative to the scale. A stalk 1/80 wide still has four across.
constexpr double spacing = 0.003;
constexpr int mostPoints = 8192;
constexpr int fewestPoints = 64;

} // namespace

OutlineRing::OutlineRing(const Curve<float>& outline, double perimeter, double scale)
    : size_(static_cast<int>(
          std::clamp(perimeter / (spacing * scale), double(fewestPoints), double(mostPoints))))
    , step_(perimeter / size_)
    , scale_(scale)
    , vertexDistance_(perimeter / outline.getSize())
{
    Curve<float> samples;
    CurveResampling<float>().apply(outline, samples, size_);
    points_.reserve(static_cast<std::size_t>(size_));
    for (int i = 0; i < size_; ++i) {
        points_.push_back({double(samples[i][0]), double(samples[i][1])});
    }
    smooth();
}

/// Takes the stairs of the pixels away: four passes of weights 1, 2, 1.
void OutlineRing::smooth()
{
    std::vector<Point> next(points_.size());
    for (int pass = 0; pass < 4; ++pass) {
        for (int i = 0; i < size_; ++i) {
            const Point& a = at(i - 1);
            const Point& b = at(i);
            const Point& c = at(i + 1);
            next[static_cast<std::size_t>(i)] = {(a.x + 2.0 * b.x + c.x) / 4.0,
                                                 (a.y + 2.0 * b.y + c.y) / 4.0};
        }
        points_.swap(next);
    }
}

double OutlineRing::distance(int a, int b) const
{
    const Point between = at(b) - at(a);
    return std::sqrt(dot(between, between));
}

double OutlineRing::turn(int i, int direction, int width) const
{
    const Point before = at(i) - at(i - direction * width);
    const Point behind = at(i + direction * width) - at(i);
    return -direction * std::atan2(cross(before, behind), dot(before, behind)) * 180.0 / M_PI;
}

OutlineRing::Point operator-(const OutlineRing::Point& a, const OutlineRing::Point& b)
{
    return {a.x - b.x, a.y - b.y};
}

double dot(const OutlineRing::Point& a, const OutlineRing::Point& b)
{
    return a.x * b.x + a.y * b.y;
}

double cross(const OutlineRing::Point& a, const OutlineRing::Point& b)
{
    return a.x * b.y - a.y * b.x;
}
