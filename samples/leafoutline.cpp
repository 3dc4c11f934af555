#include "samples/leafoutline.h"

#include "system/randomgenerator.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double pi = 3.141592653589793;

/// How far the junctions stand from the corner between stalk and blade, in pixels of outline.
constexpr int junctionOffset = 9;

double smoothStep(double x)
{
    const double c = std::clamp(x, 0.0, 1.0);
    return c * c * (3.0 - 2.0 * c);
}

/// One half of a leaf in leaf coordinates, as if it were the right one, with what the veins need.
struct Half
{
    /// From the base to the tip.
    Polyline margin;
    std::vector<Point> toothTips;
    /// From the base to the tip.
    std::vector<TrueLandmark> landmarks;
};

/// The margin without teeth, with the distance along it and the outward normals.
struct Envelope
{
    Polyline points;
    std::vector<double> reached;
    Polyline normals;

    double length() const { return reached.back(); }
};

Envelope makeEnvelope(const LeafPlan& plan)
{
    const double widest = plan.baseExponent / (plan.baseExponent + plan.tipExponent);
    const auto shape = [&](double u) {
        return std::pow(u, plan.baseExponent) * std::pow(1.0 - u, plan.tipExponent);
    };
    Envelope envelope;
    const int count = 3000;
    for (int i = 0; i <= count; ++i) {
        const double u = (1.0 - std::cos(pi * i / count)) / 2.0; // dense at both ends
        const double across = plan.petioleHalfWidth * (1.0 - u) +
                              (plan.halfWidth - plan.petioleHalfWidth) * shape(u) / shape(widest);
        const Point point{across, plan.bladeLength * u};
        envelope.reached.push_back(
            i == 0 ? 0.0 : envelope.reached.back() + length(point - envelope.points.back()));
        envelope.points.push_back(point);
    }
    for (std::size_t i = 0; i < envelope.points.size(); ++i) {
        const Point along = envelope.points[std::min(i + 1, envelope.points.size() - 1)] -
                            envelope.points[i == 0 ? 0 : i - 1];
        envelope.normals.push_back(Point{along.y, -along.x} * (1.0 / length(along)));
    }
    return envelope;
}

/// Where the tip of a small tooth stands between its notches, and how tall it is against the tooth
/// that carries it.
constexpr double sawSlant = 0.7;
constexpr double sawHeight = 0.27;

/// A row of teeth along a margin: notches in ascending order, a tooth between any two.
struct ToothRow
{
    std::vector<double> notches;
    std::vector<double> heights;
    double marginLength = 0.0;
    /// Where the tip of a tooth stands between its notches.
    double slant = 0.66;
    int smallTeeth = 0;

    /// How far the margin stands out at a distance along it.
    double height(double at) const;

    int count() const { return static_cast<int>(heights.size()); }

    /// The distance along the margin at a part of a tooth, 0 to 1 between its notches.
    double at(int tooth, double part) const
    {
        const auto k = static_cast<std::size_t>(tooth);
        return notches[k] + part * (notches[k + 1] - notches[k]);
    }

private:
    double onTooth(std::size_t tooth, double at) const;
};

double ToothRow::onTooth(std::size_t tooth, double at) const
{
    const double part = (at - notches[tooth]) / (notches[tooth + 1] - notches[tooth]);
    if (part >= slant) {
        return heights[tooth] * (1.0 - part) / (1.0 - slant);
    }
    const double back = part / slant;
    double height = heights[tooth] * std::pow(back, 0.9);
    if (smallTeeth > 0) {
        // A saw along the back, none on the last stretch below the tip.
        const double saw = back * (smallTeeth + 1);
        const double onSmall = std::fmod(saw, 1.0);
        const double edge =
            onSmall < sawSlant ? onSmall / sawSlant : (1.0 - onSmall) / (1.0 - sawSlant);
        height += saw < smallTeeth ? sawHeight * heights[tooth] * edge : 0.0;
    }
    return height;
}

