#include "blade/landmarks/stalksearch.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

/// Levels come in steps that no junction depends on.
constexpr double levelStep = 1.03;
/// Degrees by which the outline turns, over a stalk's width to either side, at a corner, at the corner
/// across from one, and where a lobe of the blade lies back along the stalk.
constexpr double cornerTurn = 30.0;
constexpr double otherTurn = 15.0;
constexpr double foldTurn = 90.0;
/// How far behind a junction under such a lobe the other one may lie, in widths of the stalk.
constexpr double reach = 2.5;
/// How far up the blade from its corner a junction is put, in widths of the stalk, and at least in
/// vertices of the outline: on the corner, that would count as a sinus.
constexpr double besideCorner = 0.15;
constexpr double fewestBeside = 1.0;

} // namespace

StalkSearch::StalkSearch(const OutlineRing& ring)
    : ring_(ring)
{
    fitDiscs();
}

int StalkSearch::widthInSteps(double level) const
{
    return std::max(2, static_cast<int>(std::lround(2.0 * level / ring_.step())));
}

/// The disc that touches the outline in p and passes through q, its centre on the inward normal n,
/// has the radius |q - p|^2 / (2 n (q - p)). The largest one inside has the least of them. Radii
/// above the thickest stalk's are cut there, so points far away to the left or right are left out.
void StalkSearch::fitDiscs()
{
    using Point = OutlineRing::Point;
    const double largest = std::max(slender.thickest, stubby.thickest) * ring_.scale();
    std::vector<int> order(ring_.points().size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(),
              [this](int a, int b) { return ring_.at(a).x < ring_.at(b).x; });
    std::vector<Point> sorted;
    sorted.reserve(order.size());
    for (const int i : order) {
        sorted.push_back(ring_.at(i));
    }
    radii_.assign(order.size(), largest);
    std::size_t begin = 0;
    std::size_t end = 0;
    for (const int i : order) {
        const Point p = ring_.at(i);
        const Point along = ring_.at(i + 1) - ring_.at(i - 1);
        const double length = std::sqrt(dot(along, along));
        while (begin < sorted.size() && sorted[begin].x < p.x - 2.0 * largest) {
            ++begin;
        }
        while (end < sorted.size() && sorted[end].x <= p.x + 2.0 * largest) {
            ++end;
        }
        double curvature = length / largest;
        for (std::size_t k = begin; k < end; ++k) {
            const Point d = sorted[k] - p;
            const double height = 2.0 * cross(along, d);
            const double squared = dot(d, d);
            if (height > curvature * squared) {
                curvature = height / squared;
            }
        }
        radii_[static_cast<std::size_t>(i)] = curvature > 0.0 ? length / curvature : largest;
    }
}

/// The stretches below the level that are long for it and whose ends lie across a stalk.
void StalkSearch::addStretches(double level,
                               double lengthPerLevel,
                               std::vector<Stretch>& stretches) const
{
    const int size = ring_.size();
    const auto below = [&](int i) { return radius(i) < level; };
    int start = 0;
    while (start < size && below(start)) {
        ++start;
    }
    for (int i = start; i < start + size; ++i) {
        if (!below(i)) {
            continue;
        }
        const int first = i;
        while (below(i + 1)) {
            ++i;
        }
        const double merit = (i - first + 1) * ring_.step() - lengthPerLevel * level;
        if (merit >= 0.0 && ring_.distance(first, i) <= 3.0 * level) {
            stretches.push_back({ring_.wrapped(first), ring_.wrapped(i), level, merit});
        }
    }
}

std::vector<StalkSearch::Stretch> StalkSearch::stretches(const Kind& kind) const
{
    std::vector<Stretch> all;
    for (double level = kind.thinnest * ring_.scale(); level < kind.thickest * ring_.scale();
         level *= levelStep) {
        addStretches(level, kind.lengthPerLevel, all);
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Stretch& a, const Stretch& b) { return a.merit > b.merit; });
    std::vector<Stretch> best;
    std::vector<bool> taken(ring_.points().size(), false);
    for (const Stretch& stretch : all) {
        const int middle = ring_.wrapped(stretch.first + lengthOf(stretch) / 2);
        if (taken[static_cast<std::size_t>(middle)]) {
            continue;
        }
        best.push_back(stretch);
        for (int i = 0; i < lengthOf(stretch); ++i) {
            taken[static_cast<std::size_t>(ring_.wrapped(stretch.first + i))] = true;
        }
    }
    return best;
}

