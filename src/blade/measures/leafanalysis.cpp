#include "blade/measures/leafanalysis.h"

#include "blade/geometry/baseline.h"
#include "blade/geometry/convert2age.h"
#include "interface/lmxstack.h"
#include "shape/curves/edge.h"
#include "shape/curves/quickhull.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <initializer_list>
#include <limits>

namespace {

const float notANumber = std::numeric_limits<float>::quiet_NaN();

} // namespace

LeafAnalysis::LeafAnalysis() = default;

void LeafAnalysis::createModels() {}

std::string LeafAnalysis::leafTablePath() const
{
    return outputPath + "/" + prefix + "_LeafMeasures.data";
}

std::string LeafAnalysis::peakTablePath() const
{
    return outputPath + "/" + prefix + "_PeakMeasures.data";
}

void LeafAnalysis::run()
{
    const int slices = stack->getNumSlices();
    for (int i = 0; i < slices; ++i) {
        showProgress(i, slices);
        process(i);
    }
    if (slices > 0) {
        declareColumns();
    }
    std::string unsaved;
    if (!leafTable.save(leafTablePath(), true)) {
        unsaved = leafTablePath();
    }
    if (!peakTable.save(peakTablePath(), true)) {
        unsaved += (unsaved.empty() ? "" : ", ") + peakTablePath();
    }
    saved = unsaved.empty();
    tell(saved ? "Analysis is complete" : unsaved + ": the table can't be written");
}

/// Gives a table without rows its columns all the same.
void LeafAnalysis::declareColumns()
{
    const auto declare = [](DataSet& table, std::initializer_list<const char*> names) {
        for (const char* name : names) {
            table.getValue<float>(name, 0);
        }
    };
    if (leafTable.isEmpty()) {
        declare(leafTable, {"Slice_Name", "Calibration", "Blade_Length", "Age(day)", "Age(hours)",
                            "Blade_Width(BB)", "Blade_Area", "Blade_Perimeter", "HullPerimeter",
                            "HullArea", "Petiole_Width", "LeafDI", "aHullDI", "DI",
                            "Upper_Peak_Number", "Lower_Peak_Number", "Blade_Width(IS)"});
        if (venationType == PALMATE) {
            declare(leafTable, {"Terminal_Peak_Number"});
        }
        declare(leafTable, {"Total_Peak_Number"});
    }
    if (peakTable.isEmpty()) {
        declare(peakTable, {"Slice_Name",
                            "Calibration",
                            "Blade_Length",
                            "Age(day)",
                            "Age(hours)",
                            "Blade_Width(BB)",
                            "Blade_Width(IS)",
                            "Blade_Area",
                            "Blade_Perimeter",
                            "Petiole_Width",
                            "Upper_Peak_Number",
                            "Lower_Peak_Number",
                            "Terminal_Peak_Number",
                            "Total_Peak_Number",
                            "Tooth_Position",
                            "Side",
                            "Tooth_Width",
                            "Tooth_Height (altitude)",
                            "Tooth_Height (median)",
                            "Tooth_Height/Tooth_Width",
                            "Tooth_Area",
                            "Tooth_Skewness",
                            "Tooth_Asymmetry",
                            "Tooth_Perimeter",
                            "Tooth_Position_From_The_Tip",
                            "Tooth_Position_From_The_Base"});
    }
}

std::string LeafAnalysis::process(int slice)
{
    // The next free one: a slice that can't be measured leaves no empty row.
    const int row = leafTable.numRows();
    const int firstToothRow = peakTable.numRows();
    getModels(slice);
    if (!contour || !petiole || petiole->getSize() != 2 || !apex || apex->getSize() == 0) {
        leftOut.push_back(slice);
        return "";
    }
    const int apexPosition = apexIndex();
    const Vector<int> junctions = findIndexPetiole(*contour);
    Vector<int> sinuses;
    if (primarySinus) {
        sinuses = indexesPrimarySinuses();
        sinuses.sort();
    }
    Leaf leaf = measureLeaf(row, slice, junctions, apexPosition);
    leaf.sinusWidth = comptuteWidthBlade(sinuses, junctions, apexPosition) * leaf.calibration;
    writeToothCounts(row, leaf, sinuses, apexPosition);
    if (sinuses.getSize() != 0) {
        measureTeeth(firstToothRow, leaf, sinuses, junctions, apexPosition);
    }
    return "";
}

