#include "samples/scanfiles.h"

#include "samples/samplefiles.h"
#include "samples/sampletables.h"
#include "samples/scanpicture.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>

namespace {

const char* nameOf(RulerUnit unit)
{
    switch (unit) {
    case RulerUnit::Millimetre:
        return "mm";
    case RulerUnit::Centimetre:
        return "cm";
    case RulerUnit::Inch:
        return "inch";
    default:
        return "none";
    }
}

const char* nameOf(MarkerKind kind)
{
    switch (kind) {
    case MarkerKind::Square:
        return "square";
    case MarkerKind::Disc:
        return "disc";
    case MarkerKind::Dots:
        return "dots";
    default:
        return "none";
    }
}

/// Moves and sizes an outline; its frame stays.
template <class Move>
LeafOutline moved(LeafOutline leaf, double factor, Move move)
{
    for (Point* point : {&leaf.leftJunction, &leaf.rightJunction, &leaf.apex}) {
        *point = move(*point);
    }
    for (Point& point : leaf.outline) {
        point = move(point);
    }
    for (TrueLandmark& landmark : leaf.landmarks) {
        landmark.place = move(landmark.place);
    }
    leaf.bladeArea *= factor * factor;
    return leaf;
}

/// The tables of all scans.
class ScanTables
{
public:
    void add(const ScanPlan& scan, const ScanOptions& options);
    void save(const std::string& folder) const;

private:
    void addLeaf(const ScanPlan& scan, const ScanLeaf& leaf);
    void addObject(const ScanPlan& scan, const ScanObject& object);

    DataSet scans_;
    DataSet leaves_;
    DataSet objects_;
    SampleTables onScans_;
    SampleTables alone_;
};

void ScanTables::add(const ScanPlan& scan, const ScanOptions& options)
{
    const int row = scans_.numRows();
    scans_.setValue<std::string>("Photograph", row, scan.name + ".tif");
    scans_.setValue("Width", row, scan.width);
    scans_.setValue("Height", row, scan.height);
    scans_.setValue("Leaves", row, static_cast<int>(scan.leaves.size()));
    scans_.setValue("Pixel_Size", row, 1.0 / scan.pixelsPerMillimetre);
    scans_.setValue<std::string>("Ruler", row, nameOf(options.ruler));
    scans_.setValue<std::string>("Marker", row, nameOf(options.marker.kind));
    scans_.setValue("Marker_Size", row, options.marker.size);
    for (const ScanLeaf& leaf : scan.leaves) {
        addLeaf(scan, leaf);
    }
    for (const ScanObject& object : scan.objects) {
        addObject(scan, object);
    }
}

void ScanTables::addLeaf(const ScanPlan& scan, const ScanLeaf& leaf)
{
    LeafPlan plan = leaf.plan;
    plan.name = leaf.name;
    const LeafOutline there = moved(leaf.outline, scan.factor,
                                    [&](const Point& point) { return onScan(scan, leaf, point); });
    onScans_.add(plan, there);
    alone_.add(plan, moved(leaf.outline, scan.factor,
                           [&](const Point& point) { return point * scan.factor; }));
    const auto byX = [](const Point& a, const Point& b) { return a.x < b.x; };
    const auto byY = [](const Point& a, const Point& b) { return a.y < b.y; };
    const auto [left, right] = std::minmax_element(there.outline.begin(), there.outline.end(), byX);
    const auto [top, bottom] = std::minmax_element(there.outline.begin(), there.outline.end(), byY);
    const int row = leaves_.numRows();
    const int x = static_cast<int>(left->x);
    const int y = static_cast<int>(top->y);
    leaves_.setValue<std::string>("Slice_Name", row, leaf.name);
    leaves_.setValue<std::string>("Photograph", row, scan.name + ".tif");
    leaves_.setValue("X", row, x);
    leaves_.setValue("Y", row, y);
    leaves_.setValue("Width", row, static_cast<int>(std::ceil(right->x)) - x);
    leaves_.setValue("Height", row, static_cast<int>(std::ceil(bottom->y)) - y);
}

void ScanTables::addObject(const ScanPlan& scan, const ScanObject& object)
{
    const int row = objects_.numRows();
    objects_.setValue<std::string>("Photograph", row, scan.name + ".tif");
    objects_.setValue<std::string>("Object", row, object.name);
    for (std::size_t k = 0; k < object.edge.size(); ++k) {
        const std::string corner = std::to_string(k + 1);
        objects_.setValue("X" + corner, row, object.edge[k].x);
        objects_.setValue("Y" + corner, row, object.edge[k].y);
    }
}

void ScanTables::save(const std::string& folder) const
{
    const auto write = [&](const DataSet& table, const std::string& name) {
        const std::string filename = folder + "/" + name;
        if (!table.save(filename, true)) {
            raiseFile<FileWriteError>("void ScanTables::save(const string&)",
                                      "The file can't be written", filename);
        }
    };
    write(scans_, "scans.tsv");
    write(leaves_, "leaves.tsv");
    write(objects_, "objects.tsv");
    onScans_.save(folder);
    alone_.save(folder + "/alone");
}

} // namespace

void writeScans(const std::string& folder, int count, long seed, const ScanOptions& options)
{
    makeFolder(folder + "/alone");
    ScanTables tables;
    for (int index = 0; index < count; ++index) {
        const ScanPlan scan = planScan(options, index, seed);
        writeTiff(drawScan(scan), folder + "/" + scan.name + ".tif", options.stated);
        for (const ScanLeaf& leaf : scan.leaves) {
            const int width = static_cast<int>(std::ceil(cellWidth * scan.factor));
            const int height = static_cast<int>(std::ceil(cellHeight * scan.factor));
            writeTiff(drawLeaf(leaf.plan, leaf.outline, width, height, scan.factor),
                      folder + "/alone/" + leaf.name + ".tif", options.resolution);
        }
        tables.add(scan, options);
    }
    tables.save(folder);
}
