#include "host/editing/sliceeditor.h"

#include "blade/process/landmarks.h"
#include "host/document/lmxrootmediator.h"
#include "host/editing/editstep.h"
#include "host/editing/itempoints.h"
#include "host/editing/modelpresence.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <algorithm>
#include <map>

namespace {

QString text(const std::string& value)
{
    return QString::fromStdString(value);
}

/// How many points of a model a leaf has; 0 for any number.
std::size_t completeCount(const std::string& model)
{
    return model == Landmarks::apex ? 1 : model == Landmarks::petiole ? 2 : 0;
}

[[noreturn]] void refuse(const char* where, const std::string& what)
{
    raise<ValueError>(where, what);
}

void checkHoldsPoints(const LMXStack& stack, const std::string& name)
{
    const int index = stack.findModel(name);
    if (index >= 0 ? !holdsPoints(stack.getModel(index))
                   : name == Landmarks::contour || !ModelPresence::isKnown(name)) {
        refuse("void checkHoldsPoints(const LMXStack&, const string&)",
               "There is no model of points \"" + name + "\"");
    }
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

std::vector<std::string> SliceEditor::landmarkModels() const
{
    std::vector<std::string> names = {Landmarks::petiole,
                                      Landmarks::apex,
                                      Landmarks::primarySinus,
                                      Landmarks::primaryPeak,
                                      Landmarks::secondarySinus,
                                      Landmarks::secondaryPeak,
                                      Landmarks::primaryDistalSinus,
                                      Landmarks::primaryDistalPeak};
    for (int i = 0; stack() && i < stack()->getNumModels(); ++i) {
        const Model& model = stack()->getModel(i);
        if (holdsPoints(model) &&
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
    ModelItem* item = landmarkOf(target, model);
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
        if (place.isWholeItem() || !model || !holdsPoints(*model)) {
            refuse(where, "Only landmarks can be moved to another model");
        }
        if (model->getName() != destination) {
            moved.push_back(place);
        }
    }
    if (moved.empty()) {
        return places;
    }
    ModelItem* item = landmarkOf(target, destination);
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