double StalkSearch::bulk(const Stretch& stretch) const
{
    double sum = 0.0;
    for (int i = 0; i < lengthOf(stretch); ++i) {
        sum += radius(stretch.first + i) * radius(stretch.first + i);
    }
    return sum * ring_.step() / (stretch.level * stretch.level * stretch.level);
}

double StalkSearch::fill(const Stretch& stretch) const
{
    return bulk(stretch) * stretch.level / (lengthOf(stretch) * ring_.step());
}

int StalkSearch::narrowest(int near, int reach) const
{
    const int half = std::max(1, reach / 3);
    const auto around = [&](int i) {
        double sum = 0.0;
        for (int k = i - half; k <= i + half; ++k) {
            sum += radius(k);
        }
        return sum;
    };
    int best = near;
    double least = around(near);
    for (int away = 1; away <= reach; ++away) {
        for (const int i : {near - away, near + away}) {
            const double sum = around(i);
            if (sum < 0.999 * least) {
                least = sum;
                best = i;
            }
        }
    }
    return ring_.wrapped(best);
}

/// How many steps beyond the end of a stretch the outline turns most, and by how much.
std::pair<int, double>
StalkSearch::sharpestTurn(int end, int direction, int from, int to, int width) const
{
    std::pair<int, double> sharpest(from, ring_.turn(end + direction * from, direction, width));
    for (int beyond = from + 1; beyond <= to; ++beyond) {
        const double degrees = ring_.turn(end + direction * beyond, direction, width);
        if (degrees > sharpest.second) {
            sharpest = {beyond, degrees};
        }
    }
    return sharpest;
}

/// The place of the other flank nearest to a corner, up to `reach` steps from the end of that flank.
int StalkSearch::nearestAcross(int corner, int end, int reach) const
{
    int nearest = end;
    for (int i = end - reach; i <= end + reach; ++i) {
        if (ring_.distance(i, corner) < ring_.distance(nearest, corner)) {
            nearest = i;
        }
    }
    return nearest;
}

StalkSearch::Beginning StalkSearch::moveToCorners(Stretch& stretch) const
{
    const int width = widthInSteps(stretch.level);
    const int ends[2] = {stretch.first, stretch.last};
    std::pair<int, double> corners[2];
    for (int side = 0; side < 2; ++side) {
        corners[side] = sharpestTurn(ends[side], 2 * side - 1, -(width / 2), width, width);
    }
    const double sharper = std::max(corners[0].second, corners[1].second);
    if (sharper < cornerTurn) {
        return {Base::Gradual, 0.0};
    }
    const int beside = static_cast<int>(std::lround(
        std::max(besideCorner * width, fewestBeside * ring_.vertexDistance() / ring_.step())));
    const auto placeOf = [&](int side) {
        return ends[side] + (2 * side - 1) * (corners[side].first + beside);
    };
    Beginning beginning{Base::Corners, std::min(corners[0].second, corners[1].second)};
    int places[2] = {placeOf(0), placeOf(1)};
    for (int side = 0; side < 2; ++side) {
        if (corners[side].second >= otherTurn) {
            continue;
        }
        corners[side] =
            sharpestTurn(ends[side], 2 * side - 1, width + 1, int(reach * width), width);
        beginning.turn = corners[side].second;
        places[side] = placeOf(side);
        if (sharper < foldTurn || corners[side].second < cornerTurn) {
            beginning = {Base::OneSided, 0.0};
            const int within = std::min(width, lengthOf(stretch) / 3);
            places[side] = nearestAcross(places[1 - side], ends[side], within);
        }
    }
    stretch.first = ring_.wrapped(places[0]);
    stretch.last = ring_.wrapped(places[1]);
    return beginning;
}
