#pragma once

#include "samples/leafoutline.h"
#include "samples/leafplan.h"
#include "samples/scanobjects.h"

#include <string>
#include <vector>

enum class Paper { White, Grey, Blue, Black };

/// What a series of scans shows.
struct ScanOptions
{
    int leaves = 5;
    /// Pixels an inch.
    double resolution = 300.0;
    /// Pixels an inch that the file tells; 0 for none.
    double stated = 300.0;
    Paper paper = Paper::White;
    RulerUnit ruler = RulerUnit::Millimetre;
    MarkerPlan marker{MarkerKind::Square, 20.0};
};

/// A leaf of a scan, in a cell of its own.
struct ScanLeaf
{
    /// The scan's name, or with several leaves the scan's name and the leaf's number.
    std::string name;
    LeafPlan plan;
    /// In pixels at 300 an inch, from the cell's corner.
    LeafOutline outline;
    /// The cell's upper left pixel.
    int x = 0;
    int y = 0;
};

/// All that is decided about a scan before it is drawn.
struct ScanPlan
{
    std::string name;
    int width = 0;
    int height = 0;
    /// How many pixels stand for one of a leaf's plan.
    double factor = 1.0;
    double pixelsPerMillimetre = 1.0;
    Colour paper;
    std::vector<ScanObject> objects;
    /// In reading order: rows from the top, each from left to right.
    std::vector<ScanLeaf> leaves;
    long seed = 1;
};

/// The size of a leaf's cell in pixels at 300 an inch.
constexpr int cellWidth = 900;
constexpr int cellHeight = 1300;

/// Where a position in a leaf's cell lies on the scan.
Point onScan(const ScanPlan& scan, const ScanLeaf& leaf, const Point& inCell);

/// The plan of scan `index` of a series, counted from 0: leaves in rows, a ruler at their left,
/// cards, a label and the marker at their right. It depends on its arguments alone.
ScanPlan planScan(const ScanOptions& options, int index, long seed);
