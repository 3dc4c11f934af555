#include "host/sliceeditor.h"

#include "blade/junctionplacing.h"
#include "host/contourline.h"
#include "host/editstep.h"
#include "host/lmxrootmediator.h"
#include "host/modelpresence.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <algorithm>
#include <map>

namespace {

Vector<int> vertexOf(const QPoint& point)
{
    Vector<int> vertex(2);
    vertex[0] = point.x();
    vertex[1] = point.y();
    return vertex;
}

QPoint pointOf(const Vector<int>& vertex)
{
    return {vertex[0], vertex[1]};
}

Vertices<int> verticesOf(const std::vector<QPoint>& points)
{
    Vertices<int> vertices(2, static_cast<int>(points.size()), 0, 16);
    for (std::size_t i = 0; i < points.size(); ++i) {
        vertices[static_cast<int>(i)] = vertexOf(points[i]);
    }
    return vertices;
}

std::vector<QPoint> pointsOf(const ModelItem& item)
{
    std::vector<QPoint> points;
    for (int i = 0; i < item.getSize(); ++i) {
        points.push_back(pointOf(item.getVertices()[i]));
    }
    return points;
}

QString text(const std::string& value)
{
    return QString::fromStdString(value);
}

bool isPoints(const Model& model)
{
    return model.getProperties().definesGeometry() &&
           model.getProperties().getGeometry() == PRIMITIVE_POLYPOINT;
}

bool isRegion(const ModelItem& item)
{
    const Model* model = item.getModel();
    return model && model->getProperties().definesGeometry() &&
           model->getProperties().getGeometry() == PRIMITIVE_REGION;
}

/// The item of a model that the leaf processes read: the last one on the slice.
ModelItem* itemOf(StackSlice& slice, const std::string& model)
{
    for (int i = slice.getNumItems() - 1; i >= 0; --i) {
        ModelItem& item = slice.getItem(i);
        if (item.getModel() && item.getModel()->getName() == model) {
            return &item;
        }
    }
    return nullptr;
}

/// How many points of a model a leaf has; 0 for any number.
std::size_t completeCount(const std::string& model)
{
    return model == "Apex" ? 1 : model == "Petiole" ? 2 : 0;
}

[[noreturn]] void refuse(const char* where, const std::string& what)
{
    raise<ValueError>(where, what);
}

void checkHoldsPoints(const LMXStack& stack, const std::string& name)
{
    const int index = stack.findModel(name);
    if (index >= 0 ? !isPoints(stack.getModel(index))
                   : name == "Contour" || !ModelPresence::isKnown(name)) {
        refuse("void checkHoldsPoints(const LMXStack&, const string&)",
               "There is no model of points \"" + name + "\"");
    }
}

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

/// The vertices of the places by their items, ascending; a whole item with none.
std::map<ModelItem*, std::vector<int>> byItem(StackSlice& slice, const VertexPlaces& places)
{
    std::map<ModelItem*, std::vector<int>> vertices;
    for (const VertexPlace& place : places) {
        std::vector<int>& list = vertices[&slice.getItem(place.item)];
        if (!place.isWholeItem()) {
            list.push_back(place.vertex);
        }
    }
    for (const VertexPlace& place : places) {
        if (place.isWholeItem()) {
            vertices[&slice.getItem(place.item)].clear();
        }
    }
    for (auto& entry : vertices) {
        std::sort(entry.second.begin(), entry.second.end());
        entry.second.erase(std::unique(entry.second.begin(), entry.second.end()),
                           entry.second.end());
    }
    return vertices;
}

Vertices<int> without(const ModelItem& item, const std::vector<int>& removed)
{
    std::vector<QPoint> kept;
    for (int i = 0; i < item.getSize(); ++i) {
        if (!std::binary_search(removed.begin(), removed.end(), i)) {
            kept.push_back(pointOf(item.getVertices()[i]));
        }
    }
    return verticesOf(kept);
}

/// Items that lose all their vertices go. From the last item on, so that places stay good.
void removeFrom(EditStep& step, StackSlice& slice, const VertexPlaces& places)
{
    const auto removed = byItem(slice, places);
    for (int i = slice.getNumItems() - 1; i >= 0; --i) {
        ModelItem& item = slice.getItem(i);
        const auto found = removed.find(&item);
        if (found == removed.end()) {
            continue;
        }
        const Vertices<int> rest = without(item, found->second);
        if (found->second.empty() || rest.getSize() == 0) {
            step.removeItem(item);
        } else {
            step.setVertices(item, rest);
        }
    }
}

/// "Move Apex", "Delete 3 landmarks".
QString stepName(const char* verb, const StackSlice& slice, const VertexPlaces& places)
{
    if (places.size() == 1) {
        const Model* model = slice.getItem(places.front().item).getModel();
        return QString("%1 %2").arg(verb, model ? text(model->getName()) : QString("item"));
    }
    return QString("%1 %2 landmarks").arg(verb).arg(places.size());
}

} // namespace

