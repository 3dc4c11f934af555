// Part of `HierarchyIterativeProcess`: what follows from the secondary sinuses: the items, and the
// tips.

#include "blade/hierarchy/hierarchyiterativeprocess.h"
#include "stack/modelitem.h"

#include <cmath>

namespace {

enum Column { Index, Code, Distance, PrimaryTip };

enum LandmarkCode { PrimarySinusCode, TipCode, SecondarySinusCode, ApexCode };

bool contains(const Vertices<float>& list, const Vector<float>& vertex)
{
    for (int i = 0; i < list.getSize(); ++i) {
        if (list[i] == vertex) {
            return true;
        }
    }
    return false;
}

void appendVertices(ModelItem& item, const Vertices<float>& list)
{
    Vector<int> vertex(2);
    for (int i = 0; i < list.getSize(); ++i) {
        vertex[0] = static_cast<int>(list[i][0]);
        vertex[1] = static_cast<int>(list[i][1]);
        item.detach();
        item.appendVertex(vertex);
        item.attach();
    }
}

} // namespace

void HierarchyIterativeProcess::updateSecondaryStructure(const Vertices<float>& secondary)
{
    Vertices<float> remaining(2, 0, 0, 16);
    for (int i = 0; i < primarySinus->getSize(); ++i) {
        if (!contains(secondary, (*primarySinus)[i])) {
            remaining.append((*primarySinus)[i]);
        }
    }
    emptyLandmarks(*primarySinusItem, *primarySinus);
    setPrimarySinus(remaining);
    appendVertices(*primarySinusItem, remaining);
    appendVertices(*secondarySinusItem, secondary);
}

Matrix<int> HierarchyIterativeProcess::buildMatrix() const
{
    const auto places = [&](const ModelItem& item) {
        Vector<int> indexes;
        if (item.getSize() > 0) {
            indexes = getModelItem(item).closestPointMap(*contour);
            indexes.sort();
        }
        return indexes;
    };
    const Vector<int> sinuses = places(*primarySinusItem);
    const Vector<int> tips = places(*primaryPeakItem);
    const Vector<int> secondary = places(*secondarySinusItem);
    Matrix<int> table(sinuses.getSize() + tips.getSize() + secondary.getSize() + 1, 4);
    table.setZeros();
    int row = 0;
    const auto add = [&](int index, LandmarkCode code) {
        table[row][Index] = index;
        table[row][Code] = code;
        ++row;
    };
    for (int k = 0; k < sinuses.getSize(); ++k) {
        add(sinuses[k], PrimarySinusCode);
    }
    for (int k = 0; k < tips.getSize(); ++k) {
        add(tips[k], TipCode);
    }
    for (int k = 0; k < secondary.getSize(); ++k) {
        add(secondary[k], SecondarySinusCode);
    }
    add(apexIndex(), ApexCode);
    table.sortRows(Index);
    return table;
}

float HierarchyIterativeProcess::computeDistanceTips(int first, int tip, int last) const
{
    const Curve<float>& curve = *contour;
    return ((curve[first] + curve[last]) * 0.5f - curve[tip]).norm();
}

void HierarchyIterativeProcess::computeProjectionOnMatrix(Matrix<int>& table) const
{
    int first = -1;
    for (int row = 0; row < table.getSize1(); ++row) {
        if (table[row][Code] != PrimarySinusCode) {
            continue;
        }
        for (int k = first + 1; first >= 0 && k < row; ++k) {
            const int a = table[first][Index];
            const int b = table[row][Index];
            if (table[k][Code] == TipCode && a < table[k][Index] && table[k][Index] < b) {
                table[k][Distance] =
                    static_cast<int>(std::fabs(computeDistanceTips(a, table[k][Index], b)));
            }
        }
        first = row;
    }
}

void HierarchyIterativeProcess::updatePeaks()
{
    Matrix<int> table = buildMatrix();
    computeProjectionOnMatrix(table);
    const int rows = table.getSize1();
    for (int k = 0; k + 2 < rows; ++k) {
        if (table[k][Code] != PrimarySinusCode || table[k + 1][Code] != TipCode) {
            continue;
        }
        if (table[k + 2][Code] == PrimarySinusCode) {
            table[k + 1][PrimaryTip] = 1;
        } else if (table[k + 2][Code] == SecondarySinusCode) {
            int farthest = k;
            for (int j = k + 1; j < rows && table[j][Code] != PrimarySinusCode; ++j) {
                farthest = table[j][Distance] > table[farthest][Distance] ? j : farthest;
            }
            table[farthest][PrimaryTip] = 1;
        }
    }
    emptyLandmarks(*primaryPeakItem, *primaryPeak);
    for (int k = 0; k < rows; ++k) {
        if (table[k][Code] == TipCode) {
            appendLandmark(table[k][PrimaryTip] == 1 ? *primaryPeakItem : *secondaryPeakItem,
                           *contour, table[k][Index]);
        }
    }
}
