#include "blade/hierarchy/hierarchyarabidoprocess.h"

#include "blade/hierarchy/leafhierarchybuilding.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace {

enum Code { JunctionCode, ApexCode, SinusCode, TipCode, SecondaryTipCode };

constexpr float acrossApex = -2.0f;

void sortLists(std::initializer_list<std::vector<int>*> lists)
{
    for (std::vector<int>* list : lists) {
        std::sort(list->begin(), list->end());
    }
}

/// Takes the vertex at the place of `index` in `places` out of the item, of which `removed` vertices
/// before it are gone already.
void removeAt(ModelItem& item, const std::vector<int>& places, int index, int removed)
{
    const auto place = std::find(places.begin(), places.end(), index) - places.begin();
    item.detach();
    item.removeVertex(static_cast<int>(place) - removed);
    item.attach();
}

} // namespace

void HierarchyArabidoProcess::run()
{
    dropped_.clear();
    HierarchyProcess::run();
}

void HierarchyArabidoProcess::createLabelModels()
{
    HierarchyProcess::createLabelModels();
    if (enableDistalTeeth) {
        createModelPrimarySinusDistal();
        createModelPrimaryPeaksDistal();
    }
}

std::string HierarchyArabidoProcess::process(int slice)
{
    getModels(slice);
    if (!verifyModels()) {
        return "";
    }
    createModelsItems(slice);
    LeafHierarchyBuilding<float> building;
    building.setCurve(*contour);
    building.setLeafSegmentation(initialize());
    building.setLimitAngle(static_cast<float>(3.141592653589793 * limitAngle));
    HierarchyTreeNode<float> rootFirst;
    HierarchyTreeNode<float> rootSecond;
    building.updateHierarchy(rootFirst, rootSecond);

    emptyLandmarks(*primarySinusItem, *primarySinus);
    emptyLandmarks(*primaryPeakItem, *primaryPeak);
    const Labels labels = readLabels(slice, building.getLeafSegmentation(), building.getStatus());
    store(labels);
    if (enableDistalTeeth) {
        separateDistalTeeth(labels.primarySinuses, labels.primaryTips);
        dropIfEmpty(primaryDistalSinusItem, false);
        dropIfEmpty(primaryDistalPeakItem, false);
    }
    dropIfEmpty(secondarySinusItem, false);
    dropIfEmpty(secondaryPeakItem, false);
    dropIfEmpty(primarySinusItem, true);
    dropIfEmpty(primaryPeakItem, true);
    return "";
}

void HierarchyArabidoProcess::createModelsItems(int slice)
{
    createModelsItemsSecondary(slice);
    if (enableDistalTeeth) {
        primaryDistalSinusItem = new ModelItem;
        primaryDistalSinusItem->setModel(*primaryDistalSinusModel);
        primaryDistalSinusItem->setSlice(stack->getSlice(slice));
        primaryDistalPeakItem = new ModelItem;
        primaryDistalPeakItem->setModel(*primaryDistalPeakModel);
        primaryDistalPeakItem->setSlice(stack->getSlice(slice));
    }
}

Matrix<int> HierarchyArabidoProcess::initialize() const
{
    const int apexPosition = apexIndex();
    const Vector<int> junctions = indexesPetiole();
    Vector<int> sinuses = indexesPrimarySinuses();
    Vector<int> tips = indexesPrimaryPeaks();
    sinuses.sort();
    tips.sort();
    Matrix<int> table(tips.getSize() + sinuses.getSize() + junctions.getSize() + 1, 2);
    int row = 0;
    const auto add = [&](int index, Code code) {
        table[row][0] = index;
        table[row][1] = code;
        ++row;
    };
    const auto addAll = [&](const Vector<int>& indexes, Code code) {
        for (int k = 0; k < indexes.getSize(); ++k) {
            add(indexes[k], code);
        }
    };
    addAll(tips, TipCode);
    addAll(sinuses, SinusCode);
    addAll(junctions, JunctionCode);
    add(apexPosition, ApexCode);
    table.sortRows(0);
    return table;
}

HierarchyArabidoProcess::Labels HierarchyArabidoProcess::readLabels(
    int slice, const Matrix<int>& segmentation, const std::vector<std::vector<int>>& status)
{
    Labels labels;
    const auto readSinus = [&](int index, const std::vector<int>& depths) {
        int previous = 0;
        for (const int depth : depths) {
            if (depth == 1 && previous != 1) {
                labels.primarySinuses.push_back(index);
                previous = 1;
            } else if (depth == 2 && previous != 2) {
                labels.secondarySinuses.push_back(index);
                previous = 2;
            }
        }
        if (depths.empty()) {
            labels.primarySinuses.push_back(index);
        } else if (previous == 0) {
            drop(slice, "sinus", index);
        }
    };
    for (int row = 0; row < segmentation.getSize1(); ++row) {
        const int index = segmentation[row][0];
        const int code = segmentation[row][1];
        if (code == SinusCode) {
            readSinus(index, status[static_cast<std::size_t>(row)]);
        } else if (code == TipCode) {
            labels.primaryTips.push_back(index);
        } else if (code == SecondaryTipCode) {
            labels.secondaryTips.push_back(index);
        } else if (code > SecondaryTipCode) {
            drop(slice, "tip", index);
        }
    }
    sortLists({&labels.primarySinuses, &labels.secondarySinuses, &labels.primaryTips,
               &labels.secondaryTips});
    return labels;
}