SliceEditor::SliceEditor(LMXRootMediator& mediator, QObject* parent)
    : QObject(parent)
    , mediator_(mediator)
    , histories_(mediator)
{
    connect(&histories_, &EditHistories::changed, this, &SliceEditor::changed);
}

LMXStack* SliceEditor::stack() const
{
    return mediator_.stack();
}

StackSlice& SliceEditor::sliceAt(int slice) const
{
    return stack()->getSlice(slice);
}

ModelItem* SliceEditor::contour(StackSlice& slice)
{
    for (int i = slice.getNumItems() - 1; i >= 0; --i) {
        ModelItem& item = slice.getItem(i);
        if (item.getModel() && item.getModel()->getName() == "Contour" && item.getSize() > 0) {
            return &item;
        }
    }
    return nullptr;
}

std::optional<QPoint> SliceEditor::onContour(int slice, const QPoint& point, double reach) const
{
    const ModelItem* outline = contour(sliceAt(slice));
    if (!outline) {
        return std::nullopt;
    }
    const ContourLine::Place place = ContourLine(outline->getVertices()).nearest(point);
    return place.distance <= reach ? std::optional<QPoint>(place.pixel()) : std::nullopt;
}

std::vector<std::string> SliceEditor::landmarkModels() const
{
    std::vector<std::string> names = {
        "Petiole",         "Apex",           "Primary Sinus",        "Primary Peak",
        "Secondary Sinus", "Secondary Peak", "Primary Distal Sinus", "Primary Distal Peak"};
    for (int i = 0; stack() && i < stack()->getNumModels(); ++i) {
        const Model& model = stack()->getModel(i);
        if (isPoints(model) &&
            std::find(names.begin(), names.end(), model.getName()) == names.end()) {
            names.push_back(model.getName());
        }
    }
    return names;
}

QPoint SliceEditor::inImage(const StackSlice& slice, const QPoint& point) const
{
    if (slice.isEmpty() || slice.width() < 1 || slice.height() < 1) {
        return point;
    }
    return {std::clamp(point.x(), 0, slice.width() - 1),
            std::clamp(point.y(), 0, slice.height() - 1)};
}

QPoint SliceEditor::snapped(StackSlice& slice, const QPoint& point) const
{
    const ModelItem* outline = contour(slice);
    return inImage(slice,
                   outline ? ContourLine(outline->getVertices()).nearest(point).pixel() : point);
}

