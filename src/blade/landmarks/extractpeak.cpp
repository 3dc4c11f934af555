#include "blade/landmarks/extractpeak.h"

#include "blade/geometry/baseline.h"
#include "blade/process/landmarks.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "shape/curves/edge.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <cmath>
#include <cstdlib>

void ExtractPeak::createModels()
{
    foldSinuses();
    for (const char* name :
         {Landmarks::primaryPeak, Landmarks::secondaryPeak, Landmarks::primaryDistalPeak}) {
        const int model = stack->findModel(name);
        if (model >= 0) {
            stack->deleteModel(model);
        }
    }
    createModelPrimaryPeaks();
}

void ExtractPeak::createModelsItems(int slice)
{
    primaryPeakItem = new ModelItem;
    primaryPeakItem->setModel(*primaryPeakModel);
    primaryPeakItem->setSlice(stack->getSlice(slice));
}

void ExtractPeak::run()
{
    runOnAllSlices("Peaks extraction is complete");
}

std::string ExtractPeak::process(int slice)
{
    getModels(slice);
    if (!contour || !petiole || !apex) {
        return "";
    }
    putPetiolesOnCurve();
    const int apexPosition = apexIndex();
    createModelsItems(slice);
    if (!primarySinus || primarySinus->getSize() == 0) {
        delete primaryPeakItem;
        primaryPeakItem = nullptr;
        return "";
    }
    putSinusOnCurve();
    Vector<int> sinuses = indexesPrimarySinuses();
    sinuses.sort();

    findTips(sinuses);
    LMXModelItemCreateEvent event(*primaryPeakItem);
    LMXEventServer::notifyEvent(event);
    setPrimaryPeak(getModelItem(*primaryPeakItem));
    // The item is announced already, so that what becomes of it has to be told as well.
    removeTipsAcrossApex(sinuses, apexPosition);
    if (primaryPeakItem->getSize() == 0) {
        LMXModelItemDeleteEvent deletion(*primaryPeakItem);
        LMXEventServer::notifyEvent(deletion);
        delete primaryPeakItem;
        primaryPeakItem = nullptr;
    }
    return "";
}

void ExtractPeak::findTips(const Vector<int>& sinuses)
{
    for (int k = 1; k < sinuses.getSize(); ++k) {
        const int first = sinuses[k - 1];
        const int last = sinuses[k];
        const Vector<float> profile = methodToExtract == LocalCurvature
                                          ? findTeethCurvature(first, last, excludeNeighbourhood)
                                          : findTeethDiffArea(first, last);
        appendLandmark(*primaryPeakItem, *contour, profile.minPos());
    }
}

void ExtractPeak::removeTipsAcrossApex(const Vector<int>& sinuses, int apexPosition)
{
    int low = sinuses[0];
    int high = sinuses[sinuses.getSize() - 1];
    for (int k = 0; k < sinuses.getSize(); ++k) {
        if (sinuses[k] < apexPosition && sinuses[k] > low) {
            low = sinuses[k];
        }
        if (sinuses[k] > apexPosition && sinuses[k] < high) {
            high = sinuses[k];
        }
    }
    if (peakVenationType != PINNATE || low == high || primaryPeak->getSize() == 0) {
        return;
    }
    Vector<int> tips = indexesPrimaryPeaks();
    tips.sort();
    primaryPeakItem->detach();
    // From the last on, so that the places of the others stay as they were found.
    for (int k = tips.getSize() - 1; k >= 0; --k) {
        if (tips[k] > low && tips[k] < high) {
            primaryPeakItem->removeVertex(k);
        }
    }
    if (primaryPeakItem->getSize() != 0) {
        primaryPeakItem->attach();
        LMXModelItemVertexEvent event(*primaryPeakItem);
        LMXEventServer::notifyEvent(event);
    }
}

Vector<float> ExtractPeak::findTeethCurvature(int first, int last, int divisor) const
{
    if (divisor < 1) {
        raise<ValueError>("Vector<float> ExtractPeak::findTeethCurvature(int, int, int)",
                          "The divisor of the tooth's length is below 1");
    }
    const int window = static_cast<int>(std::fabs(double(last - first)) / double(divisor));
    Vector<float> angles(contour->getSize());
    angles.fill(static_cast<float>(3.141592653589793));
    Vector<float> before(2);
    Vector<float> behind(2);
    for (int i = first + window; i < last - window; ++i) {
        const Vector<float>& start = (*contour)[i - window];
        const Vector<float>& middle = (*contour)[i];
        const Vector<float>& end = (*contour)[i + window];
        for (int c = 0; c < 2; ++c) {
            before[c] = start[c] - middle[c];
            behind[c] = end[c] - middle[c];
        }
        const float theta = before.angle(behind);
        const bool inward = behind[0] * before[1] - behind[1] * before[0] < 0;
        angles[i] = inward ? static_cast<float>(6.283185307179586 - theta) : theta;
    }
    return angles;
}

