#include "blade/landmarks/junctionproposal.h"

#include "blade/process/landmarks.h"
#include "shape/curves/curveresampling.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

// A stalk is told by the largest disc that fits into the leaf at each point of the outline and
// touches it there: along a stalk its radius is half the stalk's width, bent or not, and it leaps up
// where the blade begins, be it wedge-shaped or with lobes that reach back beside the stalk. So a
// stalk is a stretch of the outline whose discs stay below some level, long for that level. A tooth
// is such a stretch, too, but a short one. Lengths are taken relative to the square root of the
// leaf's area: nothing here depends on unit, turn or mirror.
namespace {

/// Distance of the samples on the outline. A stalk 1/80 wide still has four across.
constexpr double spacing = 0.003;
constexpr int mostSamples = 8192;
constexpr int fewestSamples = 64;
/// Half widths of the stalks looked for, in steps that no junction depends on.
constexpr double thinnest = 0.006;
constexpr double thickest = 0.04;
constexpr double levelStep = 1.03;
/// A stretch ends best where its length less this many levels is largest: where the flanks begin to
/// part at more than 14 degrees from the stalk's axis each (sine 2 / 8).
constexpr double lengthPerLevel = 8.0;
/// Least bulk, see below: a blunt stalk 1.25 times as long as wide, a pointed one 3.75 times.
constexpr double leastBulk = 5.0;
/// Degrees by which the outline turns, over a stalk's width to either side, at a corner, at the corner
/// across from one, and where a lobe of the blade lies back along the stalk.
constexpr double cornerTurn = 30.0;
constexpr double otherTurn = 15.0;
constexpr double foldTurn = 90.0;
/// How far behind a junction under such a lobe the other one may lie, in widths of the stalk.
constexpr double reach = 2.5;
/// How far up the blade from its corner a junction is put, in widths of the stalk: on the corner, that
/// would count as a sinus.
constexpr double besideCorner = 0.15;

struct Point
{
    double x;
    double y;
};

Point operator-(const Point& a, const Point& b)
{
    return {a.x - b.x, a.y - b.y};
}

double dot(const Point& a, const Point& b)
{
    return a.x * b.x + a.y * b.y;
}

double cross(const Point& a, const Point& b)
{
    return a.x * b.y - a.y * b.x;
}

/// A stretch of samples, `last` included, with the level that its discs stay below.
struct Stretch
{
    int first;
    int last;
    double level;
    double merit;
};

class StalkSearch
{
public:
    /// `outline` is closed, turns the positive way, and is sampled at equal distances.
    StalkSearch(const Curve<float>& outline, double perimeter, double scale);

    /// The stalk that ends at both junctions.
    std::optional<Stretch> find() const;

private:
    int wrapped(int i) const { return (i % size_ + size_) % size_; }

    const Point& at(int i) const { return points_[static_cast<std::size_t>(wrapped(i))]; }

    int lengthOf(const Stretch& stretch) const { return wrapped(stretch.last - stretch.first) + 1; }

    int widthInSamples(double level) const
    {
        return std::max(2, static_cast<int>(std::lround(2.0 * level / step_)));
    }

    void smooth();
    void fitDiscs();
    void addStretches(double level, std::vector<Stretch>& stretches) const;
    std::vector<Stretch> bestStretches() const;
    double turn(int i, int direction, int width) const;
    std::pair<int, double> sharpestTurn(int end, int direction, int from, int to, int width) const;
    bool moveToCorners(Stretch& stretch) const;
    double bulk(const Stretch& stretch) const;

