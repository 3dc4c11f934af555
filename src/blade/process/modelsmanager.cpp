#include "blade/process/modelsmanager.h"

#include "blade/process/landmarks.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxitemverticeschangeaction.h"
#include "interface/lmxstack.h"
#include "shape/curves/curveresampling.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>

namespace {

Vector<int> truncated(const Vector<float>& vertex)
{
    Vector<int> result(2);
    result[0] = static_cast<int>(vertex[0]);
    result[1] = static_cast<int>(vertex[1]);
    return result;
}

Vertices<int> truncatedVertices(const Curve<float>& curve, const Vector<int>& indexes)
{
    Vertices<int> result(2, indexes.getSize(), 0, 0);
    for (int k = 0; k < indexes.getSize(); ++k) {
        result[k] = truncated(curve[indexes[k]]);
    }
    return result;
}

} // namespace

ModelsManager::ModelsManager() = default;

ModelsManager::~ModelsManager() = default;

template <class List>
void ModelsManager::replace(List*& member, std::unique_ptr<List> list)
{
    const auto old = std::find_if(lists_.begin(), lists_.end(),
                                  [&](const auto& kept) { return kept.get() == member; });
    if (old != lists_.end()) {
        lists_.erase(old);
    }
    member = list.get();
    if (list) {
        lists_.push_back(std::move(list));
    }
}

void ModelsManager::getModels(int slice)
{
    getModelsForResampling(slice);

    struct Target
    {
        const char* name;
        ModelItem*& item;
        Vertices<float>*& list;
    };

    const Target targets[] = {
        {Landmarks::primaryPeak, primaryPeakItem, primaryPeak},
        {Landmarks::primarySinus, primarySinusItem, primarySinus},
        {Landmarks::primaryDistalPeak, primaryDistalPeakItem, primaryDistalPeak},
        {Landmarks::primaryDistalSinus, primaryDistalSinusItem, primaryDistalSinus},
        {Landmarks::secondaryPeak, secondaryPeakItem, secondaryPeak},
        {Landmarks::secondarySinus, secondarySinusItem, secondarySinus},
    };
    for (const Target& target : targets) {
        readLandmark(slice, target.name, target.item, target.list);
    }
}

void ModelsManager::readLandmark(int slice,
                                 const char* model,
                                 ModelItem*& item,
                                 Vertices<float>*& list)
{
    item = landmarkOf(stack->getSlice(slice), model);
    replace(list, item ? std::make_unique<Vertices<float>>(getModelItem(*item)) : nullptr);
}

bool ModelsManager::getModelsForResampling(int slice)
{
    readLandmark(slice, Landmarks::petiole, petioleItem, petiole);
    readLandmark(slice, Landmarks::apex, apexItem, apex);
    contourItem = landmarkOf(stack->getSlice(slice), Landmarks::contour);
    replace(contour, std::unique_ptr<Curve<float>>());
    if (contourItem && contourItem->getSize() > 0) {
        replace(contour, std::make_unique<Curve<float>>(getCurveModelItem(*contourItem)));
        contour->setClockwise(false, 0, 1);
    }
    return true;
}

void ModelsManager::setApex(const Vertices<float>& points)
{
    replace(apex, std::make_unique<Vertices<float>>(points));
}

void ModelsManager::setPrimarySinus(const Vertices<float>& points)
{
    replace(primarySinus, std::make_unique<Vertices<float>>(points));
}

void ModelsManager::setPrimaryPeak(const Vertices<float>& points)
{
    replace(primaryPeak, std::make_unique<Vertices<float>>(points));
}

Curve<float> ModelsManager::getCurveModelItem(const ModelItem& item) const
{
    const Curve<float> stored(getModelItem(item), false);
    Curve<float> oriented = stored;
    oriented.setClockwise(false, 0, 1);
    const float length = oriented.length();
    if (!(length > static_cast<float>(oriented.getSize()))) {
        return stored;
    }
    Curve<float> dense;
    CurveResampling<float>().apply(oriented, dense, static_cast<int>(length));
    return dense;
}

Vertices<float> ModelsManager::getModelItem(const ModelItem& item) const
{
    return getModelItemCalibration(item, 1.0f);
}

Vertices<float> ModelsManager::getModelItemCalibration(const ModelItem& item, float scale) const
{
    const Vertices<int>& stored = item.getVertices();
    Vertices<float> result(2, stored.getSize(), 0, 0);
    for (int i = 0; i < stored.getSize(); ++i) {
        result[i][0] = static_cast<float>(stored[i][0]) * scale;
        result[i][1] = static_cast<float>(stored[i][1]) * scale;
    }
    return result;
}

void ModelsManager::appendLandmark(ModelItem& item, const Curve<float>& curve, int index)
{
    item.detach();
    item.appendVertex(truncated(curve[index]));
    item.attach();
}

void ModelsManager::appendLandmarks(ModelItem& item, const std::vector<int>& indexes) const
{
    for (const int index : indexes) {
        appendLandmark(item, *contour, index);
    }
}

void ModelsManager::emptyLandmarks(ModelItem& item, Vertices<float>& list)
{
    item.detach();
    for (int i = item.getSize() - 1; i >= 0; --i) {
        item.removeVertex(i);
    }
    list.setSize(0, false);
}

void ModelsManager::dropIfEmpty(ModelItem*& item, bool announced)
{
    if (item->getSize() > 0) {
        return;
    }
    if (announced) {
        LMXModelItemDeleteEvent event(*item);
        LMXEventServer::notifyEvent(event);
    }
    delete item;
    item = nullptr;
}

void ModelsManager::addApex(int index)
{
    appendLandmark(*apexItem, *contour, index);
    LMXModelItemCreateEvent event(*apexItem);
    LMXEventServer::notifyEvent(event);
}

void ModelsManager::changeVertices(ModelItem& item, const Vertices<int>& vertices)
{
    const auto action = std::make_unique<LMXItemVerticesChangeAction>(item);
    verticesAction = action.get();
    action->setVertices(vertices);
    action->apply();
    verticesAction = nullptr;
}

void ModelsManager::putPetiolesOnCurve()
{
    changeVertices(*petioleItem, truncatedVertices(*contour, findIndexPetiole(*contour)));
}

void ModelsManager::putSinusOnCurve()
{
    changeVertices(*primarySinusItem, truncatedVertices(*contour, indexesPrimarySinuses()));
}

void ModelsManager::putOriginContour(Curve<float>& curve, int index)
{
    curve.setOrigin(index);
    Curve<int> outline(2, curve.getSize(), 0, 0, false);
    for (int i = 0; i < curve.getSize(); ++i) {
        outline[i][0] = static_cast<int>(curve[i][0]);
        outline[i][1] = static_cast<int>(curve[i][1]);
    }
    outline.setClockwise(false, 0, 1);
    changeVertices(*contourItem, outline);
}

void ModelsManager::runOnAllSlices(const std::string& closingText)
{
    resetProgress();
    const int slices = stack->getNumSlices();
    createModels();
    std::string report;
    for (int i = 0; i < slices; ++i) {
        showProgress(i, slices);
        const std::string result = process(i);
        if (!result.empty()) {
            report += result + "\n";
        }
    }
    tell(report.empty() ? closingText : closingText + "\n" + report);
    resetProgress();
}
