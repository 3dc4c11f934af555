#include "samples/scanpicture.h"

#include "samples/canvas.h"
#include "samples/cloudfield.h"
#include "system/randomgenerator.h"

#include <algorithm>
#include <cmath>

namespace {

/// A part of the scan, with what covers its pixels.
struct Tile
{
    int x = 0;
    int y = 0;
    Plane plane{0, 0};
};

/// What a closed line covers, in the smallest tile with a rim of so many pixels.
Tile coverTile(const Polyline& loop, int rim)
{
    const auto byX = [](const Point& a, const Point& b) { return a.x < b.x; };
    const auto byY = [](const Point& a, const Point& b) { return a.y < b.y; };
    const auto [left, right] = std::minmax_element(loop.begin(), loop.end(), byX);
    const auto [top, bottom] = std::minmax_element(loop.begin(), loop.end(), byY);
    Tile tile;
    tile.x = static_cast<int>(std::floor(left->x)) - rim;
    tile.y = static_cast<int>(std::floor(top->y)) - rim;
    tile.plane = Plane(static_cast<int>(std::ceil(right->x)) - tile.x + rim,
                       static_cast<int>(std::ceil(bottom->y)) - tile.y + rim);
    Polyline moved = loop;
    for (Point& point : moved) {
        point = point - Point{static_cast<double>(tile.x), static_cast<double>(tile.y)};
    }
    addCoverage(tile.plane, moved);
    return tile;
}

/// The scan while it is painted.
class ScanCanvas
{
public:
    ScanCanvas(const ScanPlan& scan, RandomGenerator& random)
        : scan_(scan)
        , random_(random)
        , planes_(3, Plane(scan.width, scan.height))
    {}

    void layPaper();
    void layObject(const ScanObject& object);
    void layLeaf(const ScanLeaf& leaf);
    void light();

    std::vector<Plane> take() { return std::move(planes_); }

private:
    /// Calls `change(pixel's place in the planes, share)` where the tile covers the scan.
    template <class Change>
    void over(const Tile& tile, Change change);
    void fill(const Patch& patch);

    const ScanPlan& scan_;
    RandomGenerator& random_;
    std::vector<Plane> planes_;
};

template <class Change>
void ScanCanvas::over(const Tile& tile, Change change)
{
    for (int y = std::max(0, -tile.y); y < std::min(tile.plane.height, scan_.height - tile.y);
         ++y) {
        for (int x = std::max(0, -tile.x); x < std::min(tile.plane.width, scan_.width - tile.x);
             ++x) {
            const double share = std::min(1.0F, tile.plane.at(x, y));
            if (share > 0.0) {
                change(x, y, share);
            }
        }
    }
}

void ScanCanvas::fill(const Patch& patch)
{
    const Tile tile = coverTile(patch.loop, 0);
    over(tile, [&](int x, int y, double share) {
        for (std::size_t c = 0; c < planes_.size(); ++c) {
            float& value = planes_[c].at(tile.x + x, tile.y + y);
            value += static_cast<float>(share * (patch.colour[c] - value));
        }
    });
}

void ScanCanvas::layPaper()
{
    const CloudField clouds(random_);
    for (int y = 0; y < scan_.height; ++y) {
        for (int x = 0; x < scan_.width; ++x) {
            const double u = x / scan_.factor;
            const double v = y / scan_.factor;
            const double grain = 1.0 + 0.015 * clouds.at(u, v, 190.0) + 0.01 * clouds.at(u, v, 9.0);
            for (std::size_t c = 0; c < planes_.size(); ++c) {
                planes_[c].at(x, y) = static_cast<float>(scan_.paper[c] * grain);
            }
        }
    }
    for (int i = 0; i < 30; ++i) {
        const Point middle{random_.uniformLF(scan_.width), random_.uniformLF(scan_.height)};
        const Point along = Point{random_.uniformLF(-0.6, 0.6), random_.uniformLF(-0.6, 0.6)} *
                            scan_.pixelsPerMillimetre;
        const double pen = 0.25 * scan_.pixelsPerMillimetre;
        fill({stroke({middle, middle + along}, pen, pen), {96.0, 92.0, 88.0}});
    }
}

void ScanCanvas::layObject(const ScanObject& object)
{
    const double unit = scan_.pixelsPerMillimetre;
    Polyline fallen = object.edge;
    for (Point& point : fallen) {
        point = point + Point{0.4, 0.6} * unit;
    }
    Tile shadow = coverTile(fallen, static_cast<int>(std::ceil(2.0 * unit)));
    blur(shadow.plane, 0.5 * unit);
    over(shadow, [&](int x, int y, double share) {
        for (Plane& plane : planes_) {
            plane.at(shadow.x + x, shadow.y + y) *= static_cast<float>(1.0 - 0.3 * share);
        }
    });
    for (const Patch& patch : object.patches) {
        fill(patch);
    }
}

void ScanCanvas::layLeaf(const ScanLeaf& leaf)
{
    RandomGenerator own;
    own.init(leaf.plan.seed + 1);
    const LeafPainter painter(
        leaf.plan, leaf.outline, static_cast<int>(std::ceil(cellWidth * scan_.factor)),
        static_cast<int>(std::ceil(cellHeight * scan_.factor)), scan_.factor, own);
    const double depth = leaf.plan.lightBackground ? 0.16 : 0.35;
    for (int y = 0; y < painter.coverage().height; ++y) {
        for (int x = 0; x < painter.coverage().width; ++x) {
            const double share = painter.coverage().at(x, y);
            const double lit = 1.0 - depth * painter.shadow().at(x, y);
            const Colour blade = share > 0.0 ? painter.colourAt(x, y) : Colour{};
            for (std::size_t c = 0; c < planes_.size(); ++c) {
                float& value = planes_[c].at(leaf.x + x, leaf.y + y);
                value = static_cast<float>(value * lit * (1.0 - share) + blade[c] * share);
            }
        }
    }
}

void ScanCanvas::light()
{
    const double across = random_.uniformLF(-0.07, 0.07);
    const double down = random_.uniformLF(-0.07, 0.07);
    const double rim = random_.uniformLF(0.02, 0.08);
    const Point shade{random_.uniformLF(-1.0, 1.0), random_.bernoulli(0.5F) ? 0.9 : -0.9};
    const double reach = random_.uniformLF(0.5, 0.9);
    for (int y = 0; y < scan_.height; ++y) {
        for (int x = 0; x < scan_.width; ++x) {
            const double u = 2.0 * x / scan_.width - 1.0;
            const double v = 2.0 * y / scan_.height - 1.0;
            const double inside =
                std::clamp(1.0 - std::hypot(u - shade.x, v - shade.y) / reach, 0.0, 1.0);
            const double dark = 0.22 * inside * inside * (3.0 - 2.0 * inside);
            const double factor =
                (1.0 + across * u + down * v - rim * (u * u + v * v) / 2.0) * (1.0 - dark);
            for (Plane& plane : planes_) {
                plane.at(x, y) *= static_cast<float>(factor);
            }
        }
    }
}

} // namespace

Picture drawScan(const ScanPlan& scan)
{
    RandomGenerator random;
    random.init(scan.seed);
    ScanCanvas canvas(scan, random);
    canvas.layPaper();
    for (const ScanObject& object : scan.objects) {
        canvas.layObject(object);
    }
    for (const ScanLeaf& leaf : scan.leaves) {
        canvas.layLeaf(leaf);
    }
    canvas.light();
    return exposed(canvas.take(), random);
}