LeafAnalysis::Leaf
LeafAnalysis::measureLeaf(int row, int slice, const Vector<int>& junctions, int apexPosition)
{
    const StackSlice& picture = stack->getSlice(slice);
    const float w = picture.getPixelCalibration().getPixelWidth();
    const Curve<float> hull = bladeHull(junctions, *contour);

    Leaf leaf;
    leaf.name = picture.getName();
    leaf.calibration = w;
    leaf.length = lengthLeaf(junctions, apexPosition) * w;
    leaf.ageDays = Convert2Age().computeAgeDay(leaf.length, growth.strength, growth.inflection,
                                               growth.scaling);
    leaf.boundingWidth = computeDistanceProjectionWidth(junctions, apexPosition) * w;
    leaf.area = computeAreaLeaf(junctions, *contour) * w * w;
    leaf.perimeter = computeBladePerimeter(junctions) * w;
    leaf.petioleWidth = comptuteDistanceInterPetiole() * w;
    const float hullPerimeter = hull.length() * w;
    const float hullArea = 0.5f * hull.twiceArea(0, 1) * w * w;
    const float leafDissection = computeReversedCircularity(leaf.perimeter, leaf.area);
    const float hullDissection = computeReversedCircularity(hullPerimeter, hullArea);

    leafTable.setValue<std::string>("Slice_Name", row, leaf.name);
    leafTable.setValue<float>("Calibration", row, w);
    leafTable.setValue<float>("Blade_Length", row, leaf.length);
    leafTable.setValue<float>("Age(day)", row, leaf.ageDays);
    leafTable.setValue<float>("Age(hours)", row, 24.0f * leaf.ageDays);
    leafTable.setValue<float>("Blade_Width(BB)", row, leaf.boundingWidth);
    leafTable.setValue<float>("Blade_Area", row, leaf.area);
    leafTable.setValue<float>("Blade_Perimeter", row, leaf.perimeter);
    leafTable.setValue<float>("HullPerimeter", row, hullPerimeter);
    leafTable.setValue<float>("HullArea", row, hullArea);
    leafTable.setValue<float>("Petiole_Width", row, leaf.petioleWidth);
    leafTable.setValue<float>("LeafDI", row, leafDissection);
    leafTable.setValue<float>("aHullDI", row, hullDissection);
    leafTable.setValue<float>("DI", row, leafDissection / hullDissection);
    return leaf;
}

void LeafAnalysis::writeToothCounts(int row,
                                    Leaf& leaf,
                                    const Vector<int>& sinuses,
                                    int apexPosition)
{
    int upper = 0;
    for (int k = 0; k < sinuses.getSize(); ++k) {
        upper += sinuses[k] < apexPosition ? 1 : 0;
    }
    const int lower = sinuses.getSize() - upper;
    leaf.upperTeeth = std::max(upper - 1, 0);
    leaf.lowerTeeth = std::max(lower - 1, 0);
    const bool hasSinuses = sinuses.getSize() != 0;
    const int terminal = venationType == PALMATE && hasSinuses ? 1 : 0;

    leafTable.setValue<int>("Upper_Peak_Number", row, leaf.upperTeeth);
    leafTable.setValue<int>("Lower_Peak_Number", row, leaf.lowerTeeth);
    // The columns stand in the order of their first write, and a leaf without sinuses writes its
    // missing width last.
    if (hasSinuses) {
        leafTable.setValue<float>("Blade_Width(IS)", row, leaf.sinusWidth);
    }
    if (venationType == PALMATE) {
        leafTable.setValue<int>("Terminal_Peak_Number", row, terminal);
    }
    leafTable.setValue<int>("Total_Peak_Number", row, leaf.upperTeeth + leaf.lowerTeeth + terminal);
    if (!hasSinuses) {
        leafTable.setValue<float>("Blade_Width(IS)", row, leaf.sinusWidth);
    }
}