void SliceEditor::checkPlaces(const StackSlice& slice, const VertexPlaces& places) const
{
    const char* where = "void SliceEditor::checkPlaces(const StackSlice&, const VertexPlaces&)";
    for (const VertexPlace& place : places) {
        const bool itemExists = place.item >= 0 && place.item < slice.getNumItems();
        if (!itemExists ||
            (!place.isWholeItem() &&
             (place.vertex < 0 || place.vertex >= slice.getItem(place.item).getSize() ||
              isRegion(slice.getItem(place.item))))) {
            refuse(where, "There is no such landmark");
        }
    }
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
    Model& model = step.model("Petiole");
    ModelItem* kept = itemOf(target, "Petiole");
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

void SliceEditor::moveVertices(int slice, const VertexPlaces& places, const QPoint& shift)
{
    StackSlice& target = sliceAt(slice);
    checkPlaces(target, places);
    VertexPlaces moved;
    std::vector<QPoint> points;
    for (const VertexPlace& place : places) {
        if (!place.isWholeItem()) {
            moved.push_back(place);
            points.push_back(inImage(
                target, pointOf(target.getItem(place.item).getVertices()[place.vertex]) + shift));
        }
    }
    changeVertices(slice, stepName("Move", target, moved), moved, points);
}

void SliceEditor::moveVertex(int slice, const VertexPlace& place, const QPoint& point)
{
    StackSlice& target = sliceAt(slice);
    checkPlaces(target, {place});
    if (place.isWholeItem()) {
        refuse("void SliceEditor::moveVertex(int, const VertexPlace&, const QPoint&)",
               "Only landmarks can be moved");
    }
    changeVertices(slice, stepName("Move", target, {place}), {place}, {inImage(target, point)});
}

/// Vertices that are there already make no step.
void SliceEditor::changeVertices(int slice,
                                 const QString& name,
                                 const VertexPlaces& places,
                                 const std::vector<QPoint>& points)
{
    StackSlice& target = sliceAt(slice);
    std::map<int, std::vector<QPoint>> changed;
    for (std::size_t k = 0; k < places.size(); ++k) {
        const ModelItem& item = target.getItem(places[k].item);
        if (pointOf(item.getVertices()[places[k].vertex]) != points[k]) {
            std::vector<QPoint>& all = changed[places[k].item];
            if (all.empty()) {
                all = pointsOf(item);
            }
            all[static_cast<std::size_t>(places[k].vertex)] = points[k];
        }
    }
    if (changed.empty()) {
        return;
    }
    EditStep step(histories_, *stack(), target, name);
    for (const auto& entry : changed) {
        step.setVertices(target.getItem(entry.first), verticesOf(entry.second));
    }
    step.commit();
}

VertexPlace SliceEditor::addLandmark(int slice, const std::string& model, const QPoint& point)
{
    StackSlice& target = sliceAt(slice);
    checkHoldsPoints(*stack(), model);
    const QPoint place = snapped(target, point);
    ModelItem* item = itemOf(target, model);
    std::vector<QPoint> points = item ? pointsOf(*item) : std::vector<QPoint>();
    const std::size_t complete = completeCount(model);
    if (complete > 0 && points.size() >= complete) {
        const auto nearest =
            std::min_element(points.begin(), points.end(), [&](const QPoint& a, const QPoint& b) {
                return QPoint::dotProduct(a - place, a - place) <
                       QPoint::dotProduct(b - place, b - place);
            });
        const VertexPlace moved = {target.findItem(*item),
                                   static_cast<int>(nearest - points.begin())};
        moveVertex(slice, moved, place);
        return moved;
    }
    EditStep step(histories_, *stack(), target, "Add " + text(model));
    Model& owner = step.model(model);
    points.push_back(place);
    if (item) {
        step.setVertices(*item, verticesOf(points));
    } else {
        item = &step.insertItem(owner, verticesOf(points));
    }
    step.commit();
    return {target.findItem(*item), static_cast<int>(points.size()) - 1};
}

void SliceEditor::remove(int slice, const VertexPlaces& places)
{
    StackSlice& target = sliceAt(slice);
    checkPlaces(target, places);
    if (places.empty()) {
        return;
    }
    EditStep step(histories_, *stack(), target, stepName("Delete", target, places));
    removeFrom(step, target, places);
    step.commit();
}

VertexPlaces
SliceEditor::moveToModel(int slice, const VertexPlaces& places, const std::string& destination)
{
    const char* where = "VertexPlaces SliceEditor::moveToModel(int, const VertexPlaces&, "
                        "const string&)";
    StackSlice& target = sliceAt(slice);
    checkPlaces(target, places);
    checkHoldsPoints(*stack(), destination);
    VertexPlaces moved;
    for (const VertexPlace& place : places) {
        const Model* model = target.getItem(place.item).getModel();
        if (place.isWholeItem() || !model || !isPoints(*model)) {
            refuse(where, "Only landmarks can be moved to another model");
        }
        if (model->getName() != destination) {
            moved.push_back(place);
        }
    }
    if (moved.empty()) {
        return places;
    }
    ModelItem* item = itemOf(target, destination);
    std::vector<QPoint> points = item ? pointsOf(*item) : std::vector<QPoint>();
    const std::size_t before = points.size();
    for (const VertexPlace& place : moved) {
        points.push_back(pointOf(target.getItem(place.item).getVertices()[place.vertex]));
    }
    const std::size_t complete = completeCount(destination);
    if (complete > 0 && points.size() > complete) {
        refuse(where, complete == 1 ? "A leaf has one apex" : "A leaf has two junctions");
    }
    EditStep step(histories_, *stack(), target,
                  stepName("Move", target, moved) + " to " + text(destination));
    Model& owner = step.model(destination);
    removeFrom(step, target, moved);
    if (item) {
        step.setVertices(*item, verticesOf(points));
    } else {
        item = &step.insertItem(owner, verticesOf(points));
    }
    step.commit();
    VertexPlaces result;
    for (std::size_t k = before; k < points.size(); ++k) {
        result.push_back({target.findItem(*item), static_cast<int>(k)});
    }
    return result;
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
    ModelItem* outline = contour(target);
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
        step.insertItem(step.model("Contour"), verticesOf(points));
    }
    step.commit();
}

void SliceEditor::deleteContour(int slice)
{
    StackSlice& target = sliceAt(slice);
    const ModelItem* outline = contour(target);
    if (!outline) {
        refuse("void SliceEditor::deleteContour(int)",
               "Slice " + target.getName() + " has no contour");
    }
    remove(slice, {{target.findItem(*outline), VertexPlace::wholeItem}});
}
