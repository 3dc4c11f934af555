#include "blade/landmarks/extractconvexpoints.h"

#include "blade/process/landmarks.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <cmath>

void ExtractConvexPoints::createModels()
{
    // What the later stages made of the former sinuses goes with them: a fold would bring it back.
    for (const char* name :
         {Landmarks::apex, "Sinus", Landmarks::primarySinus, Landmarks::primaryPeak,
          Landmarks::secondarySinus, Landmarks::secondaryPeak, Landmarks::primaryDistalSinus,
          Landmarks::primaryDistalPeak}) {
        const int model = stack->findModel(name);
        if (model >= 0) {
            stack->deleteModel(model);
        }
    }
    createModelApex();
    createModelPrimarySinus();
}

void ExtractConvexPoints::createModelsItems(int slice)
{
    primarySinusItem = new ModelItem;
    primarySinusItem->setModel(*primarySinusModel);
    primarySinusItem->setSlice(stack->getSlice(slice));
    apexItem = new ModelItem;
    apexItem->setModel(*apexModel);
    apexItem->setSlice(stack->getSlice(slice));
}

Vector<float> ExtractConvexPoints::computeCurvature(const Curve<float>& curve, int h) const
{
    const int size = curve.getSize();
    Vector<float> angles(size);
    angles.fill(180.0f);
    if (h >= size - h) {
        return angles;
    }
    Vector<float> before(2);
    Vector<float> behind(2);
    for (int i = 0; i < size - 2 * h; ++i) {
        const int j = i + h;
        const Vector<float>& start = curve[i];
        const Vector<float>& middle = curve[j];
        const Vector<float>& end = curve[i + 2 * h];
        for (int c = 0; c < 2; ++c) {
            before[c] = start[c] - middle[c];
            behind[c] = end[c] - middle[c];
        }
        const float degrees = static_cast<float>(double(before.angle(behind)) * 57.29577951308232);
        const bool outward = behind[0] * before[1] - behind[1] * before[0] > 0;
        angles[j] = outward ? 360.0f - degrees : degrees;
    }
    return angles;
}

std::vector<int>
ExtractConvexPoints::findSinusCandidates(const Vector<float>& angles, int first, int last) const
{
    std::vector<int> sinuses;
    int pending = 0;
    int sharpest = 0;
    for (int i = first; i < last; ++i) {
        if (thresholdAngle > angles[i]) {
            if (pending == 0 || angles[i] < angles[sharpest]) {
                sharpest = i;
            }
            ++pending;
        }
        if (angles[i] > 180.0f && pending > neighbourhood / 5) {
            sinuses.push_back(sharpest);
            pending = 0;
        }
    }
    return sinuses;
}

std::string ExtractConvexPoints::process(int slice)
{
    getModels(slice);
    if (!contour || !petiole || petiole->getSize() != 2) {
        return "";
    }
    putPetiolesOnCurve();
    createModelsItems(slice);

    putOriginContour(*contour, indexesPetiole()[0]);
    const Vector<int> middleAndApex = findPoints(*contour, indexesPetiole());
    addApex(middleAndApex[1]);
    putOriginContour(*contour, middleAndApex[0]);

    setApex(getModelItem(*apexItem));
    const int apexPosition = apexIndex();
    const Vector<int> junctions = findIndexPetiole(*contour);
    const Vector<float> angles = computeCurvature(*contour, neighbourhood);

    const int upper =
        addSinuses(findSinusCandidates(angles, 0, apexPosition), junctions[0], apexPosition);
    const int lower = addSinuses(findSinusCandidates(angles, apexPosition, contour->getSize() - 1),
                                 apexPosition, junctions[1]);
    if (upper + lower == 0) {
        delete primarySinusItem;
        primarySinusItem = nullptr;
    }
    return upper == 1 || lower == 1 ? stack->getSlice(slice).getName() : std::string();
}

int ExtractConvexPoints::addSinuses(const std::vector<int>& candidates, int lower, int upper)
{
    int added = 0;
    for (const int index : candidates) {
        if (index <= lower || index >= upper) {
            continue;
        }
        appendLandmark(*primarySinusItem, *contour, index);
        LMXModelItemCreateEvent event(*primarySinusItem);
        LMXEventServer::notifyEvent(event);
        ++added;
    }
    return added;
}

void ExtractConvexPoints::run() {}