Curve<float> LeafAnalysis::bladeCurve(const Vector<int>& junctions, const Curve<float>& curve) const
{
    const int size = junctions[1] - junctions[0] + 1;
    Curve<float> blade(2, size + 1, 0, 0, false);
    for (int i = 0; i < size; ++i) {
        blade[i] = curve[junctions[0] + i];
    }
    blade[size] = curve[junctions[0]];
    return blade;
}

Curve<float> LeafAnalysis::bladeHull(const Vector<int>& junctions, const Curve<float>& curve) const
{
    const Curve<float> blade = bladeCurve(junctions, curve);
    QuickHull<float> hull;
    hull.setCurve(blade);
    return hull.process();
}

float LeafAnalysis::computeAreaLeaf(const Vector<int>& junctions, const Curve<float>& curve) const
{
    return 0.5f * bladeCurve(junctions, curve).twiceArea(0, 1);
}

float LeafAnalysis::computeAeraHull(const Vector<int>& junctions, const Curve<float>& curve) const
{
    return 0.5f * bladeHull(junctions, curve).twiceArea(0, 1);
}

float LeafAnalysis::computeBladePerimeter(const Vector<int>& junctions) const
{
    return bladeCurve(junctions, *contour).length();
}

float LeafAnalysis::computePerimeterHull(const Vector<int>& junctions) const
{
    return bladeHull(junctions, *contour).length();
}

float LeafAnalysis::comptuteDistanceInterPetiole() const
{
    return (*petiole)[0].distance((*petiole)[1]);
}

Edge<float> LeafAnalysis::computeSegPetioleApex(const Vector<int>& junctions,
                                                int apexPosition) const
{
    Edge<float> axis(2);
    axis[0] = midpoint((*contour)[junctions[0]], (*contour)[junctions[1]]);
    axis[1] = (*contour)[apexPosition];
    return axis;
}

float LeafAnalysis::computeDistanceProjectionWidth(const Vector<int>& junctions,
                                                   int apexPosition) const
{
    const Edge<float> segment = computeSegPetioleApex(junctions, apexPosition);
    const BaseLine axis(segment[0], segment[1]);
    float upper = 0.0f;
    float lower = 0.0f;
    for (int i = junctions[0]; i < apexPosition; ++i) {
        upper = std::max(upper, axis.distance((*contour)[i]));
    }
    for (int i = apexPosition; i < junctions[1]; ++i) {
        lower = std::max(lower, axis.distance((*contour)[i]));
    }
    return upper + lower;
}

float LeafAnalysis::comptuteWidthBlade(const Vector<int>& sinuses,
                                       const Vector<int>& junctions,
                                       int apexPosition) const
{
    if (sinuses.getSize() < 2) {
        return notANumber;
    }
    const Edge<float> segment = computeSegPetioleApex(junctions, apexPosition);
    const BaseLine axis(segment[0], segment[1]);
    float upper = 0.0f;
    float lower = 0.0f;
    for (int k = 0; k < sinuses.getSize(); ++k) {
        const float distance = axis.distance((*contour)[sinuses[k]]);
        if (sinuses[k] < apexPosition) {
            upper = std::max(upper, distance);
        } else if (sinuses[k] > apexPosition) {
            lower = std::max(lower, distance);
        }
    }
    return upper > 0 && lower > 0 ? upper + lower : notANumber;
}

float LeafAnalysis::computeReversedCircularity(float perimeter, float area) const
{
    const float squared = perimeter * perimeter;
    return static_cast<float>(squared / (double(area) * 12.566370614359172));
}
