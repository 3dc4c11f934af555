#include "host/editing/contourline.h"

#include "shape/vertices/vertices.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

struct Foot
{
    double x;
    double y;
    double distance;
};

Foot footOnEdge(const QPoint& point, const QPoint& a, const QPoint& b)
{
    const double dx = b.x() - a.x();
    const double dy = b.y() - a.y();
    const double squared = dx * dx + dy * dy;
    const double along =
        squared > 0.0
            ? std::clamp(((point.x() - a.x()) * dx + (point.y() - a.y()) * dy) / squared, 0.0, 1.0)
            : 0.0;
    const double x = a.x() + along * dx;
    const double y = a.y() + along * dy;
    return {x, y, std::hypot(point.x() - x, point.y() - y)};
}

double distanceToLine(const QPoint& point, const std::vector<QPoint>& line)
{
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < line.size(); ++i) {
        smallest = std::min(smallest, footOnEdge(point, line[i - 1], line[i]).distance);
    }
    return smallest;
}

/// Points at even steps, the ends among them.
std::vector<QPoint> thinned(const std::vector<QPoint>& line, std::size_t count)
{
    if (line.size() <= count) {
        return line;
    }
    std::vector<QPoint> points;
    for (std::size_t i = 0; i < count; ++i) {
        points.push_back(line[i * (line.size() - 1) / (count - 1)]);
    }
    return points;
}

/// How far a piece lies from a line, on average. A few hundred points tell.
double meanDistance(const std::vector<QPoint>& piece, const std::vector<QPoint>& line)
{
    constexpr std::size_t enough = 300;
    const std::vector<QPoint> points = thinned(piece, enough);
    const std::vector<QPoint> target = thinned(line, enough);
    double sum = 0.0;
    for (const QPoint& point : points) {
        sum += distanceToLine(point, target);
    }
    return sum / static_cast<double>(points.size());
}

double squaredDistance(const QPoint& a, const QPoint& b)
{
    const double dx = a.x() - b.x();
    const double dy = a.y() - b.y();
    return dx * dx + dy * dy;
}

double lengthOf(const std::vector<QPoint>& line)
{
    double length = 0.0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        length += std::sqrt(squaredDistance(line[i - 1], line[i]));
    }
    return length;
}

void rotateToNearest(std::vector<QPoint>& line, const QPoint& origin)
{
    const auto nearest =
        std::min_element(line.begin(), line.end(), [&](const QPoint& a, const QPoint& b) {
            return squaredDistance(a, origin) < squaredDistance(b, origin);
        });
    std::rotate(line.begin(), nearest, line.end());
}

} // namespace

QPoint ContourLine::Place::pixel() const
{
    return {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))};
}

ContourLine::ContourLine(const Vertices<int>& contour)
{
    vertices_.reserve(static_cast<std::size_t>(contour.getSize()));
    for (int i = 0; i < contour.getSize(); ++i) {
        vertices_.emplace_back(contour[i][0], contour[i][1]);
    }
}

ContourLine::Place ContourLine::nearest(const QPoint& point) const
{
    Place best = {0, 0.0, 0.0, std::numeric_limits<double>::infinity()};
    for (std::size_t i = 0; i < vertices_.size(); ++i) {
        const Foot foot = footOnEdge(point, vertices_[i], vertices_[(i + 1) % vertices_.size()]);
        if (foot.distance < best.distance) {
            best = {static_cast<int>(i), foot.x, foot.y, foot.distance};
        }
    }
    return best;
}

double ContourLine::diagonal() const
{
    const auto x = std::minmax_element(vertices_.begin(), vertices_.end(),
                                       [](const auto& a, const auto& b) { return a.x() < b.x(); });
    const auto y = std::minmax_element(vertices_.begin(), vertices_.end(),
                                       [](const auto& a, const auto& b) { return a.y() < b.y(); });
    return std::hypot(x.second->x() - x.first->x(), y.second->y() - y.first->y());
}

/// The vertices behind one place up to another, in the sense of the contour. Two places on one edge
/// give nothing if the second lies ahead, else the whole round.
std::vector<QPoint> ContourLine::piece(const Place& from, const Place& to) const
{
    int count = (to.edge - from.edge + sizeOf()) % sizeOf();
    const auto& start = vertices_[static_cast<std::size_t>(from.edge)];
    if (count == 0 && std::hypot(to.x - start.x(), to.y - start.y()) <
                          std::hypot(from.x - start.x(), from.y - start.y())) {
        count = sizeOf();
    }
    std::vector<QPoint> points;
    for (int i = 1; i <= count; ++i) {
        points.push_back(vertices_[static_cast<std::size_t>((from.edge + i) % sizeOf())]);
    }
    return points;
}

std::vector<QPoint> ContourLine::redrawn(const std::vector<QPoint>& drawn) const
{
    const Place start = nearest(drawn.front());
    const Place end = nearest(drawn.back());
    std::vector<QPoint> line = drawn;
    line.insert(line.begin(), start.pixel());
    line.push_back(end.pixel());

    const auto withEnds = [](std::vector<QPoint> points, const Place& from, const Place& to) {
        points.insert(points.begin(), from.pixel());
        points.push_back(to.pixel());
        return points;
    };
    const std::vector<QPoint> ahead = withEnds(piece(start, end), start, end);
    const std::vector<QPoint> behind = withEnds(piece(end, start), end, start);
    const double aheadDistance = meanDistance(ahead, line);
    const double behindDistance = meanDistance(behind, line);
    const bool replaceAhead =
        aheadDistance < behindDistance ||
        (aheadDistance == behindDistance && lengthOf(ahead) <= lengthOf(behind));

    std::vector<QPoint> points = pixelSteps(line, false);
    if (!replaceAhead) {
        std::reverse(points.begin(), points.end());
    }
    const std::vector<QPoint>& kept = replaceAhead ? behind : ahead;
    points.insert(points.end(), kept.begin() + 1, kept.end() - 1);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    while (points.size() > 1 && points.front() == points.back()) {
        points.pop_back();
    }
    rotateToNearest(points, vertices_.front());
    return points;
}

std::vector<QPoint> ContourLine::pixelSteps(const std::vector<QPoint>& points, bool closed)
{
    std::vector<QPoint> line = {points.front()};
    const auto goTo = [&](const QPoint& target) {
        const QPoint from = line.back();
        const QPoint way = target - from;
        const int steps = std::max(std::abs(way.x()), std::abs(way.y()));
        for (int i = 1; i <= steps; ++i) {
            const double part = static_cast<double>(i) / steps;
            line.emplace_back(from.x() + static_cast<int>(std::lround(part * way.x())),
                              from.y() + static_cast<int>(std::lround(part * way.y())));
        }
    };
    for (std::size_t i = 1; i < points.size(); ++i) {
        goTo(points[i]);
    }
    if (closed) {
        goTo(points.front());
        while (line.size() > 1 && line.back() == line.front()) {
            line.pop_back();
        }
    }
    return line;
}
