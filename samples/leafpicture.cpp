#include "samples/leafpicture.h"

#include "samples/canvas.h"
#include "system/randomgenerator.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Colour = std::array<double, 3>;

Colour mixed(const Colour& a, const Colour& b, double share)
{
    Colour colour;
    for (std::size_t c = 0; c < colour.size(); ++c) {
        colour[c] = a[c] + (b[c] - a[c]) * share;
    }
    return colour;
}

Colour scaled(const Colour& a, double factor)
{
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}

/// The colours of one photograph.
struct Palette
{
    Colour paper;
    Colour blade;
    Colour vein;
    Colour stalk;
};

Palette choosePalette(const LeafPlan& plan, RandomGenerator& random)
{
    const double tone = random.uniformLF(0.92, 1.08);
    const double yellow = random.uniformLF(-8.0, 18.0);
    Palette palette;
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

/// Smooth random field: random values on a grid of about 64 cells a side, repeated.
class CloudField
{
public:
    explicit CloudField(RandomGenerator& random)
    {
        for (double& value : grid_) {
            value = random.uniformLF(-1.0, 1.0);
        }
    }

    /// In [-1, 1]; features are about `size` pixels wide.
    double at(double x, double y, double size) const
    {
        const double column = std::floor(x / size);
        const double row = std::floor(y / size);
        const double fx = smooth(x / size - column);
        const double fy = smooth(y / size - row);
        const double upper = node(column, row) * (1 - fx) + node(column + 1, row) * fx;
        const double lower = node(column, row + 1) * (1 - fx) + node(column + 1, row + 1) * fx;
        return upper * (1 - fy) + lower * fy;
    }

private:
    static double smooth(double t) { return t * t * (3.0 - 2.0 * t); }

    double node(double column, double row) const
    {
        const auto wrap = [](double value) {
            return static_cast<std::size_t>(static_cast<long>(value) & 63);
        };
        return grid_[wrap(row) * 64 + wrap(column)];
    }

    std::array<double, 64 * 64> grid_{};
};

/// The masks of which a picture is composed, 0 to 1 each.
struct Masks
{
    Plane leaf;
    Plane shadow;
    Plane veins;
    Plane spots;

    Masks(int width, int height)
        : leaf(width, height)
        , shadow(width, height)
        , veins(width, height)
        , spots(width, height)
    {}
};

Masks drawMasks(const LeafOutline& leaf, int width, int height, RandomGenerator& random)
{
    Masks masks(width, height);
    addCoverage(masks.leaf, leaf.outline);
    Polyline fallen = leaf.outline;
    for (Point& point : fallen) {
        point = point + Point{5.0, 7.0};
    }
    addCoverage(masks.shadow, fallen);
    blur(masks.shadow, 7.0);
    for (const Vein& vein : leaf.veins) {
        addCoverage(masks.veins, stroke(vein.line, vein.firstWidth, vein.lastWidth));
    }
    blur(masks.veins, 0.9);
    for (int i = 0; i < 40; ++i) {
        const Point middle{random.uniformLF(width), random.uniformLF(height)};
        const double radius = random.uniformLF(1.5, 4.0);
        Polyline spot;
        for (int k = 0; k < 12; ++k) {
            const double angle = k * 3.141592653589793 / 6.0;
            spot.push_back(middle + Point{std::cos(angle), std::sin(angle)} * radius);
        }
        addCoverage(masks.spots, spot);
    }
    return masks;
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

/// The colour of each pixel before the lens and the sensor, as three planes.
std::vector<Plane>
compose(const LeafPlan& plan, const LeafOutline& leaf, const Masks& masks, RandomGenerator& random)
{
    const Palette palette = choosePalette(plan, random);
    const CloudField clouds(random);
    const double shadowDepth = plan.lightBackground ? 0.16 : 0.35;
    const double lightX = random.uniformLF(-0.05, 0.05);
    const double lightY = random.uniformLF(-0.05, 0.05);
    const int width = masks.leaf.width;
    const int height = masks.leaf.height;
    std::vector<Plane> planes(3, Plane(width, height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Point onLeaf = leaf.frame.toLeaf({x + 0.5, y + 0.5});
            const double light =
                1.0 + lightX * (2.0 * x / width - 1.0) + lightY * (2.0 * y / height - 1.0);
            const double grain = 1.0 + 0.02 * clouds.at(x, y, 90.0) + 0.01 * clouds.at(x, y, 9.0);
            const Colour paper =
                scaled(palette.paper, light * grain * (1.0 - shadowDepth * masks.shadow.at(x, y)));
            const double patches = 1.0 + 0.06 * clouds.at(x + 500, y, 120.0) +
                                   0.05 * clouds.at(x, y + 300, 14.0) +
                                   0.03 * clouds.at(x + 90, y, 4.0);
            Colour blade = scaled(palette.blade, relief(plan, onLeaf) * patches);
            blade = mixed(blade, palette.vein, std::min(1.0F, masks.veins.at(x, y)));
            blade = mixed(blade, scaled(blade, 0.8), std::min(1.0F, masks.spots.at(x, y)));
            const double stalkShare = std::clamp(0.5 - (onLeaf.y + 4.0) / 30.0, 0.0, 1.0) *
                                      std::clamp((34.0 - std::abs(onLeaf.x)) / 14.0, 0.0, 1.0);
            const double round = 1.0 - 0.25 * std::min(1.0, std::pow(onLeaf.x / 12.0, 2.0));
            blade = mixed(blade, scaled(palette.stalk, round), stalkShare);
            const Colour seen = mixed(paper, scaled(blade, light), masks.leaf.at(x, y));
            for (std::size_t c = 0; c < planes.size(); ++c) {
                planes[c].at(x, y) = static_cast<float>(seen[c]);
            }
        }
    }
    return planes;
}

std::uint8_t toByte(double value)
{
    return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

} // namespace

Picture drawLeaf(const LeafPlan& plan, const LeafOutline& leaf, int width, int height)
{
    RandomGenerator random;
    random.init(plan.seed + 1);
    const Masks masks = drawMasks(leaf, width, height, random);
    std::vector<Plane> planes = compose(plan, leaf, masks, random);
    if (!plan.colour) {
        for (std::size_t i = 0; i < planes[0].values.size(); ++i) {
            planes[0].values[i] = 0.299F * planes[0].values[i] + 0.587F * planes[1].values[i] +
                                  0.114F * planes[2].values[i];
        }
        planes.resize(1, Plane(0, 0));
    }
    for (Plane& plane : planes) {
        blur(plane, 0.8);
    }
    Picture picture;
    picture.width = width;
    picture.height = height;
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
