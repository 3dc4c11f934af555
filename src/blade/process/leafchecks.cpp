// Part of `ModelsManager`: the checks of a slice's landmarks.

#include "blade/geometry/bladeselfintersects.h"
#include "blade/process/modelsmanager.h"
#include "interface/lmxstack.h"
#include "numerics/matrix.h"
#include "stack/stackslice.h"

#include <algorithm>

namespace {

constexpr int smallestContour = 100;

enum Code {
    ApexCode = 0,
    FirstJunctionCode = 3,
    SecondJunctionCode = 4,
    TipCode = 5,
    SinusCode = 7
};

const char* const remedy = "Please check and correct your stack, save the changes.";

struct Landmarks
{
    int apex;
    Vector<int> junctions;
    Vector<int> sinuses;
    Vector<int> tips;
};

/// Between the sinuses there is one tip fewer than sinuses on each half that has any, and none
/// across the apex.
bool countsFit(const Landmarks& landmarks)
{
    const int sinuses = landmarks.sinuses.getSize();
    const int tips = landmarks.tips.getSize();
    if (sinuses == 2) {
        return tips == 1;
    }
    int lower = 0;
    for (int k = 0; k < sinuses; ++k) {
        lower += landmarks.sinuses[k] < landmarks.apex ? 1 : 0;
    }
    const bool bothHalves = lower > 0 && lower < sinuses;
    return tips + (bothHalves ? 2 : 1) == sinuses;
}

/// One row a landmark, contour index and code, in the order of the contour.
Matrix<int> sortedLandmarks(const Landmarks& landmarks)
{
    Matrix<int> table(3 + landmarks.sinuses.getSize() + landmarks.tips.getSize(), 2);
    int row = 0;
    const auto add = [&](int index, Code code) {
        table[row][0] = index;
        table[row][1] = code;
        ++row;
    };
    add(landmarks.apex, ApexCode);
    add(landmarks.junctions[0], FirstJunctionCode);
    add(landmarks.junctions[1], SecondJunctionCode);
    for (int k = 0; k < landmarks.sinuses.getSize(); ++k) {
        add(landmarks.sinuses[k], SinusCode);
    }
    for (int k = 0; k < landmarks.tips.getSize(); ++k) {
        add(landmarks.tips[k], TipCode);
    }
    table.sortRows(0);
    return table;
}

struct OrderTexts
{
    const char* landmark;
    const char* peak;
    const char* sinus;
};

/// The faults of a step from a landmark of code `x` to one of code `y`.
std::string stepFaults(int x, int y, bool hasTips, const OrderTexts& texts)
{
    std::string faults;
    if (y != SinusCode && !hasTips) {
        faults += texts.landmark;
    }
    if (x == SinusCode && y != TipCode && hasTips) {
        faults += texts.peak;
    }
    if (x == TipCode && y != SinusCode) {
        faults += texts.sinus;
    }
    return faults;
}

std::string orderFaults(const Matrix<int>& table, bool hasTips)
{
    const int rows = table.getSize1();
    int apexRow = 0;
    while (table[apexRow][1] != ApexCode) {
        ++apexRow;
    }
    std::string faults;
    for (int k = 0; k < apexRow - 1; ++k) {
        if (table[0][1] != FirstJunctionCode) {
            faults += " wrong position for first petiole,\n please inverse the order or \n verify "
                      "that the original contour or between the two petioles, ";
        } else {
            faults += stepFaults(table[k][1], table[k + 1][1], hasTips,
                                 {" wrong landmark, \n ", " wrong landmark, add peak, \n ",
                                  " wrong landmark add sinus, \n "});
        }
    }
    for (int k = apexRow; k <= rows - 3; ++k) {
        faults += stepFaults(table[k][1], table[k + 1][1], hasTips,
                             {" wrong landmark1, \n ", " wrong landmark1, add peak, \n",
                              " wrong landmark1 add sinus, \n"});
    }
    if (table[rows - 1][1] != SecondJunctionCode) {
        faults += " wrong position for second petiole,\n please inverse the order or \n verify "
                  "that the original contour or between the two petioles, ";
    }
    return faults;
}

} // namespace

bool ModelsManager::verifyModels() const
{
    return primarySinus && primaryPeak && apex && petiole && contour && apex->getSize() == 1 &&
           petiole->getSize() == 2 && primarySinus->getSize() >= 1 && primaryPeak->getSize() >= 1 &&
           contour->getSize() > 3;
}

void ModelsManager::checkLeaves(int slice, std::string& report)
{
    getModels(slice);
    report = missingLandmarks();
    // A contour below 100 vertices is told and worked on all the same, unless it has no inside.
    const bool workable = contour && contour->getSize() >= 3 && apex && apex->getSize() > 0 &&
                          petiole && petiole->getSize() == 2;
    if (workable) {
        bringToWorkingOrder();
        landmarkFaults(report);
    }
    if (!report.empty()) {
        report += remedy;
    }
}

bool ModelsManager::leavesAreGood()
{
    leafFaults_.clear();
    for (int i = 0; i < stack->getNumSlices(); ++i) {
        std::string report;
        checkLeaves(i, report);
        if (!report.empty()) {
            leafFaults_ += stack->getSlice(i).getName() + ": " + report + "\n";
        }
    }
    if (!leafFaults_.empty()) {
        tell(leafFaults_);
    }
    return leafFaults_.empty();
}

std::string ModelsManager::missingLandmarks() const
{
    if (!contour) {
        return " no blade,|n ";
    }
    std::string faults;
    if (contour->getSize() < smallestContour) {
        faults += " wrong blade size,\n ";
    }
    if (!apex || apex->getSize() == 0) {
        return faults + " no apex, ";
    }
    if (!petiole) {
        return faults + " no petiole, ";
    }
    if (petiole->getSize() != 2) {
        faults += " Add two petiole/blade junctions per leaf,\n "
                  " Petiole/blade junctions defects in slice : \n ";
    }
    return faults;
}

void ModelsManager::bringToWorkingOrder()
{
    putPetiolesOnCurve();
    putOriginContour(*contour, indexesPetiole()[0]);
    const Vector<int> middleAndApex = findPoints(*contour, indexesPetiole());
    putOriginContour(*contour, middleAndApex[0]);
    setApex(getModelItem(*apexItem));
}

void ModelsManager::landmarkFaults(std::string& report)
{
    Landmarks landmarks;
    landmarks.apex = apexIndex();
    landmarks.junctions = findIndexPetiole(*contour);
    if (primarySinus && primarySinus->getSize() > 0) {
        landmarks.sinuses = indexesPrimarySinuses();
        landmarks.sinuses.sort();
        if (primaryPeak && primaryPeak->getSize() > 0) {
            landmarks.tips = indexesPrimaryPeaks();
            landmarks.tips.sort();
            if (!countsFit(landmarks)) {
                report = " wrong number for Sinus and Peaks pinnate, \n ";
                landmarks.sinuses = Vector<int>();
                landmarks.tips = Vector<int>();
            }
        }
    }
    report += orderFaults(sortedLandmarks(landmarks), landmarks.tips.getSize() > 0);
}

void ModelsManager::checkBlades(int slice, std::string& report)
{
    getModels(slice);
    report.clear();
    if (contour && BladeSelfIntersects().process(*contour)) {
        report += "intersection trouvée\n ";
    }
    if (!report.empty()) {
        report += remedy;
    }
}
