#include "blade/modelsmanager.h"

#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxitemverticeschangeaction.h"
#include "interface/lmxstack.h"
#include "shape/curveresampling.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <cmath>

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

Curve<float> closedPart(const Curve<float>& curve, int first, int last)
{
    Curve<float> part(2, last - first + 1, 0, 0, false);
    for (int k = first; k <= last; ++k) {
        part[k - first] = curve[k];
    }
    return part;
}

Vector<int> places(const Vertices<float>* points, const Curve<float>& curve)
{
    return points && points->getSize() > 0 ? points->closestPointMap(curve) : Vector<int>();
}

double squaredDistance(int dx, int dy)
{
    return static_cast<double>(static_cast<long long>(dx) * dx + static_cast<long long>(dy) * dy);
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
    primarySinusItem = primaryDistalSinusItem = nullptr;
    primaryPeakItem = primaryDistalPeakItem = nullptr;
    for (Vertices<float>** member :
         {&primarySinus, &primaryDistalSinus, &primaryPeak, &primaryDistalPeak}) {
        replace(*member, std::unique_ptr<Vertices<float>>());
    }
    getModelsForResampling(slice);

    struct Target
    {
        const char* name;
        ModelItem*& item;
        Vertices<float>*& list;
    };

    const Target targets[] = {
        {"Primary Peak", primaryPeakItem, primaryPeak},
        {"Primary Sinus", primarySinusItem, primarySinus},
        {"Primary Distal Peak", primaryDistalPeakItem, primaryDistalPeak},
        {"Primary Distal Sinus", primaryDistalSinusItem, primaryDistalSinus},
    };
    ModelItemOwner& owner = stack->getSlice(slice);
    for (int i = 0; i < owner.getNumItems(); ++i) {
        ModelItem& item = owner.getItem(i);
        for (const Target& target : targets) {
            if (item.getModel()->getName() == target.name) {
                target.item = &item;
                replace(target.list, std::make_unique<Vertices<float>>(getModelItem(item)));
            }
        }
    }
}

bool ModelsManager::getModelsForResampling(int slice)
{
    contourItem = petioleItem = apexItem = nullptr;
    replace(contour, std::unique_ptr<Curve<float>>());
    replace(petiole, std::unique_ptr<Vertices<float>>());
    replace(apex, std::unique_ptr<Vertices<float>>());
    ModelItemOwner& owner = stack->getSlice(slice);
    for (int i = 0; i < owner.getNumItems(); ++i) {
        ModelItem& item = owner.getItem(i);
        const std::string& name = item.getModel()->getName();
        if (name == "Contour") {
            contourItem = &item;
        } else if (name == "Petiole") {
            petioleItem = &item;
            replace(petiole, std::make_unique<Vertices<float>>(getModelItem(item)));
        } else if (name == "Apex") {
            apexItem = &item;
            replace(apex, std::make_unique<Vertices<float>>(getModelItem(item)));
        }
    }
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

Vector<int> ModelsManager::indexesPetiole() const
{
    return places(petiole, *contour);
}

Vector<int> ModelsManager::indexesPrimarySinuses() const
{
    return places(primarySinus, *contour);
}

Vector<int> ModelsManager::indexesPrimaryPeaks() const
{
    return places(primaryPeak, *contour);
}

Vector<int> ModelsManager::indexesPetiole(const Curve<float>& curve) const
{
    return places(petiole, curve);
}

Vector<int> ModelsManager::indexesPrimarySinuses(const Curve<float>& curve) const
{
    return places(primarySinus, curve);
}

Vector<int> ModelsManager::indexesPrimaryPeaks(const Curve<float>& curve) const
{
    return places(primaryPeak, curve);
}

Vector<int> ModelsManager::indexesPrimarySinuses(const Vertices<float>& sinuses,
                                                 const Curve<float>& curve) const
{
    return places(&sinuses, curve);
}

int ModelsManager::apexIndex() const
{
    return indexApex(*contour);
}

int ModelsManager::indexApex(const Curve<float>& curve) const
{
    const Vector<int> indexes = places(apex, curve);
    return indexes.getSize() > 0 ? indexes[0] : -1;
}

Vector<int> ModelsManager::findIndexPetiole(const Curve<float>& curve) const
{
    Vector<int> indexes = places(petiole, curve);
    indexes.sort();
    return indexes;
}

float ModelsManager::lengthLeaf(const Vector<int>& junctions, int vertex) const
{
    return lengthLeaf(*contour, junctions, vertex);
}

float ModelsManager::lengthLeaf(const Curve<float>& curve,
                                const Vector<int>& junctions,
                                int vertex) const
{
    const Vector<float>& a = curve[junctions[0]];
    const Vector<float>& b = curve[junctions[1]];
    int difference[2];
    for (int c = 0; c < 2; ++c) {
        const int middle = static_cast<int>((a[c] - b[c]) * 0.5f + b[c]);
        difference[c] = static_cast<int>(curve[vertex][c]) - middle;
    }
    return static_cast<float>(std::sqrt(squaredDistance(difference[0], difference[1])));
}

float ModelsManager::lengthLeaf(const Curve<float>& curve) const
{
    return lengthLeaf(curve, findIndexPetiole(curve), indexApex(curve));
}

int ModelsManager::findIndexMaxDistance(const Curve<float>& curve, int first, int last) const
{
    if (first >= last) {
        return 0;
    }
    const Vector<int> a = truncated(curve[first]);
    const Vector<int> b = truncated(curve[last]);
    int centre[2];
    for (int c = 0; c < 2; ++c) {
        const int low = std::min(a[c], b[c]);
        centre[c] = low + (std::max(a[c], b[c]) - low) / 2;
    }
    Vector<int> distances(curve.getSize() - 1);
    distances.setZeros();
    for (int k = first; k < last; ++k) {
        const int dx = static_cast<int>(curve[k][0]) - centre[0];
        const int dy = static_cast<int>(curve[k][1]) - centre[1];
        distances[k] = static_cast<int>(std::sqrt(squaredDistance(dx, dy)));
    }
    return distances.maxPos();
}

Vector<int> ModelsManager::findPoints(const Curve<float>& curve, const Vector<int>& junctions) const
{
    const int size = curve.getSize();
    const int p0 = junctions[0];
    const int p1 = junctions[1];
    const float lower = closedPart(curve, 0, p1).twiceArea(0, 1);
    const float upper = closedPart(curve, p1 + 1, size - 1).twiceArea(0, 1);
    Vector<int> result(2);
    if (lower > upper) {
        result[0] = (size - 1 - p1) / 2 + p1;
        result[1] = findIndexMaxDistance(curve, p0, p1);
    } else {
        result[0] = (p1 - p0) / 2;
        result[1] = findIndexMaxDistance(curve, p1, size - 1);
    }
    return result;
}

void ModelsManager::appendLandmark(ModelItem& item, const Curve<float>& curve, int index)
{
    item.detach();
    item.appendVertex(truncated(curve[index]));
    item.attach();
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
