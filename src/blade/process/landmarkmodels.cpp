// Part of `ModelsManager`: the landmark models: their creation, and the folding of a hierarchy's
// labels into plain sinuses and tips.

#include "blade/process/landmarks.h"
#include "blade/process/modelsmanager.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

namespace {

struct Colour
{
    int red;
    int green;
    int blue;
};

void deleteModel(Stack& stack, const std::string& name)
{
    const int index = stack.findModel(name);
    if (index >= 0) {
        stack.deleteModel(index);
    }
}

Model* makeModel(const std::string& name, MPrimitive geometry, Colour colour, float lineWidth)
{
    ModelProperties properties;
    properties.setDefaults();
    properties.setGeometry(geometry);
    ModelItemProperties itemProperties;
    itemProperties.setDefaults();
    Vector<int> rgb(3);
    rgb[0] = colour.red;
    rgb[1] = colour.green;
    rgb[2] = colour.blue;
    itemProperties.setColor(rgb);
    itemProperties.setLineWidth(lineWidth);
    Model* model = new Model;
    model->setName(name);
    model->setProperties(properties);
    model->setItemProperties(itemProperties);
    return model;
}

Model* makePointModel(const std::string& name,
                      Colour colour,
                      VertexSymbol symbol,
                      float pointSize = 7.0f,
                      float lineWidth = 3.0f)
{
    Model* model = makeModel(name, PRIMITIVE_POLYPOINT, colour, lineWidth);
    ModelItemProperties& properties = model->getItemProperties();
    properties.setVertexSymbol(symbol);
    properties.setPointSize(pointSize);
    properties.setVertexSymbolFilling(false);
    return model;
}

Model* addModel(Stack& stack, Model* model)
{
    stack.addModel(*model);
    LMXModelCreateEvent event(*model);
    LMXEventServer::notifyEvent(event);
    return model;
}

void removeAllVertices(ModelItem& item)
{
    for (int i = item.getSize() - 1; i >= 0; --i) {
        item.removeVertex(i);
    }
}

/// Appends the points, truncated. The item is announced as a new one is: a view that hears of the new
/// models alone would draw them empty.
void appendPoints(ModelItem& item, const Vertices<float>& points)
{
    Vector<int> vertex(2);
    for (int i = 0; i < points.getSize(); ++i) {
        vertex[0] = static_cast<int>(points[i][0]);
        vertex[1] = static_cast<int>(points[i][1]);
        item.detach();
        item.appendVertex(vertex);
        item.attach();
    }
    LMXModelItemCreateEvent event(item);
    LMXEventServer::notifyEvent(event);
}

bool contains(const Vertices<float>* list, const Vector<float>& vertex)
{
    for (int i = 0; list && i < list->getSize(); ++i) {
        if ((*list)[i] == vertex) {
            return true;
        }
    }
    return false;
}

} // namespace

void ModelsManager::createModelApex()
{
    createModelApex(*stack);
}

void ModelsManager::createModelContour()
{
    createModelContour(*stack);
}

void ModelsManager::createModelPetiole()
{
    createModelPetiole(*stack);
}

void ModelsManager::createModelPrimarySinus()
{
    createModelPrimarySinus(*stack);
}

void ModelsManager::createModelPrimaryPeaks()
{
    createModelPrimaryPeaks(*stack);
}

void ModelsManager::createModelPrimarySinusDistal()
{
    primaryDistalSinusModel =
        addModel(*stack, makePointModel(Landmarks::primaryDistalSinus, {255, 0, 200},
                                        VertexSymbol::Sphere, 3.0f, 5.0f));
}

void ModelsManager::createModelPrimaryPeaksDistal()
{
    primaryDistalPeakModel =
        addModel(*stack, makePointModel(Landmarks::primaryDistalPeak, {255, 0, 200},
                                        VertexSymbol::Tetrahedron));
}

void ModelsManager::createModelSecondarySinus()
{
    secondarySinusModel = addModel(
        *stack, makePointModel(Landmarks::secondarySinus, {0, 160, 0}, VertexSymbol::Sphere, 5.0f));
}

void ModelsManager::createModelSecondaryPeaks()
{
    secondaryPeakModel = addModel(*stack, makePointModel(Landmarks::secondaryPeak, {255, 140, 0},
                                                         VertexSymbol::Tetrahedron, 5.0f));
}

void ModelsManager::createModelsItemsSecondary(int slice)
{
    secondaryPeakItem = new ModelItem;
    secondaryPeakItem->setModel(*secondaryPeakModel);
    secondaryPeakItem->setSlice(stack->getSlice(slice));
    secondarySinusItem = new ModelItem;
    secondarySinusItem->setModel(*secondarySinusModel);
    secondarySinusItem->setSlice(stack->getSlice(slice));
}

void ModelsManager::createModelApex(Stack& other)
{
    apexModel = addModel(other, makePointModel(Landmarks::apex, {0, 0, 255}, VertexSymbol::Cube));
}

void ModelsManager::createModelContour(Stack& other)
{
    deleteModel(other, Landmarks::contour);
    contourModel =
        addModel(other, makeModel(Landmarks::contour, PRIMITIVE_POLYGON, {0, 0, 255}, 3.0f));
}

void ModelsManager::createModelPetiole(Stack& other)
{
    deleteModel(other, Landmarks::petiole);
    petioleModel =
        addModel(other, makePointModel(Landmarks::petiole, {100, 100, 255}, VertexSymbol::Diamond));
}