double ToothRow::height(double at) const
{
    // Below the first and above the last notch the margin swells to the height of a tooth, so that
    // these notches are as sharp as the others, and then runs out slowly.
    const double swell = 48.0;
    const auto shoulder = [&](double distance, double room, double tall) {
        const double rise = std::min(distance / swell, 1.0);
        return tall * rise * (2.0 - rise) * (1.0 - smoothStep((distance - swell) / (room - swell)));
    };
    if (at < notches.front()) {
        return shoulder(notches.front() - at, notches.front(), 0.8 * heights.front());
    }
    if (at >= notches.back()) {
        return shoulder(at - notches.back(), marginLength - notches.back(), 0.7 * heights.back());
    }
    const auto after = std::upper_bound(notches.begin(), notches.end(), at);
    return onTooth(static_cast<std::size_t>(after - notches.begin()) - 1, at);
}

ToothRow makeTeeth(const LeafPlan& plan, int teeth, double marginLength, RandomGenerator& random)
{
    ToothRow row;
    row.marginLength = marginLength;
    if (plan.kind == LeafKind::TeethOnTeeth) {
        row.smallTeeth = 2;
        row.slant = 0.5; // nearer to the middle: the tip is the place farthest from the base
    }
    const double first = random.uniformLF(0.19, 0.22) * marginLength;
    const double last = random.uniformLF(0.83, 0.86) * marginLength;
    const double spacing = (last - first) / teeth;
    for (int k = 0; k <= teeth; ++k) {
        row.notches.push_back(first + k * spacing + random.uniformLF(-0.06, 0.06) * spacing);
    }
    for (int k = 0; k < teeth; ++k) {
        const double arch = 0.88 + 0.12 * std::sin(pi * (k + 0.5) / teeth);
        row.heights.push_back(plan.toothHeight * arch * random.uniformLF(0.93, 1.07));
    }
    if (plan.kind == LeafKind::TeethOnTeeth) {
        // The tooth next to the tip of the leaf is clearly smaller than its neighbour: distal.
        row.notches.back() -= 0.2 * spacing;
        row.heights.back() *= 0.92;
    }
    return row;
}

/// The area between a tooth and its chord.
double toothArea(const Polyline& margin, const std::vector<int>& notches, int tooth)
{
    const auto first = margin.begin() + notches[static_cast<std::size_t>(tooth)];
    const auto last = margin.begin() + notches[static_cast<std::size_t>(tooth) + 1];
    return std::abs(area(Polyline(first, last + 1)));
}

std::vector<TrueLandmark>
landmarksOf(const ToothRow& row, const Envelope& envelope, const Polyline& margin)
{
    const auto index = [&](double at) {
        const auto& reached = envelope.reached;
        return static_cast<int>(std::lower_bound(reached.begin(), reached.end(), at) -
                                reached.begin());
    };
    std::vector<TrueLandmark> landmarks;
    const auto add = [&](double at, Structure structure, ToothClass label) {
        landmarks.push_back({margin[static_cast<std::size_t>(index(at))], structure, label});
    };
    std::vector<int> notches;
    for (const double notch : row.notches) {
        notches.push_back(index(notch));
    }
    const int last = row.count() - 1;
    const bool distal =
        last > 0 && toothArea(margin, notches, last) < toothArea(margin, notches, last - 1);
    for (int k = 0; k <= last; ++k) {
        add(row.at(k, 0.0), Structure::Sinus, ToothClass::Primary);
        for (int i = 0; i < row.smallTeeth; ++i) {
            const double part = row.slant / (row.smallTeeth + 1);
            add(row.at(k, (i + sawSlant) * part), Structure::Tip, ToothClass::Secondary);
            add(row.at(k, (i + 1) * part), Structure::Sinus, ToothClass::Secondary);
        }
        add(row.at(k, row.slant), Structure::Tip,
            distal && k == last ? ToothClass::Distal : ToothClass::Primary);
    }
    add(row.at(last, 1.0), Structure::Sinus, distal ? ToothClass::Distal : ToothClass::Primary);
    return landmarks;
}

