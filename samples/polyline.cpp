#include "samples/polyline.h"

#include <algorithm>
#include <cmath>

namespace {

std::size_t wrapped(long index, std::size_t count)
{
    const long n = static_cast<long>(count);
    return static_cast<std::size_t>(((index % n) + n) % n);
}

} // namespace

Point operator+(const Point& a, const Point& b)
{
    return {a.x + b.x, a.y + b.y};
}

Point operator-(const Point& a, const Point& b)
{
    return {a.x - b.x, a.y - b.y};
}

Point operator*(const Point& a, double factor)
{
    return {a.x * factor, a.y * factor};
}

double length(const Point& a)
{
    return std::hypot(a.x, a.y);
}

Polyline bezier(const Point& a, const Point& b, const Point& c, int count)
{
    Polyline points;
    for (int i = 0; i < count; ++i) {
        const double t = static_cast<double>(i) / count;
        points.push_back(a * ((1 - t) * (1 - t)) + b * (2 * t * (1 - t)) + c * (t * t));
    }
    return points;
}

Polyline resampledLoop(const Polyline& loop, double spacing)
{
    std::vector<double> reached = {0.0};
    for (std::size_t i = 0; i < loop.size(); ++i) {
        reached.push_back(reached.back() + length(loop[(i + 1) % loop.size()] - loop[i]));
    }
    const int count = std::max(3, static_cast<int>(std::lround(reached.back() / spacing)));
    Polyline points;
    std::size_t edge = 0;
    for (int i = 0; i < count; ++i) {
        const double at = reached.back() * i / count;
        while (reached[edge + 1] < at) {
            ++edge;
        }
        const double edgeLength = reached[edge + 1] - reached[edge];
        const double part = edgeLength > 0.0 ? (at - reached[edge]) / edgeLength : 0.0;
        points.push_back(loop[edge] + (loop[(edge + 1) % loop.size()] - loop[edge]) * part);
    }
    return points;
}

Polyline smoothedLoop(const Polyline& loop, double sigma)
{
    const int radius = static_cast<int>(std::ceil(3 * sigma));
    Polyline points(loop.size());
    for (std::size_t i = 0; i < loop.size(); ++i) {
        double sum = 0.0;
        for (int k = -radius; k <= radius; ++k) {
            const double weight = std::exp(-0.5 * k * k / (sigma * sigma));
            points[i] = points[i] + loop[wrapped(static_cast<long>(i) + k, loop.size())] * weight;
            sum += weight;
        }
        points[i] = points[i] * (1.0 / sum);
    }
    return points;
}

int nearestPoint(const Polyline& line, const Point& target)
{
    const auto nearest =
        std::min_element(line.begin(), line.end(), [&](const Point& a, const Point& b) {
            return length(a - target) < length(b - target);
        });
    return static_cast<int>(nearest - line.begin());
}

double area(const Polyline& loop)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const Point& a = loop[i];
        const Point& b = loop[(i + 1) % loop.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return twice / 2.0;
}

Polyline stroke(const Polyline& line, double firstWidth, double lastWidth)
{
    Polyline left;
    Polyline right;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const Point& before = line[i == 0 ? 0 : i - 1];
        const Point& after = line[std::min(i + 1, line.size() - 1)];
        const Point along = after - before;
        const double norm = std::max(length(along), 1e-9);
        const double part = static_cast<double>(i) / static_cast<double>(line.size());
        const double half = (firstWidth + (lastWidth - firstWidth) * part) / 2.0;
        const Point across = Point{-along.y, along.x} * (half / norm);
        left.push_back(line[i] + across);
        right.push_back(line[i] - across);
    }
    left.insert(left.end(), right.rbegin(), right.rend());
    return left;
}