Edge<float> ExtractPeak::findMediatrice(const Vector<float>& p1,
                                        const Vector<float>& p2,
                                        const Vector<float>& m) const
{
    Edge<float> line(2);
    line[0][0] = m[0];
    line[0][1] = m[1];
    const float dy = p1[1] - p2[1];
    if (dy == 0.0f) {
        line[1][0] = m[0];
        line[1][1] = m[1] - 100.0f;
    } else if (p1[0] == p2[0]) {
        line[1][0] = m[0] + 100.0f;
        line[1][1] = m[1];
    } else {
        const float slope = -((p1[0] - p2[0]) / dy);
        line[1][0] = p1[0];
        line[1][1] = m[1] - m[0] * slope + slope * p1[0];
    }
    return line;
}

float ExtractPeak::findVertexDistance(const Vector<float>& vertex, const Edge<float>& edge) const
{
    return BaseLine(edge[0], edge[1]).distance(vertex);
}

Vector<float> ExtractPeak::distanceSegment(int first, int last) const
{
    Vector<float> distances(contour->getSize());
    distances.setZeros();
    const BaseLine base((*contour)[first], (*contour)[last]);
    for (int k = first + 1; k < last; ++k) {
        distances[k] = base.distance((*contour)[k]);
    }
    return distances;
}

int ExtractPeak::firstCrossing(const Edge<float>& line, int first, int last) const
{
    Edge<float> step(*contour, first, first);
    for (int i = first; i < last; ++i) {
        step.setIndex(0, contour->getIndex(i));
        step.setIndex(1, contour->getIndex(i + 1));
        if (step.projectionIntersectsLine(line, 0, 1, nullptr)) {
            return i;
        }
    }
    return -1;
}

/// The contour from `first` to `last`, then `m`, then vertex `close`, as a closed curve.
Curve<float> ExtractPeak::cutPolygon(int first, int last, const Vector<float>& m, int close) const
{
    const int size = last - first + 1;
    Curve<float> polygon(2, size + 2, 0, 0, false);
    for (int i = 0; i < size; ++i) {
        polygon[i] = (*contour)[first + i];
    }
    polygon[size] = m;
    polygon[size + 1] = (*contour)[close];
    return polygon;
}

int ExtractPeak::aireRef(int first, int last) const
{
    const Edge<float> base(*contour, last, first);
    const Vector<float> m = base.cog();
    const int cut = firstCrossing(findMediatrice(base[0], base[1], m), first, last);
    if (cut < 0) {
        return 0;
    }
    const Curve<float> left = cutPolygon(first, cut, m, first);
    const Curve<float> right = cutPolygon(cut, last, m, cut);
    return static_cast<int>(left.twiceArea(0, 1) * 0.5f - 0.5f * right.twiceArea(0, 1));
}

Vector<float> ExtractPeak::findTeethDiffArea(int first, int last) const
{
    Vector<float> differences(contour->getSize());
    differences.fill(10000.0f);
    const bool firstFlankLarger = static_cast<float>(aireRef(first, last)) > 0;
    const int top = distanceSegment(first, last).maxPos();
    const int foot = firstFlankLarger ? first : last;
    const int begin = firstFlankLarger ? last - 1 : first;
    const int step = firstFlankLarger ? -1 : 1;
    for (int j = begin; (top - j) * step > 0; j += step) {
        const Edge<float> chord(*contour, foot, j);
        const Vector<float> m = chord.cog();
        const Edge<float> line = findMediatrice(chord[0], chord[1], m);
        const int low = firstFlankLarger ? first : j;
        const int high = firstFlankLarger ? j : last;
        const int cut = firstCrossing(line, low, high);
        if (cut < 0) {
            continue;
        }
        const Curve<float> nearFlank = cutPolygon(low, cut, m, low);
        const Curve<float> farFlank = cutPolygon(cut, high, m, cut);
        differences[cut] =
            std::fabs(nearFlank.twiceArea(0, 1) * 0.5f - farFlank.twiceArea(0, 1) * 0.5f);
    }
    return differences;
}