Half makePinnateHalf(const LeafPlan& plan, int teeth, RandomGenerator& random)
{
    const Envelope envelope = makeEnvelope(plan);
    Half half;
    if (teeth == 0) {
        half.margin = envelope.points;
        for (int k = 1; k <= 7; ++k) {
            half.toothTips.push_back(envelope.points[static_cast<std::size_t>(600 + 280 * k)]);
        }
        return half;
    }
    const ToothRow row = makeTeeth(plan, teeth, envelope.length(), random);
    std::size_t tooth = 0;
    for (std::size_t i = 0; i < envelope.points.size(); ++i) {
        const double at = envelope.reached[i];
        half.margin.push_back(envelope.points[i] + envelope.normals[i] * row.height(at));
        const bool more = tooth + 1 < row.notches.size();
        if (more &&
            at > row.notches[tooth] + row.slant * (row.notches[tooth + 1] - row.notches[tooth])) {
            half.toothTips.push_back(half.margin.back());
            ++tooth;
        }
    }
    half.landmarks = landmarksOf(row, envelope, half.margin);
    return half;
}

/// Direction of lobe `k` of one half, 0 being the middle one, and its length.
Point lobeTip(const LeafPlan& plan, int k, double stretch)
{
    const int lobes = plan.upperTeeth + 1;
    const double angle = (lobes == 2 ? 52.0 : 43.0) * k * pi / 180.0;
    const double reach =
        plan.bladeLength * 0.66 * (1.0 - (lobes == 2 ? 0.17 : 0.12) * k) * (k == 0 ? 1.0 : stretch);
    const double centre = plan.bladeLength * 0.14;
    return {reach * std::sin(angle), centre + reach * std::cos(angle)};
}

Half makePalmateHalf(const LeafPlan& plan, RandomGenerator& random)
{
    const int lobes = plan.upperTeeth + 1;
    const Point centre{0.0, plan.bladeLength * 0.14};
    std::vector<Point> tips;
    for (int k = 0; k <= lobes; ++k) {
        tips.push_back(lobeTip(plan, k, random.uniformLF(0.95, 1.05)));
    }
    const Point corner{plan.petioleHalfWidth, 0.0};
    const auto bulge = [&](const Point& a, const Point& b, double by) {
        const Point middle = (a + b) * 0.5;
        const Point along = b - a;
        const Point outward = Point{along.y, -along.x} * (1.0 / length(along));
        return middle + outward * (by * length(along));
    };
    Half half;
    const auto draw = [&](const Point& a, const Point& b, double by) {
        const Polyline flank = bezier(a, bulge(a, b, by), b, 120);
        half.margin.insert(half.margin.end(), flank.begin(), flank.end());
    };
    Point from = corner;
    for (int k = lobes; k >= 1; --k) {
        const auto here = static_cast<std::size_t>(k);
        const Point middle = (tips[here] + tips[here - 1]) * 0.5;
        const Point notch = centre + (middle - centre) * random.uniformLF(0.58, 0.66);
        draw(from, tips[here], k == lobes ? 0.18 : 0.2);
        draw(tips[here], notch, 0.16);
        half.landmarks.push_back({tips[here], Structure::Tip, ToothClass::Primary});
        half.landmarks.push_back({notch, Structure::Sinus, ToothClass::Primary});
        from = notch;
    }
    draw(from, tips[0], 0.2);
    half.margin.push_back(tips[0]);
    half.toothTips = tips;
    return half;
}

Half mirrored(Half half)
{
    for (Point& point : half.margin) {
        point.x = -point.x;
    }
    for (Point& point : half.toothTips) {
        point.x = -point.x;
    }
    for (TrueLandmark& landmark : half.landmarks) {
        landmark.place.x = -landmark.place.x;
    }
    return half;
}

