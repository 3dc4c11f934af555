#include "samples/leafpicture.h"

#include "system/randomgenerator.h"

#include <algorithm>
#include <cmath>

namespace {

LeafPalette choosePalette(const LeafPlan& plan, RandomGenerator& random)
{
    const double tone = random.uniformLF(0.92, 1.08);
    const double yellow = random.uniformLF(-8.0, 18.0);
    LeafPalette palette;
    if (plan.lightBackground) {
        palette.paper = {228.0, 227.0, 222.0};
        palette.blade = scaled({58.0 + yellow, 98.0, 42.0}, tone);
        palette.stalk = {118.0, 116.0, 62.0};
    } else {
        palette.paper = {27.0, 28.0, 32.0};
        palette.blade = scaled({104.0 + yellow, 148.0, 78.0}, tone);
        palette.stalk = {150.0, 152.0, 96.0};
    }
    palette.vein = mixed(palette.blade, {186.0, 200.0, 132.0}, plan.lightBackground ? 0.38 : 0.55);
    return palette;
}

Polyline scaledLine(Polyline line, double factor)
{
    for (Point& point : line) {
        point = point * factor;
    }
    return line;
}

/// Brightness of the blade at a place given across and along it: a fold on either side of the
/// midrib, and cushions between the side veins.
double relief(const LeafPlan& plan, const Point& onLeaf)
{
    if (plan.kind == LeafKind::Palmate) {
        return 1.0 + 0.05 * std::sin(onLeaf.x / 70.0) * std::cos(onLeaf.y / 90.0);
    }
    const double fold = 0.07 * std::tanh(onLeaf.x / 60.0);
    const double spacing = plan.bladeLength / 11.0;
    const double cushion =
        std::sin(6.283185307179586 * (onLeaf.y - 0.75 * std::abs(onLeaf.x)) / spacing);
    return 1.0 + fold + 0.06 * cushion * std::min(1.0, std::abs(onLeaf.x) / 50.0);
}

void lookThroughLens(std::vector<Plane>& planes)
{
    for (Plane& plane : planes) {
        blur(plane, 0.8);
    }
}

std::uint8_t toByte(double value)
{
    return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

} // namespace

LeafPainter::LeafPainter(const LeafPlan& plan,
                         const LeafOutline& leaf,
                         int width,
                         int height,
                         double factor,
                         RandomGenerator& random)
    : plan_(plan)
    , frame_(leaf.frame)
    , factor_(factor)
    , coverage_(width, height)
    , shadow_(width, height)
    , veins_(width, height)
    , spots_(width, height)
{
    drawMasks(leaf, random);
    palette_ = choosePalette(plan, random);
    clouds_ = CloudField(random);
}

void LeafPainter::drawMasks(const LeafOutline& leaf, RandomGenerator& random)
{
    addCoverage(coverage_, scaledLine(leaf.outline, factor_));
    Polyline fallen = leaf.outline;
    for (Point& point : fallen) {
        point = point + Point{5.0, 7.0};
    }
    addCoverage(shadow_, scaledLine(fallen, factor_));
    blur(shadow_, 7.0 * factor_);
    for (const Vein& vein : leaf.veins) {
        addCoverage(veins_,
                    scaledLine(stroke(vein.line, vein.firstWidth, vein.lastWidth), factor_));
    }
    blur(veins_, 0.9 * factor_);
    const double width = coverage_.width / factor_;
    const double height = coverage_.height / factor_;
    for (int i = 0; i < 40; ++i) {
        const Point middle{random.uniformLF(width), random.uniformLF(height)};
        const double radius = random.uniformLF(1.5, 4.0);
        Polyline spot;
        for (int k = 0; k < 12; ++k) {
            const double angle = k * 3.141592653589793 / 6.0;
            spot.push_back(middle + Point{std::cos(angle), std::sin(angle)} * radius);
        }
        addCoverage(spots_, scaledLine(spot, factor_));
    }
}

Colour LeafPainter::colourAt(int column, int row) const
{
    const Point onLeaf = frame_.toLeaf({(column + 0.5) / factor_, (row + 0.5) / factor_});
    const double x = column / factor_;
    const double y = row / factor_;
    const double patches = 1.0 + 0.06 * clouds_.at(x + 500, y, 120.0) +
                           0.05 * clouds_.at(x, y + 300, 14.0) + 0.03 * clouds_.at(x + 90, y, 4.0);
    Colour blade = scaled(palette_.blade, relief(plan_, onLeaf) * patches);
    blade = mixed(blade, palette_.vein, std::min(1.0F, veins_.at(column, row)));
    blade = mixed(blade, scaled(blade, 0.8), std::min(1.0F, spots_.at(column, row)));
    const double stalkShare = std::clamp(0.5 - (onLeaf.y + 4.0) / 30.0, 0.0, 1.0) *
                              std::clamp((34.0 - std::abs(onLeaf.x)) / 14.0, 0.0, 1.0);
    const double round = 1.0 - 0.25 * std::min(1.0, std::pow(onLeaf.x / 12.0, 2.0));
    return mixed(blade, scaled(palette_.stalk, round), stalkShare);
}

namespace {

/// The colour of each pixel before the lens and the sensor, as three planes.
std::vector<Plane> compose(const LeafPlan& plan, const LeafPainter& leaf, RandomGenerator& random)
{
    const double shadowDepth = plan.lightBackground ? 0.16 : 0.35;
    const double lightX = random.uniformLF(-0.05, 0.05);
    const double lightY = random.uniformLF(-0.05, 0.05);
    const int width = leaf.coverage().width;
    const int height = leaf.coverage().height;
    std::vector<Plane> planes(3, Plane(width, height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double light =
                1.0 + lightX * (2.0 * x / width - 1.0) + lightY * (2.0 * y / height - 1.0);
            const double grain =
                1.0 + 0.02 * leaf.clouds().at(x, y, 90.0) + 0.01 * leaf.clouds().at(x, y, 9.0);
            const Colour paper = scaled(
                leaf.palette().paper, light * grain * (1.0 - shadowDepth * leaf.shadow().at(x, y)));
            const Colour seen =
                mixed(paper, scaled(leaf.colourAt(x, y), light), leaf.coverage().at(x, y));
            for (std::size_t c = 0; c < planes.size(); ++c) {
                planes[c].at(x, y) = static_cast<float>(seen[c]);
            }
        }
    }
    return planes;
}

} // namespace

Picture exposed(std::vector<Plane> planes, RandomGenerator& random)
{
    lookThroughLens(planes);
    Picture picture;
    picture.width = planes.front().width;
    picture.height = planes.front().height;
    picture.samples = static_cast<int>(planes.size());
    picture.bytes.reserve(planes.size() * planes[0].values.size());
    for (std::size_t i = 0; i < planes[0].values.size(); ++i) {
        const double brightness = random.gaussian(2.2);
        for (const Plane& plane : planes) {
            picture.bytes.push_back(toByte(plane.values[i] + brightness + random.gaussian(0.9)));
        }
    }
    return picture;
}

Picture
drawLeaf(const LeafPlan& plan, const LeafOutline& leaf, int width, int height, double factor)
{
    RandomGenerator random;
    random.init(plan.seed + 1);
    std::vector<Plane> planes =
        compose(plan, LeafPainter(plan, leaf, width, height, factor, random), random);
    if (!plan.colour) {
        for (std::size_t i = 0; i < planes[0].values.size(); ++i) {
            planes[0].values[i] = 0.299F * planes[0].values[i] + 0.587F * planes[1].values[i] +
                                  0.114F * planes[2].values[i];
        }
        planes.resize(1, Plane(0, 0));
    }
    return exposed(std::move(planes), random);
}
