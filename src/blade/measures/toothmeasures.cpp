// Part of `LeafAnalysis`: the teeth: what lies on the contour between two neighbouring sinuses of
// the same half of the blade, and on a palmate leaf across the apex.

#include "blade/geometry/baseline.h"
#include "blade/measures/leafanalysis.h"
#include "shape/curves/edge.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// The entries of an ascending list that lie in the range from `first` to `last`.
Vector<int> entriesBetween(const Vector<int>& list, int first, int last)
{
    std::vector<int> chosen;
    for (int k = 0; k < list.getSize(); ++k) {
        if (list[k] >= first && list[k] <= last) {
            chosen.push_back(list[k]);
        }
    }
    return Vector<int>(chosen);
}

const int noTip = -1;

} // namespace

void LeafAnalysis::measureTeeth(int firstRow,
                                const Leaf& leaf,
                                const Vector<int>& sinuses,
                                const Vector<int>& junctions,
                                int apexPosition)
{
    const int end = contour->getSize() - 1;
    const Vector<int> upper = entriesBetween(sinuses, 0, apexPosition - 1);
    const Vector<int> lower = entriesBetween(sinuses, apexPosition, end);
    Vector<int> tips;
    if (primaryPeak) {
        tips = indexesPrimaryPeaks();
        tips.sort();
    }
    int row = firstRow;
    const auto write = [&](int position, const char* side, int s0, int s1, int tip, int distal) {
        writeTooth(row++, leaf, position, side, s0, s1, tip, medianHeight(tips, s0, s1),
                   computeDistanceProjectionSinusApex(distal, junctions, apexPosition));
    };
    for (int j = upper.getSize() - 1; j >= 1; --j) {
        const int tip = tipOfTooth(tips, j - 1, upper[j - 1], upper[j]);
        const int position = upper.getSize() - j;
        write(position, "upper", upper[j - 1], upper[j], tip, upper[j]);
    }
    if (venationType == PALMATE) {
        // A half without a sinus gives its end of the contour in the middle of the petiole.
        const int s0 = upper.getSize() != 0 ? upper[upper.getSize() - 1] : 0;
        const int s1 = lower.getSize() != 0 ? lower[0] : end;
        write(0, "", s0, s1, apexPosition, s0);
    }
    if (lower.getSize() >= 2) {
        // A terminal tip behind the apex vertex is no tip of a lower tooth: it would give every
        // tooth the tip of its neighbour.
        const Vector<int> lowerTips = entriesBetween(tips, lower[0], lower[lower.getSize() - 1]);
        for (int j = 0; j < lower.getSize() - 1; ++j) {
            const int tip = tipOfTooth(lowerTips, j, lower[j], lower[j + 1]);
            write(j + 1, "lower", lower[j], lower[j + 1], tip, lower[j]);
        }
    }
}

/// The tip of the tooth between two sinuses: that of the tooth's own rank where each tooth has one
/// tip. Where teeth lack tips or have several, the ranks are off, and the last tip between the
/// sinuses counts; `noTip` where there is none.
int LeafAnalysis::tipOfTooth(const Vector<int>& tips, int rank, int s0, int s1) const
{
    if (rank < tips.getSize() && tips[rank] >= s0 && tips[rank] <= s1) {
        return tips[rank];
    }
    const Vector<int> between = entriesBetween(tips, s0 + 1, s1 - 1);
    return between.getSize() != 0 ? between[between.getSize() - 1] : noTip;
}

void LeafAnalysis::writeTooth(int row,
                              const Leaf& leaf,
                              int position,
                              const char* side,
                              int s0,
                              int s1,
                              int tip,
                              float medianHeight,
                              float fromTheTip)
{
    const float w = leaf.calibration;
    const int terminal = venationType == PALMATE ? 1 : 0;
    const Curve<float> chain = toothChain(s0, s1);
    Curve<float> polygon = chain;
    polygon.detach();
    polygon.append(Vector<float>((*contour)[s0]));
    polygon.setOpen(false);
    const float width = computeWidthTooth(s0, s1) * w;
    const float height = computeHeightTooth(*contour, s0, s1) * w;

    peakTable.setValue<std::string>("Slice_Name", row, leaf.name);
    peakTable.setValue<float>("Calibration", row, w);
    peakTable.setValue<float>("Blade_Length", row, leaf.length);
    peakTable.setValue<float>("Age(day)", row, leaf.ageDays);
    peakTable.setValue<float>("Age(hours)", row, 24.0f * leaf.ageDays);
    peakTable.setValue<float>("Blade_Width(BB)", row, leaf.boundingWidth);
    peakTable.setValue<float>("Blade_Width(IS)", row, leaf.sinusWidth);
    peakTable.setValue<float>("Blade_Area", row, leaf.area);
    peakTable.setValue<float>("Blade_Perimeter", row, leaf.perimeter);
    peakTable.setValue<float>("Petiole_Width", row, leaf.petioleWidth);
    peakTable.setValue<int>("Upper_Peak_Number", row, leaf.upperTeeth);
    peakTable.setValue<int>("Lower_Peak_Number", row, leaf.lowerTeeth);
    peakTable.setValue<int>("Terminal_Peak_Number", row, terminal);
    peakTable.setValue<int>("Total_Peak_Number", row, leaf.upperTeeth + leaf.lowerTeeth + terminal);
    peakTable.setValue<float>("Tooth_Position", row, static_cast<float>(position));
    // The terminal tooth has no side: its cell stays as it is, empty.
    if (*side != '\0') {
        peakTable.setValue<std::string>("Side", row, side);
    }
    peakTable.setValue<float>("Tooth_Width", row, width);
    peakTable.setValue<float>("Tooth_Height (altitude)", row, height);
    peakTable.setValue<float>("Tooth_Height (median)", row, medianHeight * w);
    peakTable.setValue<float>("Tooth_Height/Tooth_Width", row, std::fabs(height / width));
    peakTable.setValue<float>("Tooth_Area", row, std::fabs(computeAireTooth(polygon)) * w * w);
    peakTable.setValue<float>("Tooth_Skewness", row, comptuteSkewness(chain));
    peakTable.setValue<float>("Tooth_Asymmetry", row, comptuteAsymmetry(chain, s0, s1, tip));
    peakTable.setValue<float>("Tooth_Perimeter", row, computeToothPerimeter(chain) * w);
    peakTable.setValue<float>("Tooth_Position_From_The_Tip", row, fromTheTip);
    peakTable.setValue<float>("Tooth_Position_From_The_Base", row,
                              static_cast<float>(100.0 - fromTheTip));
}

