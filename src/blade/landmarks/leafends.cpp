#include "blade/landmarks/leafends.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Point = OutlineRing::Point;

/// How many points of a flank are compared with the other one.
constexpr int compared = 160;
/// How many points of the outline are tried as ends.
constexpr int tried = 240;
/// Half the width over which the outline is smoothed to tell teeth, relative to the scale.
constexpr double toothWindow = 0.08;
/// How much of the flanks is left out at both ends, where the ends themselves are no teeth.
constexpr double toothless = 0.2;
/// The cube of the slope, on average, from which on teeth are plain to see.
constexpr double plainTeeth = 0.02;
/// How far an end may be moved to the place that stands out most, relative to the scale.
constexpr double tipReach = 0.06;

/// Means over `half` points to either side, twice over, so that no corner of the window shows.
std::vector<Point> slidingMeans(std::vector<Point> points, int half)
{
    const int size = static_cast<int>(points.size());
    const auto at = [&](int i) {
        return points[static_cast<std::size_t>((i % size + size) % size)];
    };
    for (int pass = 0; pass < 2; ++pass) {
        std::vector<Point> means;
        means.reserve(points.size());
        Point sum{0.0, 0.0};
        for (int i = -half; i <= half; ++i) {
            sum = {sum.x + at(i).x, sum.y + at(i).y};
        }
        for (int i = 0; i < size; ++i) {
            means.push_back({sum.x / (2 * half + 1), sum.y / (2 * half + 1)});
            sum = {sum.x + at(i + half + 1).x - at(i - half).x,
                   sum.y + at(i + half + 1).y - at(i - half).y};
        }
        points.swap(means);
    }
    return points;
}

} // namespace

LeafEnds::LeafEnds(const OutlineRing& ring)
    : ring_(ring)
    , centre_{0.0, 0.0}
{
    for (const Point& point : ring.points()) {
        centre_ = {centre_.x + point.x / ring.size(), centre_.y + point.y / ring.size()};
    }
    measureTeeth(toothWindow);
}

void LeafEnds::measureTeeth(double window)
{
    const int size = ring_.size();
    const int half = std::clamp(
        static_cast<int>(std::lround(window * ring_.scale() / ring_.step())), 1, size / 8);
    const std::vector<Point> smooth = slidingMeans(ring_.points(), half);
    const auto height = [&](int i) {
        const auto k = static_cast<std::size_t>(ring_.wrapped(i));
        const Point along = smooth[static_cast<std::size_t>(ring_.wrapped(i + 1))] -
                            smooth[static_cast<std::size_t>(ring_.wrapped(i - 1))];
        const double length = std::sqrt(dot(along, along));
        return length > 0.0 ? -cross(along, ring_.points()[k] - smooth[k]) / length : 0.0;
    };
    signedSums_.assign(1, 0.0);
    absoluteSums_.assign(1, 0.0);
    double before = height(0);
    for (int i = 0; i < size; ++i) {
        const double behind = height(i + 1);
        const double step = (behind - before) / ring_.step();
        signedSums_.push_back(signedSums_.back() + step * step * step);
        absoluteSums_.push_back(absoluteSums_.back() + std::fabs(step * step * step));
        before = behind;
    }
}

Point LeafEnds::middle(int first, int last) const
{
    const Point& a = ring_.at(first);
    const Point& b = ring_.at(last);
    return {(a.x + b.x) / 2.0, (a.y + b.y) / 2.0};
}

double LeafEnds::distanceFrom(const Point& from, int i) const
{
    const Point between = ring_.at(i) - from;
    return std::sqrt(dot(between, between));
}

double LeafEnds::asymmetry(int first, int last) const
{
    const Point from = middle(first, last);
    const double flank = (ring_.size() - ring_.wrapped(last - first)) / 2.0;
    double difference = 0.0;
    double sum = 0.0;
    std::vector<Point> halfway;
    Point axis{0.0, 0.0};
    for (int k = 1; k <= compared; ++k) {
        const int steps = static_cast<int>(flank * k / compared);
        const double ahead = distanceFrom(from, last + steps);
        const double behind = distanceFrom(from, first - steps);
        difference += std::fabs(ahead - behind);
        sum += (ahead + behind) / 2.0;
        halfway.push_back(middle(first - steps, last + steps) - from);
        axis = {axis.x + halfway.back().x, axis.y + halfway.back().y};
    }
    const double length = std::sqrt(dot(axis, axis));
    for (const Point& point : halfway) {
        difference += length > 0.0 ? std::fabs(cross(axis, point)) / length : 0.0;
    }
    return sum > 0.0 ? difference / sum : 1.0;
}

double LeafEnds::teeth(int first, int last) const
{
    const int flank = (ring_.size() - ring_.wrapped(last - first)) / 2;
    const int left = static_cast<int>(toothless * ring_.scale() / ring_.step());
    if (flank <= 3 * left) {
        return 0.0;
    }
    const auto between = [&](const std::vector<double>& sums, int from, int to) {
        const auto begin = static_cast<std::size_t>(ring_.wrapped(from));
        const auto end = static_cast<std::size_t>(ring_.wrapped(to));
        return sums[end] - sums[begin] + (end < begin ? sums.back() : 0.0);
    };
    const auto both = [&](const std::vector<double>& sums, double sign) {
        return between(sums, first - flank + left, first - left) +
               sign * between(sums, last + left, last + flank - left);
    };
    const double all = both(absoluteSums_, 1.0);
    const double enough = plainTeeth * 2.0 * (flank - 2 * left);
    return all > 0.0 ? both(signedSums_, -1.0) / std::max(all, enough) : 0.0;
}

double LeafEnds::width(int first, int last, double part) const
{
    const Point from = middle(first, last);
    const double farthest = distanceFrom(from, farthestFrom(from));
    int ahead = last;
    int behind = first;
    for (int k = 0; k < ring_.size() && distanceFrom(from, ahead) < part * farthest; ++k) {
        ++ahead;
    }
    for (int k = 0; k < ring_.size() && distanceFrom(from, behind) < part * farthest; ++k) {
        --behind;
    }
    return farthest > 0.0 ? ring_.distance(ahead, behind) / farthest : 0.0;
}

int LeafEnds::farthestFrom(const Point& place) const
{
    int farthest = 0;
    double most = -1.0;
    for (int i = 0; i < ring_.size(); ++i) {
        const Point between = ring_.at(i) - place;
        const double squared = dot(between, between);
        if (squared > most) {
            most = squared;
            farthest = i;
        }
    }
    return farthest;
}

std::vector<int> LeafEnds::tips() const
{
    const int count = std::min(tried, ring_.size());
    std::vector<double> values;
    for (int k = 0; k < count; ++k) {
        const int i = k * ring_.size() / count;
        values.push_back(asymmetry(i, i));
    }
    const int reach = static_cast<int>(tipReach * ring_.scale() / ring_.step());
    const int end = farthestFrom(centre_);
    std::vector<int> tips = {end, farthestFrom(ring_.at(end))};
    for (int k = 0; k < count; ++k) {
        const auto value = [&](int i) {
            return values[static_cast<std::size_t>((i % count + count) % count)];
        };
        if (value(k) > value(k - 1) || value(k) >= value(k + 1) || value(k) > 0.3) {
            continue;
        }
        const int i = k * ring_.size() / count;
        int tip = i;
        for (int j = i - reach; j <= i + reach; ++j) {
            if (distanceFrom(centre_, j) > distanceFrom(centre_, tip)) {
                tip = j;
            }
        }
        tips.push_back(ring_.wrapped(tip));
    }
    return tips;
}
