#include "samples/scanplan.h"

#include "system/randomgenerator.h"
#include "system/stringtools.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double degree = 3.141592653589793 / 180.0;

/// All in millimetres: the strip of the ruler, that of the cards, and what these need in height.
constexpr double rulerStrip = 46.0;
constexpr double cardStrip = 96.0;
constexpr double leastHeight = 312.0;
constexpr double millimetresPerCellPixel = 25.4 / 300.0;

Colour colourOf(Paper paper)
{
    switch (paper) {
    case Paper::Grey:
        return {152.0, 153.0, 151.0};
    case Paper::Blue:
        return {74.0, 104.0, 168.0};
    case Paper::Black:
        return {27.0, 28.0, 32.0};
    default:
        return {228.0, 227.0, 222.0};
    }
}

void addLeaves(ScanPlan& scan, const ScanOptions& options, int index, long seed, int columns)
{
    const double across = cellWidth * scan.factor;
    const double down = cellHeight * scan.factor;
    const int rows = (options.leaves + columns - 1) / columns;
    const double top = (scan.height - rows * down) / 2.0;
    for (int i = 0; i < options.leaves; ++i) {
        ScanLeaf leaf;
        leaf.plan = planLeaf(index * options.leaves + i, seed);
        leaf.plan.colour = true;
        leaf.plan.lightBackground = options.paper == Paper::White || options.paper == Paper::Grey;
        leaf.name = scan.name + (options.leaves > 1 ? "-" + StringTools::toString(i + 1) : "");
        leaf.outline = makeOutline(leaf.plan, cellWidth, cellHeight);
        leaf.x = static_cast<int>(rulerStrip * scan.pixelsPerMillimetre + (i % columns) * across);
        leaf.y = static_cast<int>(top + (i / columns) * down);
        scan.leaves.push_back(leaf);
    }
}

void addObjects(ScanPlan& scan, const ScanOptions& options, RandomGenerator& random)
{
    const double unit = scan.pixelsPerMillimetre;
    if (options.ruler != RulerUnit::None) {
        const double angle = (random.bernoulli(0.5F) ? 90.0 : -90.0) + random.uniformLF(-4.0, 4.0);
        const Point middle{24.0 * unit, scan.height * random.uniformLF(0.45, 0.55)};
        scan.objects.push_back(
            placed(drawRuler(options.ruler, random), middle, angle * degree, unit));
    }
    double top = scan.height / unit / 2.0 - 148.0;
    const double x = scan.width / unit - cardStrip / 2.0;
    const auto add = [&](const ScanObject& object, double height, double angle) {
        const Point middle{(x + random.uniformLF(-3.0, 3.0)) * unit, (top + height / 2.0) * unit};
        scan.objects.push_back(placed(object, middle, angle * degree, unit));
        top += height;
    };
    add(drawColourCard(random), 92.0, random.uniformLF(-4.0, 4.0));
    add(drawLabel(random), 46.0, random.uniformLF(-4.0, 4.0));
    if (options.marker.kind != MarkerKind::None) {
        const bool large = options.marker.size > 40.0;
        const double angle = large ? random.uniformLF(-8.0, 8.0) : random.uniformLF(0.0, 90.0);
        add(drawMarker(options.marker), large ? options.marker.size + 30.0 : 58.0, angle);
    }
    add(drawGreyCard(), 54.0, random.uniformLF(-4.0, 4.0));
}

} // namespace

Point onScan(const ScanPlan& scan, const ScanLeaf& leaf, const Point& inCell)
{
    return inCell * scan.factor + Point{static_cast<double>(leaf.x), static_cast<double>(leaf.y)};
}

ScanPlan planScan(const ScanOptions& options, int index, long seed)
{
    RandomGenerator random;
    random.init(seed + 7000003L * (index + 1));
    ScanPlan scan;
    scan.name = "scan-" + StringTools::toString(index + 1, 2, '0');
    scan.pixelsPerMillimetre = options.resolution / 25.4;
    scan.factor = options.resolution / 300.0;
    scan.paper = colourOf(options.paper);
    const int columns = std::max(1, static_cast<int>(std::ceil(std::sqrt(1.2 * options.leaves))));
    const int rows = (options.leaves + columns - 1) / columns;
    const double width = rulerStrip + cardStrip + columns * cellWidth * millimetresPerCellPixel;
    const double height =
        std::max(leastHeight, (rows * cellHeight + 100) * millimetresPerCellPixel);
    scan.width = static_cast<int>(width * scan.pixelsPerMillimetre);
    scan.height = static_cast<int>(height * scan.pixelsPerMillimetre);
    addLeaves(scan, options, index, seed, columns);
    addObjects(scan, options, random);
    scan.seed = random.uniformL(1, 1000000000L);
    return scan;
}