Curve<float> LeafAnalysis::toothChain(int s0, int s1) const
{
    Curve<float> chain(2, s1 - s0 + 1, 0, 0, true);
    for (int i = s0; i <= s1; ++i) {
        chain[i - s0] = (*contour)[i];
    }
    return chain;
}

float LeafAnalysis::computeWidthTooth(int s0, int s1) const
{
    return (*contour)[s0].distance((*contour)[s1]);
}

float LeafAnalysis::computeHeightTooth(const Curve<float>& curve, int s0, int s1) const
{
    return distanceSegment(curve, s0, s1).max();
}

Vector<float> LeafAnalysis::distanceSegment(const Curve<float>& curve, int i0, int i1) const
{
    Vector<float> distances(curve.getSize());
    distances.setZeros();
    const BaseLine base(curve[i0], curve[i1]);
    for (int k = i0 + 1; k < i1; ++k) {
        distances[k] = base.distance(curve[k]);
    }
    return distances;
}

float LeafAnalysis::findVertexDistance(const Vector<float>& vertex,
                                       const Edge<float>& segment) const
{
    return BaseLine(segment[0], segment[1]).distance(vertex);
}

float LeafAnalysis::computeHeightMedianTooth(int s0, int s1) const
{
    return distanceHeightMedianTooth(s0, s1);
}

float LeafAnalysis::distanceHeightMedianTooth(int s0, int s1) const
{
    return primaryPeak ? medianHeight(indexesPrimaryPeaks(), s0, s1) : 0.0f;
}

/// From the places of all tips, which take the longest to find.
float LeafAnalysis::medianHeight(const Vector<int>& tips, int s0, int s1) const
{
    int tip = noTip;
    for (int k = 0; k < tips.getSize(); ++k) {
        if (tips[k] > s0 && tips[k] < s1) {
            tip = std::max(tip, tips[k]);
        }
    }
    return tip == noTip ? 0.0f : Edge<float>(*contour, s0, s1).cog().distance((*contour)[tip]);
}

float LeafAnalysis::computeAireTooth(const Curve<float>& polygon) const
{
    return 0.5f * polygon.twiceArea(0, 1);
}

float LeafAnalysis::computeToothPerimeter(const Curve<float>& chain) const
{
    return chain.length();
}

float LeafAnalysis::comptuteSkewness(const Curve<float>& chain) const
{
    const int samples = 101;
    const Curve<float> spaced = chain.resample(samples);
    const BaseLine base(spaced[0], spaced[samples - 1]);
    Vector<float> places(samples - 1);
    for (int i = 0; i < samples - 1; ++i) {
        places[i] = base.footFromStart(spaced[i]) / base.length();
    }
    return static_cast<float>((places.mean() - places.median()) * 3.0 / places.std());
}

float LeafAnalysis::comptuteAsymmetry(const Curve<float>& chain, int s0, int s1, int k) const
{
    if (k < s0 || k > s1) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    const auto flank = [&](int first, int last) {
        Curve<float> part(2, last - first + 1, 0, 0, true);
        for (int i = first; i <= last; ++i) {
            part[i - first] = chain[i];
        }
        return part.length();
    };
    return flank(0, k - s0) / flank(k - s0, s1 - s0);
}

float LeafAnalysis::computeDistanceProjectionSinusApex(int s,
                                                       const Vector<int>& junctions,
                                                       int apexPosition) const
{
    const Edge<float> segment = computeSegPetioleApex(junctions, apexPosition);
    const BaseLine axis(segment[0], segment[1]);
    return axis.footFromEnd((*contour)[s]) / axis.length() * 100.0f;
}