/// The stalk below the base: left side upwards or right side downwards, in leaf coordinates.
Polyline petioleSide(const LeafPlan& plan, double side)
{
    Polyline points;
    for (int i = 0; i <= 60; ++i) {
        const double part = i / 60.0; // from the end to the base
        const double flare = 1.0 + 0.6 * std::pow(1.0 - part, 4.0);
        points.push_back(
            {side * plan.petioleHalfWidth * flare, -plan.petioleLength * (1.0 - part)});
    }
    if (side > 0.0) {
        std::reverse(points.begin(), points.end());
    }
    return points;
}

Polyline toPicture(const LeafFrame& frame, const Polyline& onLeaf)
{
    Polyline points;
    for (const Point& point : onLeaf) {
        points.push_back(frame.toPicture(point));
    }
    return points;
}

void addPinnateVeins(LeafOutline& leaf, const LeafPlan& plan, const Half& half)
{
    for (const Point& tip : half.toothTips) {
        const double start = std::max(0.02 * plan.bladeLength, tip.y - 0.75 * std::abs(tip.x));
        const Point control{0.5 * tip.x, start + 0.3 * (tip.y - start)};
        const Point end{0.93 * tip.x, start + 0.95 * (tip.y - start)};
        leaf.veins.push_back(
            {toPicture(leaf.frame, bezier({0.0, start}, control, end, 40)), 4.0, 1.2});
    }
}

void addPalmateVeins(LeafOutline& leaf, const Half& half)
{
    for (const Point& tip : half.toothTips) {
        const Point end = tip * 0.95;
        const Polyline main = bezier({0.0, 0.0}, {0.45 * tip.x, 0.55 * tip.y}, end, 80);
        leaf.veins.push_back({toPicture(leaf.frame, main), 7.0, 1.5});
        for (std::size_t i = 30; i <= 60; i += 10) {
            const Point along = (main[i + 1] - main[i]) * (1.0 / length(main[i + 1] - main[i]));
            for (const double side : {-1.0, 1.0}) {
                const double reach = 0.11 * length(tip) * (i < 50 ? 1.0 : 0.7);
                const Point across = Point{-along.y, along.x} * side;
                const Point twig = main[i] + (along * 1.1 + across) * reach;
                const Point control = main[i] + (along * 0.4 + across * 0.6) * reach;
                leaf.veins.push_back(
                    {toPicture(leaf.frame, bezier(main[i], control, twig, 20)), 3.0, 1.0});
            }
        }
    }
}

/// Puts the corners of a half onto the outline.
void addLandmarks(LeafOutline& leaf, const std::vector<TrueLandmark>& corners)
{
    for (TrueLandmark corner : corners) {
        const int nearest = nearestPoint(leaf.outline, leaf.frame.toPicture(corner.place));
        corner.place = leaf.outline[static_cast<std::size_t>(nearest)];
        leaf.landmarks.push_back(corner);
    }
}

void centre(LeafFrame& frame, const Polyline& loop, int width, int height)
{
    const auto byX = [](const Point& a, const Point& b) { return a.x < b.x; };
    const auto byY = [](const Point& a, const Point& b) { return a.y < b.y; };
    const auto [left, right] = std::minmax_element(loop.begin(), loop.end(), byX);
    const auto [top, bottom] = std::minmax_element(loop.begin(), loop.end(), byY);
    frame.shift({(width - left->x - right->x) / 2.0, (height - top->y - bottom->y) / 2.0});
}

} // namespace

LeafFrame::LeafFrame(const LeafPlan& plan)
    : cosine_(std::cos(plan.tilt))
    , sine_(std::sin(plan.tilt))
    , bladeLength_(plan.bladeLength)
    , petioleLength_(plan.petioleLength)
    , bend_(plan.bend)
    , petioleBend_(plan.petioleBend)
{}