void HierarchyArabidoProcess::drop(int slice, const std::string& what, int index)
{
    const Vector<float>& vertex = (*contour)[index];
    dropped_.push_back(stack->getSlice(slice).getName() + ": the " + what + " at (" +
                       std::to_string(static_cast<int>(vertex[0])) + ", " +
                       std::to_string(static_cast<int>(vertex[1])) +
                       ") lies deeper than secondary and drops out");
    std::cerr << dropped_.back() << std::endl;
}

void HierarchyArabidoProcess::store(const Labels& labels)
{
    appendLandmarks(*secondarySinusItem, labels.secondarySinuses);
    appendLandmarks(*primarySinusItem, labels.primarySinuses);
    appendLandmarks(*secondaryPeakItem, labels.secondaryTips);
    appendLandmarks(*primaryPeakItem, labels.primaryTips);
}

float HierarchyArabidoProcess::computeArea(int first, int last) const
{
    Curve<float> tooth(2, std::max(last - first, 0), 0, 0, false);
    for (int i = first; i < last; ++i) {
        tooth[i - first] = (*contour)[i];
    }
    return tooth.twiceArea(0, 1) / 2.0f;
}

/// For each two consecutive sinuses the area of the tooth between them, or -2 across the apex.
std::vector<float> HierarchyArabidoProcess::toothAreas(const std::vector<int>& sinuses,
                                                       int apexPosition) const
{
    std::vector<float> areas;
    for (std::size_t k = 1; k < sinuses.size(); ++k) {
        const bool isAcross = sinuses[k - 1] < apexPosition && apexPosition < sinuses[k];
        areas.push_back(isAcross ? acrossApex : std::fabs(computeArea(sinuses[k - 1], sinuses[k])));
    }
    return areas;
}

void HierarchyArabidoProcess::separateDistalTeeth(const std::vector<int>& sinuses,
                                                  const std::vector<int>& tips)
{
    const int apexPosition = apexIndex();
    const std::vector<float> areas = toothAreas(sinuses, apexPosition);
    const auto across = std::find(areas.begin(), areas.end(), acrossApex);
    const auto p = static_cast<std::size_t>(across - areas.begin());
    if (across == areas.end() || p < 2 || areas.size() < 5) {
        return;
    }
    std::vector<int> distalSinuses;
    std::vector<int> distalTips;
    const auto addTooth = [&](std::size_t sinus, std::size_t tip) {
        distalSinuses.insert(distalSinuses.end(), {sinuses[sinus], sinuses[sinus + 1]});
        if (tip < tips.size()) {
            distalTips.push_back(tips[tip]);
        }
    };
    if (areas[p - 2] > areas[p - 1]) {
        addTooth(p - 1, p - 1);
    }
    if (p + 2 < areas.size() && areas[p + 2] > areas[p + 1]) {
        addTooth(p + 1, p);
    }
    sortLists({&distalSinuses, &distalTips});
    moveDistalSinuses(distalSinuses, sinuses, apexPosition);
    moveDistalTips(distalTips, tips);
}

/// Of each distal tooth the sinus on the side of the apex is distal alone; the other one is the
/// primary neighbour's too.
void HierarchyArabidoProcess::moveDistalSinuses(const std::vector<int>& distal,
                                                const std::vector<int>& sinuses,
                                                int apexPosition)
{
    int removed = 0;
    for (std::size_t k = 0; k < distal.size(); ++k) {
        const bool isLower = distal[k] < apexPosition;
        if (isLower == (k % 2 == 1)) {
            removeAt(*primarySinusItem, sinuses, distal[k], removed);
            ++removed;
        }
        appendLandmark(*primaryDistalSinusItem, *contour, distal[k]);
    }
}

void HierarchyArabidoProcess::moveDistalTips(const std::vector<int>& distal,
                                             const std::vector<int>& tips)
{
    int removed = 0;
    for (const int tip : distal) {
        removeAt(*primaryPeakItem, tips, tip, removed);
        ++removed;
        appendLandmark(*primaryDistalPeakItem, *contour, tip);
    }
}
