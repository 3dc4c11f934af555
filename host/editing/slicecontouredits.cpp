// Part of `SliceEditor`: the edits that have to do with the contour: points that go onto it, and
// its own line.

#include "blade/landmarks/junctionplacing.h"
#include "blade/process/landmarks.h"
#include "host/editing/contourline.h"
#include "host/editing/editstep.h"
#include "host/editing/itempoints.h"
#include "host/editing/sliceeditor.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <algorithm>

namespace {

/// The sum is twice the area, in image coordinates.
bool hasPositiveArea(const std::vector<QPoint>& outline)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const QPoint& a = outline[i];
        const QPoint& b = outline[(i + 1) % outline.size()];
        sum += static_cast<double>(a.x()) * b.y() - static_cast<double>(b.x()) * a.y();
    }
    return sum > 0.0;
}

[[noreturn]] void refuse(const char* where, const std::string& what)
{
    raise<ValueError>(where, what);
}

} // namespace

std::optional<QPoint> SliceEditor::onContour(int slice, const QPoint& point, double reach) const
{
    const ModelItem* outline = contourOf(sliceAt(slice));
    if (!outline) {
        return std::nullopt;
    }
    const ContourLine::Place place = ContourLine(outline->getVertices()).nearest(point);
    return place.distance <= reach ? std::optional<QPoint>(place.pixel()) : std::nullopt;
}

QPoint SliceEditor::snapped(StackSlice& slice, const QPoint& point) const
{
    const ModelItem* outline = contourOf(slice);
    return inImage(slice,
                   outline ? ContourLine(outline->getVertices()).nearest(point).pixel() : point);
}

void SliceEditor::drawJunctions(int slice, const QPoint& first, const QPoint& second)
{
    const char* where = "void SliceEditor::drawJunctions(int, const QPoint&, const QPoint&)";
    StackSlice& target = sliceAt(slice);
    const std::string fault =
        junctionFault({{first.x(), second.x()}, {first.y(), second.y()}}, target);
    if (!fault.empty()) {
        refuse(where, "Slice " + target.getName() + ": " + fault);
    }
    const std::vector<QPoint> points = {snapped(target, first), snapped(target, second)};
    if (points[0] == points[1]) {
        refuse(where,
               "Slice " + target.getName() + ": both junctions fall on one place of the contour");
    }
    EditStep step(histories_, *stack(), target, "Draw junctions");
    Model& model = step.model(Landmarks::petiole);
    ModelItem* kept = landmarkOf(target, Landmarks::petiole);
    for (int i = target.getNumItems() - 1; i >= 0; --i) {
        ModelItem& item = target.getItem(i);
        if (item.getModel() == &model && &item != kept) {
            step.removeItem(item);
        }
    }
    if (kept) {
        step.setVertices(*kept, verticesOf(points));
    } else {
        step.insertItem(model, verticesOf(points));
    }
    step.commit();
}

void SliceEditor::redrawContour(int slice, const QPolygon& line)
{
    const char* where = "void SliceEditor::redrawContour(int, const QPolygon&)";
    StackSlice& target = sliceAt(slice);
    std::vector<QPoint> drawn;
    for (const QPoint& point : line) {
        drawn.push_back(inImage(target, point));
    }
    drawn.erase(std::unique(drawn.begin(), drawn.end()), drawn.end());
    if (drawn.size() < 2) {
        refuse(where, "A line takes two points at least");
    }
    ModelItem* outline = contourOf(target);
    std::vector<QPoint> points;
    if (outline) {
        const ContourLine former(outline->getVertices());
        const double allowed = former.diagonal() / 10.0;
        if (former.nearest(drawn.front()).distance > allowed ||
            former.nearest(drawn.back()).distance > allowed) {
            refuse(where, "The line must begin and end at the contour");
        }
        points = former.redrawn(drawn);
    } else {
        points = ContourLine::pixelSteps(drawn, true);
        if (!hasPositiveArea(points)) {
            std::reverse(points.begin(), points.end()); // as contours are that were extracted
        }
    }
    if (points.size() < 3) {
        refuse(where, "The contour would have no inside");
    }
    EditStep step(histories_, *stack(), target, outline ? "Redraw contour" : "Draw contour");
    if (outline) {
        step.setVertices(*outline, verticesOf(points));
    } else {
        step.insertItem(step.model(Landmarks::contour), verticesOf(points));
    }
    step.commit();
}

void SliceEditor::deleteContour(int slice)
{
    StackSlice& target = sliceAt(slice);
    const ModelItem* outline = contourOf(target);
    if (!outline) {
        refuse("void SliceEditor::deleteContour(int)",
               "Slice " + target.getName() + " has no contour");
    }
    remove(slice, {{target.findItem(*outline), VertexPlace::wholeItem}});
}
