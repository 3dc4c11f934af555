#pragma once

#include "blade/process/modelsmanager.h"
#include "image/pixels/pixelmatrix.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

class Image0;

/// Builders of synthetic leaves whose landmarks are known, and of live stacks that hold them.
namespace leaf {

struct Point
{
    double x;
    double y;
};

/// A pinnate leaf in pixels, turned by `angleDegrees` from upright (tip at the top) around the
/// middle of its axis.
struct Shape
{
    Point middle = {260.0, 420.0};
    double length = 600.0;
    double width = 260.0;
    int teethPerSide = 4;
    double toothHeight = 24.0;
    double petioleLength = 120.0;
    double petioleWidth = 14.0;
    double angleDegrees = 0.0;
};

/// Outline and landmarks of a leaf. The outline starts in the middle of the petiole's end and has a
/// positive `twiceArea(0, 1)`: it runs along the half that is left of the axis when the tip points
/// up, then down the other half.
struct Outline
{
    std::vector<Point> points; ///< at most half a pixel apart
    Point apex;
    Point junctions[2];         ///< in the order of the outline
    std::vector<Point> sinuses; ///< in the order of the outline, so are the tips
    std::vector<Point> tips;
    double area;
};

Outline draw(const Shape& shape);

/// The same, of usual size.
Outline draw(int teethPerSide,
             double toothHeight,
             double angleDegrees = 0.0,
             Point middle = {260.0, 420.0});

double distance(Point a, Point b);

/// Points up to `to`, at most half a pixel apart.
void appendLine(std::vector<Point>& points, Point to);

double polygonArea(const std::vector<Point>& points);

/// Distance of a point from the closed polygon of the outline.
double distanceToOutline(const Outline& outline, Point point);

/// Signed area of an item's polygon, positive for a positive `twiceArea(0, 1)`.
double area(const ModelItem& item);

/// The leaf's inside at `leafValue`, all else at `backgroundValue`, with even noise of +-`noise`.
PixelMatrix<float> photograph(const Outline& outline,
                              int rows,
                              int columns,
                              float leafValue,
                              float backgroundValue,
                              float noise = 0.0f,
                              unsigned seed = 1);

/// The same as an 8-bit grey image.
Image0 toImage(const PixelMatrix<float>& matrix);

/// An empty live stack with slices "leaf0", "leaf1" and so on.
std::unique_ptr<LMXStack> emptyStack(int slices);

/// A slice each with the contour (about one vertex a pixel) and the two junctions of the leaf, as
/// contour extraction and a user leave them.
std::unique_ptr<LMXStack> stackOf(const std::vector<Outline>& outlines);

/// The same with apex, sinuses and tips, all as primary ones.
std::unique_ptr<LMXStack> landmarkedStack(const std::vector<Outline>& outlines);

void addLandmarks(LMXStack& stack, int slice, const Outline& outline);

void setPixelWidth(LMXStack& stack, int slice, float width);

/// Adds an item of the model `name` to a slice; the model is made on first use.
ModelItem& addItem(LMXStack& stack,
                   const std::string& name,
                   MPrimitive geometry,
                   int slice,
                   const std::vector<Point>& points);

/// An item of points.
ModelItem&
mark(LMXStack& stack, const std::string& name, int slice, const std::vector<Point>& points);

/// The same in place of the item that is there.
void remark(LMXStack& stack, const std::string& name, int slice, const std::vector<Point>& points);

/// The item of the model on the slice, or null; the last one of several.
ModelItem* findItem(LMXStack& stack, const std::string& name, int slice);

/// The vertices of that item; empty if there is none.
std::vector<Point> vertices(LMXStack& stack, const std::string& name, int slice);

std::vector<Point> pointsOf(const ModelItem& item);

/// A vertex of a list or curve.
template <class List>
Point at(const List& list, int i)
{
    return {list[i][0], list[i][1]};
}

/// Each point of one list lies within `tolerance` of exactly one point of the other.
bool samePlaces(const std::vector<Point>& a, const std::vector<Point>& b, double tolerance);

/// A process without work of its own that shows what the base holds.
class Probe : public ModelsManager
{
public:
    explicit Probe(LMXStack& openStack) { setStack(openStack); }

    void run() override {}

    std::string process(int) override { return ""; }

    void createModels() override {}

    using ModelsManager::apex;
    using ModelsManager::apexItem;
    using ModelsManager::apexModel;
    using ModelsManager::appendLandmark;
    using ModelsManager::contour;
    using ModelsManager::contourItem;
    using ModelsManager::contourModel;
    using ModelsManager::petiole;
    using ModelsManager::petioleItem;
    using ModelsManager::primaryDistalPeak;
    using ModelsManager::primaryDistalSinus;
    using ModelsManager::primaryPeak;
    using ModelsManager::primaryPeakItem;
    using ModelsManager::primarySinus;
    using ModelsManager::primarySinusItem;
    using ModelsManager::runOnAllSlices;
};

} // namespace leaf