    int size_;
    double step_;
    double scale_;
    std::vector<Point> points_;
    std::vector<double> radii_;
};

StalkSearch::StalkSearch(const Curve<float>& outline, double perimeter, double scale)
    : size_(outline.getSize())
    , step_(perimeter / size_)
    , scale_(scale)
{
    for (int i = 0; i < size_; ++i) {
        points_.push_back({double(outline[i][0]), double(outline[i][1])});
    }
    smooth();
    fitDiscs();
}

/// Takes the stairs of the pixels away: four passes of weights 1, 2, 1.
void StalkSearch::smooth()
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

/// The disc that touches the outline in p and passes through q, its centre on the inward normal n,
/// has the radius |q - p|^2 / (2 n (q - p)). The largest one inside has the least of them. Radii
/// above the thickest stalk's are cut there, so points far away to the left or right are left out.
void StalkSearch::fitDiscs()
{
    const double largest = thickest * scale_;
    std::vector<int> order(points_.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [this](int a, int b) { return at(a).x < at(b).x; });
    std::vector<Point> sorted;
    sorted.reserve(points_.size());
    for (const int i : order) {
        sorted.push_back(at(i));
    }
    radii_.assign(points_.size(), largest);
    std::size_t begin = 0;
    std::size_t end = 0;
    for (const int i : order) {
        const Point p = at(i);
        const Point along = at(i + 1) - at(i - 1);
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
void StalkSearch::addStretches(double level, std::vector<Stretch>& stretches) const
{
    const auto below = [&](int i) { return radii_[static_cast<std::size_t>(wrapped(i))] < level; };
    int start = 0;
    while (start < size_ && below(start)) {
        ++start;
    }
    for (int i = start; i < start + size_; ++i) {
        if (!below(i)) {
            continue;
        }
        const int first = i;
        while (below(i + 1)) {
            ++i;
        }
        const double merit = (i - first + 1) * step_ - lengthPerLevel * level;
        const Point across = at(i) - at(first);
        if (merit >= 0.0 && dot(across, across) <= 9.0 * level * level) {
            stretches.push_back({wrapped(first), wrapped(i), level, merit});
        }
    }
}

/// The best stretch at each place, over all levels.
std::vector<Stretch> StalkSearch::bestStretches() const
{
    std::vector<Stretch> all;
    for (double level = thinnest * scale_; level < thickest * scale_; level *= levelStep) {
        addStretches(level, all);
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Stretch& a, const Stretch& b) { return a.merit > b.merit; });
    std::vector<Stretch> best;
    std::vector<bool> taken(points_.size(), false);
    for (const Stretch& stretch : all) {
        const int middle = wrapped(stretch.first + lengthOf(stretch) / 2);
        if (taken[static_cast<std::size_t>(middle)]) {
            continue;
        }
        best.push_back(stretch);
        for (int i = 0; i < lengthOf(stretch); ++i) {
            taken[static_cast<std::size_t>(wrapped(stretch.first + i))] = true;
        }
    }
    return best;
}

/// Degrees by which the outline, on its way from the stalk, turns outward at a sample.
double StalkSearch::turn(int i, int direction, int width) const
{
    const Point before = at(i) - at(i - direction * width);
    const Point behind = at(i + direction * width) - at(i);
    return -direction * std::atan2(cross(before, behind), dot(before, behind)) * 180.0 / M_PI;
}

/// How many samples beyond the end of a stretch the outline turns most, and by how much.
std::pair<int, double>
StalkSearch::sharpestTurn(int end, int direction, int from, int to, int width) const
{
    std::pair<int, double> sharpest(from, turn(end + direction * from, direction, width));
    for (int beyond = from + 1; beyond <= to; ++beyond) {
        const double degrees = turn(end + direction * beyond, direction, width);
        if (degrees > sharpest.second) {
            sharpest = {beyond, degrees};
        }
    }
    return sharpest;
}

/// Moves the ends of a stretch to the corners at which the blade begins. Where a lobe lies back
/// along the stalk, the other flank runs on past that junction to its own. Without any corner, at a
/// blade that narrows gradually, the ends stay. False if but one flank ends: what is taken for a
/// stalk hangs together with a lobe, and its end can't be told.
bool StalkSearch::moveToCorners(Stretch& stretch) const
{
    const int width = widthInSamples(stretch.level);
    const int ends[2] = {stretch.first, stretch.last};
    std::pair<int, double> corners[2];
    for (int side = 0; side < 2; ++side) {
        corners[side] = sharpestTurn(ends[side], 2 * side - 1, -(width / 2), width, width);
    }
    if (std::max(corners[0].second, corners[1].second) < cornerTurn) {
        return true;
    }
    for (int side = 0; side < 2; ++side) {
        if (corners[side].second >= otherTurn) {
            continue;
        }
        if (corners[1 - side].second < foldTurn) {
            return false;
        }
        corners[side] =
            sharpestTurn(ends[side], 2 * side - 1, width + 1, int(reach * width), width);
        if (corners[side].second < cornerTurn) {
            return false;
        }
    }
    const int beside = static_cast<int>(std::lround(besideCorner * width));
    stretch.first = wrapped(stretch.first - corners[0].first - beside);
    stretch.last = wrapped(stretch.last + corners[1].first + beside);
    return true;
}

/// Squares of the radii along the stretch, in levels. It tells a blunt stalk, whose flanks run side by
/// side, from the pointed tip of a lobe as long.
double StalkSearch::bulk(const Stretch& stretch) const
{
    double sum = 0.0;
    for (int i = 0; i < lengthOf(stretch); ++i) {
        const double radius = radii_[static_cast<std::size_t>(wrapped(stretch.first + i))];
        sum += radius * radius;
    }
    return sum * step_ / (stretch.level * stretch.level * stretch.level);
}

std::optional<Stretch> StalkSearch::find() const
{
    std::optional<Stretch> stalk;
    double most = leastBulk;
    for (Stretch stretch : bestStretches()) {
        const double own = bulk(stretch);
        if (own >= most && moveToCorners(stretch)) {
            most = own;
            stalk = stretch;
        }
    }
    return stalk;
}

/// The vertex nearest along the line to the distance from vertex 0.
int vertexAt(const Curve<float>& outline, double distance)
{
    double walked = 0.0;
    int nearest = 0;
    double least = distance;
    for (int i = 1; i < outline.getSize(); ++i) {
        walked += std::hypot(double(outline[i][0]) - double(outline[i - 1][0]),
                             double(outline[i][1]) - double(outline[i - 1][1]));
        if (std::fabs(walked - distance) < least) {
            least = std::fabs(walked - distance);
            nearest = i;
        }
    }
    return nearest;
}

} // namespace

std::optional<JunctionProposal::Pair> JunctionProposal::propose(const Curve<float>& contour)
{
    const int vertices = contour.getSize();
    if (vertices < 3 || contour.isOpen()) {
        return std::nullopt;
    }
    const double area = double(contour.twiceArea(0, 1)) / 2.0;
    const double perimeter = double(contour.length());
    const double scale = std::sqrt(std::fabs(area));
    if (!std::isfinite(perimeter) || !(scale > 1e-4 * perimeter)) {
        return std::nullopt;
    }
    Curve<float> outline(contour);
    outline.setClockwise(false, 0, 1);
    const bool reversed = area < 0.0;

    Curve<float> samples;
    const int size =
        int(std::clamp(perimeter / (spacing * scale), double(fewestSamples), double(mostSamples)));
    CurveResampling<float>().apply(outline, samples, size);
    const std::optional<Stretch> stalk = StalkSearch(samples, perimeter, scale).find();
    if (!stalk) {
        return std::nullopt;
    }
    const auto vertexOf = [&](int sample) {
        const int vertex = vertexAt(outline, sample * perimeter / size);
        return reversed ? vertices - 1 - vertex : vertex;
    };
    const Pair pair{vertexOf(stalk->last), vertexOf(stalk->first)};
    return pair.first == pair.second ? std::nullopt : std::optional<Pair>(pair);
}

std::optional<JunctionPoints> JunctionProposal::propose(const StackSlice& slice)
{
    const ModelItem* item = contourOf(slice);
    if (!item) {
        return std::nullopt;
    }
    const Vertices<int>& stored = item->getVertices();
    Curve<float> contour(2, stored.getSize(), 0, 0, false);
    for (int i = 0; i < stored.getSize(); ++i) {
        for (int c = 0; c < 2; ++c) {
            contour[i][c] = static_cast<float>(stored[i][c]);
        }
    }
    const std::optional<Pair> pair = propose(contour);
    if (!pair) {
        return std::nullopt;
    }
    JunctionPoints points{{stored[pair->first][0], stored[pair->second][0]},
                          {stored[pair->first][1], stored[pair->second][1]}};
    return points;
}