double LeafFrame::sideways(double along) const
{
    return along >= 0.0 ? bend_ * std::pow(along / bladeLength_, 2.0)
                        : petioleBend_ * std::pow(along / petioleLength_, 2.0);
}

Point LeafFrame::toPicture(const Point& onLeaf) const
{
    const double across = onLeaf.x + sideways(onLeaf.y);
    return origin_ +
           Point{across * cosine_ + onLeaf.y * sine_, across * sine_ - onLeaf.y * cosine_};
}

Point LeafFrame::toLeaf(const Point& inPicture) const
{
    const Point from = inPicture - origin_;
    const double along = from.x * sine_ - from.y * cosine_;
    return {from.x * cosine_ + from.y * sine_ - sideways(along), along};
}

LeafOutline makeOutline(const LeafPlan& plan, int width, int height)
{
    RandomGenerator random;
    random.init(plan.seed);
    const bool palmate = plan.kind == LeafKind::Palmate;
    const Half left = mirrored(palmate ? makePalmateHalf(plan, random)
                                       : makePinnateHalf(plan, plan.upperTeeth, random));
    const Half right =
        palmate ? makePalmateHalf(plan, random) : makePinnateHalf(plan, plan.lowerTeeth, random);

    Polyline onLeaf = petioleSide(plan, -1.0);
    onLeaf.insert(onLeaf.end(), left.margin.begin(), left.margin.end());
    onLeaf.insert(onLeaf.end(), right.margin.rbegin(), right.margin.rend());
    const Polyline stalk = petioleSide(plan, 1.0);
    onLeaf.insert(onLeaf.end(), stalk.begin(), stalk.end());

    LeafOutline leaf;
    leaf.frame = LeafFrame(plan);
    centre(leaf.frame, toPicture(leaf.frame, onLeaf), width, height);
    leaf.outline = smoothedLoop(resampledLoop(toPicture(leaf.frame, onLeaf), 1.0), 2.5);

    const auto at = [&](int index) { return leaf.outline[static_cast<std::size_t>(index)]; };
    const auto cornerIndex = [&](double side) {
        return nearestPoint(leaf.outline,
                            leaf.frame.toPicture({side * plan.petioleHalfWidth, 0.0}));
    };
    const int leftIndex = cornerIndex(-1.0) + junctionOffset;
    const int rightIndex = cornerIndex(1.0) - junctionOffset;
    leaf.leftJunction = at(leftIndex);
    leaf.rightJunction = at(rightIndex);
    leaf.apex = at(nearestPoint(leaf.outline, leaf.frame.toPicture(left.margin.back())));
    leaf.bladeArea =
        area(Polyline(leaf.outline.begin() + leftIndex, leaf.outline.begin() + rightIndex + 1));

    addLandmarks(leaf, left.landmarks);
    addLandmarks(leaf, {right.landmarks.rbegin(), right.landmarks.rend()});

    if (palmate) {
        addPalmateVeins(leaf, left);
        addPalmateVeins(leaf, right);
    } else {
        const Point base{0.0, -10.0};
        const Polyline midrib =
            bezier(base, {0.0, 0.5 * plan.bladeLength}, {0.0, 0.97 * plan.bladeLength}, 100);
        leaf.veins.push_back({toPicture(leaf.frame, midrib), 9.0, 1.5});
        addPinnateVeins(leaf, plan, left);
        addPinnateVeins(leaf, plan, right);
    }
    return leaf;
}

LeafOutline enlarged(LeafOutline leaf, double factor)
{
    for (Point& point : leaf.outline) {
        point = point * factor;
    }
    for (TrueLandmark& landmark : leaf.landmarks) {
        landmark.place = landmark.place * factor;
    }
    for (Point* point : {&leaf.leftJunction, &leaf.rightJunction, &leaf.apex}) {
        *point = *point * factor;
    }
    leaf.bladeArea *= factor * factor;
    return leaf;
}
