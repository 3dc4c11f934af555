#include "samples/scanobjects.h"

#include "system/randomgenerator.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double pi = 3.141592653589793;
constexpr double inch = 25.4;

const Colour ink = {32.0, 31.0, 34.0};
const Colour card = {241.0, 240.0, 236.0};

Polyline rectangle(double x, double y, double width, double height)
{
    return {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}};
}

Polyline circle(const Point& middle, double radius)
{
    Polyline points;
    for (int k = 0; k < 180; ++k) {
        const double angle = k * pi / 90.0;
        points.push_back(middle + Point{std::cos(angle), std::sin(angle)} * radius);
    }
    return points;
}

ScanObject cardOf(const std::string& name, double width, double height, const Colour& colour)
{
    const Polyline edge = rectangle(-width / 2.0, -height / 2.0, width, height);
    return {name, edge, {{edge, colour}}};
}

/// A few letters: pen strokes up and down in a box.
void write(
    ScanObject& object, double x, double y, double width, double height, RandomGenerator& random)
{
    const double advance = 0.75 * height;
    for (double at = x; at + advance <= x + width; at += advance) {
        Polyline line;
        const int corners = static_cast<int>(random.uniformL(3, 5));
        for (int k = 0; k < corners; ++k) {
            line.push_back({at + random.uniformLF(0.6 * height), y + random.uniformLF(height)});
        }
        object.patches.push_back({stroke(line, 0.3, 0.3), ink});
    }
}

/// The length in millimetres of tick `k` of a ruler.
double tickLength(RulerUnit unit, int k)
{
    switch (unit) {
    case RulerUnit::Millimetre:
        return k % 10 == 0 ? 6.0 : k % 5 == 0 ? 4.6 : 3.2;
    case RulerUnit::Inch:
        return k % 16 == 0 ? 8.0 : k % 8 == 0 ? 6.2 : k % 4 == 0 ? 4.8 : k % 2 == 0 ? 3.6 : 2.4;
    default:
        return 6.0;
    }
}

double tickDistance(RulerUnit unit)
{
    return unit == RulerUnit::Millimetre ? 1.0 : unit == RulerUnit::Inch ? inch / 16.0 : 10.0;
}

/// Ticks and numbers along the edge at `y`; `inward` is 1 if the ruler lies below it, else -1.
void addTicks(ScanObject& object, RulerUnit unit, double y, double inward, RandomGenerator& random)
{
    constexpr double reach = 152.5;
    constexpr double tickWidth = 0.22;
    const double distance = tickDistance(unit);
    for (int k = 0; k * distance <= reach; ++k) {
        const double x = -reach / 2.0 + k * distance;
        const double tall = tickLength(unit, k);
        const double top = inward > 0.0 ? y : y - tall;
        object.patches.push_back({rectangle(x - tickWidth / 2.0, top, tickWidth, tall), ink});
        if (tall >= 6.0 && tickLength(unit, k + 1) <= tall &&
            (unit != RulerUnit::Inch || k % 16 == 0)) {
            write(object, x - 1.6, inward > 0.0 ? y + tall + 0.6 : y - tall - 2.8, 3.6, 2.2,
                  random);
        }
    }
}

Colour hue(double turn, double lightness)
{
    Colour colour;
    for (std::size_t c = 0; c < colour.size(); ++c) {
        const double wave = std::cos(2.0 * pi * (turn - static_cast<double>(c) / 3.0));
        colour[c] = std::clamp(lightness + 85.0 * wave, 12.0, 246.0);
    }
    return colour;
}

} // namespace

ScanObject drawRuler(RulerUnit unit, RandomGenerator& random)
{
    constexpr double wide = 26.0;
    ScanObject ruler = cardOf("ruler", 163.0, wide, {237.0, 235.0, 226.0});
    addTicks(ruler, unit, -wide / 2.0, 1.0, random);
    if (unit == RulerUnit::Millimetre) {
        addTicks(ruler, RulerUnit::Inch, wide / 2.0, -1.0, random);
    }
    return ruler;
}

ScanObject drawMarker(const MarkerPlan& marker)
{
    const double half = marker.size / 2.0;
    if (marker.kind == MarkerKind::Dots) {
        constexpr double radius = 2.0;
        const double side = marker.size + 2.0 * (radius + 4.0);
        ScanObject object = cardOf("marker", side, side, card);
        for (const Point& at : rectangle(-half, -half, marker.size, marker.size)) {
            object.patches.push_back({circle(at, radius), ink});
        }
        return object;
    }
    ScanObject object = cardOf("marker", marker.size + 8.0, marker.size + 8.0, card);
    object.patches.push_back({marker.kind == MarkerKind::Disc
                                  ? circle({0.0, 0.0}, half)
                                  : rectangle(-half, -half, marker.size, marker.size),
                              ink});
    return object;
}

ScanObject drawColourCard(RandomGenerator& random)
{
    ScanObject object = cardOf("colour card", 56.0, 82.0, {38.0, 38.0, 40.0});
    const double first = random.uniformLF();
    for (int k = 0; k < 24; ++k) {
        const double x = -26.0 + 13.2 * (k % 4);
        const double y = -39.0 + 13.2 * (k / 4);
        const double step = 245.0 - 45.0 * (k - 20);
        object.patches.push_back(
            {rectangle(x, y, 11.6, 11.6),
             k < 20 ? hue(first + k / 20.0, 110.0 + 25.0 * (k % 3)) : Colour{step, step, step}});
    }
    return object;
}

ScanObject drawGreyCard()
{
    ScanObject object = cardOf("grey card", 66.0, 44.0, {128.0, 128.0, 127.0});
    for (int k = 0; k < 10; ++k) {
        const double step = 18.0 + 25.0 * k;
        object.patches.push_back({rectangle(-30.0 + 6.0 * k, 2.0, 6.0, 16.0), {step, step, step}});
    }
    return object;
}

ScanObject drawLabel(RandomGenerator& random)
{
    ScanObject object = cardOf("label", 66.0, 36.0, card);
    for (int line = 0; line < 4; ++line) {
        double x = -29.0;
        while (x < 20.0) {
            const double word = random.uniformLF(6.0, 16.0);
            write(object, x, -13.0 + 7.5 * line, std::min(word, 29.0 - x), 3.2, random);
            x += word + 2.5;
        }
    }
    return object;
}

ScanObject placed(ScanObject object, const Point& middle, double angle, double pixelsPerMillimetre)
{
    const double c = std::cos(angle) * pixelsPerMillimetre;
    const double s = std::sin(angle) * pixelsPerMillimetre;
    const auto move = [&](Polyline& line) {
        for (Point& point : line) {
            point = middle + Point{c * point.x - s * point.y, s * point.x + c * point.y};
        }
    };
    move(object.edge);
    for (Patch& patch : object.patches) {
        move(patch.loop);
    }
    return object;
}