void ModelsManager::createModelPrimarySinus(Stack& other)
{
    primarySinusModel =
        addModel(other, makePointModel(Landmarks::primarySinus, {0, 255, 0}, VertexSymbol::Sphere));
}

void ModelsManager::createModelPrimaryPeaks(Stack& other)
{
    primaryPeakModel = addModel(
        other, makePointModel(Landmarks::primaryPeak, {255, 0, 0}, VertexSymbol::Tetrahedron));
}

Vertices<float>* ModelsManager::cleanModelsItem(const Vertices<float>* list, ModelItem* item) const
{
    auto* copy = new Vertices<float>(2, 0, 0, 16);
    if (!list || list->getSize() == 0) {
        return copy;
    }
    for (int i = 0; i < list->getSize(); ++i) {
        copy->append((*list)[i]);
    }
    item->detach();
    removeAllVertices(*item);
    return copy;
}

/// The distal and secondary sinuses of the slice read last that are not primary as well. A sinus with
/// two labels stands in two lists, and comes once.
Vertices<float> ModelsManager::sortedOutSinuses() const
{
    Vertices<float> sinuses(2, 0, 0, 16);
    const auto add = [&](const Vertices<float>* list, const Vertices<float>* other) {
        for (int i = 0; list && i < list->getSize(); ++i) {
            const Vector<float>& sinus = (*list)[i];
            if (!contains(primarySinus, sinus) && !contains(other, sinus)) {
                sinuses.append(sinus);
            }
        }
    };
    add(primaryDistalSinus, nullptr);
    add(secondarySinus, primaryDistalSinus);
    return sinuses;
}

void ModelsManager::foldLabels(Vertices<float>& sinuses, Vertices<float>& peaks)
{
    const Vertices<float> more = sortedOutSinuses();
    for (int i = 0; i < more.getSize(); ++i) {
        sinuses.append(more[i]);
    }
    for (const Vertices<float>* list : {primaryDistalPeak, secondaryPeak}) {
        for (int i = 0; list && i < list->getSize(); ++i) {
            peaks.append((*list)[i]);
        }
    }
    for (ModelItem* item :
         {primaryDistalSinusItem, secondarySinusItem, primaryDistalPeakItem, secondaryPeakItem}) {
        if (item) {
            removeAllVertices(*item);
        }
    }
}

void ModelsManager::foldSinuses()
{
    if (stack->findModel(Landmarks::secondarySinus) < 0 &&
        stack->findModel(Landmarks::primaryDistalSinus) < 0) {
        return;
    }
    const int model = stack->findModel(Landmarks::primarySinus);
    if (model < 0) {
        createModelPrimarySinus();
    } else {
        primarySinusModel = &stack->getModel(model);
    }
    for (int slice = 0; slice < stack->getNumSlices(); ++slice) {
        getModels(slice);
        const Vertices<float> more = sortedOutSinuses();
        if (primarySinusItem && more.getSize() > 0) {
            appendPoints(*primarySinusItem, more);
        } else {
            storeLandmarks(*primarySinusModel, slice, more);
        }
        primaryDistalSinusItem = secondarySinusItem = nullptr;
    }
    deleteModel(*stack, Landmarks::secondarySinus);
    deleteModel(*stack, Landmarks::primaryDistalSinus);
}

void ModelsManager::storeLandmarks(Model& model, int slice, const Vertices<float>& points)
{
    if (points.getSize() == 0) {
        return;
    }
    auto* item = new ModelItem;
    item->setModel(model);
    item->setSlice(stack->getSlice(slice));
    appendPoints(*item, points);
}

void ModelsManager::createModelsForHierarchy()
{
    using List = std::unique_ptr<Vertices<float>>;
    std::vector<List> sinuses;
    std::vector<List> peaks;
    for (int slice = 0; slice < stack->getNumSlices(); ++slice) {
        getModels(slice);
        sinuses.emplace_back(cleanModelsItem(primarySinus, primarySinusItem));
        peaks.emplace_back(cleanModelsItem(primaryPeak, primaryPeakItem));
        foldLabels(*sinuses.back(), *peaks.back());
        // What was cleaned stands in no list any more and has no other owner.
        if (primarySinus && primarySinus->getSize() > 0) {
            delete primarySinusItem;
        }
        if (primaryPeak && primaryPeak->getSize() > 0) {
            delete primaryPeakItem;
        }
        primarySinusItem = primaryPeakItem = nullptr;
        primaryDistalSinusItem = primaryDistalPeakItem = nullptr;
        secondarySinusItem = secondaryPeakItem = nullptr;
    }
    deleteModel(*stack, Landmarks::primarySinus);
    deleteModel(*stack, Landmarks::primaryPeak);
    createModelPrimarySinus();
    createModelPrimaryPeaks();
    for (int slice = 0; slice < stack->getNumSlices(); ++slice) {
        const auto k = static_cast<std::size_t>(slice);
        storeLandmarks(*primarySinusModel, slice, *sinuses[k]);
        storeLandmarks(*primaryPeakModel, slice, *peaks[k]);
    }
    for (const char* name : {Landmarks::primaryDistalSinus, Landmarks::primaryDistalPeak,
                             Landmarks::secondarySinus, Landmarks::secondaryPeak}) {
        deleteModel(*stack, name);
    }
}
