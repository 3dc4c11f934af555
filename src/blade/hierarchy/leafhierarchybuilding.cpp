#include "blade/hierarchy/leafhierarchybuilding.h"

#include "system/exception.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>

namespace {

enum Code { JunctionCode = 0, SinusCode = 2, TipCode = 3 };

constexpr int apexCode = 1;
constexpr int codeOfDepth0 = 2;

float closedArea(const Curve<float>& stretch, const Vector<float>& last)
{
    const int size = stretch.getSize();
    Curve<float> tooth(2, size + 1, 0, 0, false);
    for (int i = 0; i < size; ++i) {
        tooth[i] = stretch[i];
    }
    tooth[size] = last;
    return tooth.getSize() <= 2 ? 0.0f : tooth.twiceArea(0, 1) * 0.5f;
}

} // namespace

template <class T>
LeafHierarchyBuilding<T>::LeafHierarchyBuilding() = default;

template <class T>
void LeafHierarchyBuilding<T>::setCurve(const Vertices<float>& curve)
{
    Vertices<float>::operator=(curve);
    detach();
}

template <class T>
void LeafHierarchyBuilding<T>::setLeafSegmentation(const Matrix<int>& segmentation)
{
    if (segmentation.getSize1() > 0 && segmentation.getSize2() != 2) {
        raise<SizeError>("void LeafHierarchyBuilding<T>::setLeafSegmentation(const Matrix<int>&)",
                         "A leaf segmentation has two columns");
    }
    leafSegmentation = segmentation;
}

template <class T>
int LeafHierarchyBuilding<T>::findApexIdx() const
{
    for (int row = 0; row < leafSegmentation.getSize1(); ++row) {
        if (leafSegmentation[row][1] == apexCode) {
            return leafSegmentation[row][0];
        }
    }
    return 0;
}

template <class T>
Matrix<int> LeafHierarchyBuilding<T>::walkHalf(int direction) const
{
    const int size = getSize();
    std::vector<std::array<int, 3>> landmarks;
    int index = findApexIdx();
    bool atJunction = false;
    for (int step = 1; step < size && !atJunction; ++step) {
        index = (index + direction + size) % size;
        for (int row = 0; row < leafSegmentation.getSize1() && !atJunction; ++row) {
            if (leafSegmentation[row][0] != index) {
                continue;
            }
            if (leafSegmentation[row][1] == JunctionCode) {
                atJunction = true;
            } else if (landmarks.empty() || landmarks.back()[0] != index) {
                landmarks.push_back({index, leafSegmentation[row][1], row});
            }
        }
    }
    Matrix<int> half(static_cast<int>(landmarks.size()), 3);
    for (std::size_t k = 0; k < landmarks.size(); ++k) {
        for (int column = 0; column < 3; ++column) {
            half[static_cast<int>(k)][column] = landmarks[k][static_cast<std::size_t>(column)];
        }
    }
    return half;
}

template <class T>
void LeafHierarchyBuilding<T>::separateHalfLeaves(Matrix<int>* first, Matrix<int>* second) const
{
    *first = walkHalf(-1);
    *second = walkHalf(1);
}

template <class T>
std::vector<int> LeafHierarchyBuilding<T>::findExtremeSinusesIds(const Matrix<int>& half) const
{
    std::vector<int> extremes;
    for (int row = 0; row < half.getSize1(); ++row) {
        if (half[row][1] == SinusCode) {
            extremes.resize(2, row);
            extremes[1] = row;
        }
    }
    return extremes;
}

template <class T>
void LeafHierarchyBuilding<T>::updateHierarchy(HierarchyTreeNode<T>& rootFirst,
                                               HierarchyTreeNode<T>& rootSecond)
{
    status.assign(static_cast<std::size_t>(leafSegmentation.getSize1()), {});
    Matrix<int> first;
    Matrix<int> second;
    separateHalfLeaves(&first, &second);
    const auto walk = [&](Matrix<int>& half, HierarchyTreeNode<T>& root, bool swapped) {
        root.setDepth(0);
        const std::vector<int> extremes = findExtremeSinusesIds(half);
        if (extremes.size() == 2) {
            statusOf(half, extremes[0]).push_back(1);
            statusOf(half, extremes[1]).push_back(1);
            updateHierarchyLoop(&half, 1, extremes[0], extremes[1], &root, swapped);
        }
    };
    walk(first, rootFirst, false);
    walk(second, rootSecond, true);
}

template <class T>
int LeafHierarchyBuilding<T>::curveIndex(const Matrix<int>& half, int row) const
{
    return leafSegmentation[segmentationRow(half, row)][0];
}

template <class T>
std::vector<int>& LeafHierarchyBuilding<T>::statusOf(const Matrix<int>& half, int row)
{
    return status[static_cast<std::size_t>(segmentationRow(half, row))];
}

/// The angle at the row's vertex between the bounding ones, on the side of the blade; 0 where a side
/// has no length.
template <class T>
float LeafHierarchyBuilding<T>::angleAt(
    const Matrix<int>& half, int row, int first, int last, bool swapped) const
{
    const Vector<float>& vertex = (*this)[curveIndex(half, row)];
    Vector<float> a = (*this)[curveIndex(half, first)] - vertex;
    Vector<float> b = (*this)[curveIndex(half, last)] - vertex;
    if (swapped) {
        a.swap(b);
    }
    a.normalize();
    b.normalize();
    if (!(a.norm() > 0.0f && b.norm() > 0.0f)) {
        return 0.0f;
    }
    // Rounding may lead a little beyond 1, where the arc cosine has no value.
    const float angle = acosf(std::clamp(a[0] * b[0] + a[1] * b[1], -1.0f, 1.0f));
    const float side = a[0] * b[1] - a[1] * b[0];
    return side < 0.0f ? static_cast<float>(6.283185307179586 - double(angle)) : angle;
}

template <class T>
typename LeafHierarchyBuilding<T>::Widest LeafHierarchyBuilding<T>::widestSinus(
    const Matrix<int>& half, int first, int last, bool swapped) const
{
    Widest widest = {first, 0.0f, false};
    for (int row = first + 1; row < last; ++row) {
        if (half[row][1] != SinusCode) {
            continue;
        }
        const float angle = angleAt(half, row, first, last, swapped);
        if (angle > widest.angle) {
            widest.angle = angle;
            widest.row = row;
        }
        widest.found = true;
    }
    return widest;
}

template <class T>
void LeafHierarchyBuilding<T>::labelTooth(
    const Matrix<int>& half, int depth, int first, int last, HierarchyTreeNode<T>& node)
{
    for (int row = first + 1; row < last; ++row) {
        if (half[row][1] == TipCode) {
            leafSegmentation[segmentationRow(half, row)][1] = depth + codeOfDepth0;
            node.addChild(segmentationRow(half, row));
            return;
        }
    }
}

template <class T>
void LeafHierarchyBuilding<T>::splitOffTooth(Matrix<int>& half,
                                             int depth,
                                             int first,
                                             int middle,
                                             int last,
                                             HierarchyTreeNode<T>& node,
                                             bool swapped)
{
    node.addChild(-1);
    std::cout << "############### pointe secondaire ###############\n";
    const std::vector<float> areas = computeMotherTeethArea(
        *this, curveIndex(half, first), curveIndex(half, middle), curveIndex(half, last));
    statusOf(half, middle).push_back(depth + 1);
    if (areas[0] > areas[1]) {
        updateHierarchyLoop(&half, depth, first, middle, &node, swapped);
        statusOf(half, last).push_back(depth + 1);
        updateHierarchyLoop(&half, depth + 1, middle, last, node.getChildren().back(), swapped);
    } else {
        statusOf(half, first).push_back(depth + 1);
        updateHierarchyLoop(&half, depth + 1, first, middle, node.getChildren().back(), swapped);
        updateHierarchyLoop(&half, depth, middle, last, &node, swapped);
    }
}

template <class T>
void LeafHierarchyBuilding<T>::updateHierarchyLoop(Matrix<int>* half,
                                                   const int& depth,
                                                   const int& first,
                                                   const int& last,
                                                   HierarchyTreeNode<T>* node,
                                                   const bool& swapped)
{
    const Widest widest = widestSinus(*half, first, last, swapped);
    if (!widest.found) {
        labelTooth(*half, depth, first, last, *node);
    } else if (widest.row == first) {
        return;
    } else if (widest.angle > limitAngle) {
        statusOf(*half, widest.row).push_back(depth);
        updateHierarchyLoop(half, depth, first, widest.row, node, swapped);
        updateHierarchyLoop(half, depth, widest.row, last, node, swapped);
    } else {
        splitOffTooth(*half, depth, first, widest.row, last, *node, swapped);
    }
}

template <class T>
Curve<float>
LeafHierarchyBuilding<T>::computeSubCurve(const Vertices<float>& curve, int i, int j) const
{
    const int low = std::min(i, j);
    const int span = std::max(i, j) - low;
    Curve<float> inner(curve, true);
    inner.setOrigin(low);
    Curve<float> outer = inner;
    outer.setOrigin(span);
    outer.setSize(curve.getSize() - span + 1, false);
    outer.setIndex(curve.getSize() - span, inner.getIndex(0));
    inner.removeOutside(0, span);
    return outer.length() < inner.length() ? outer : inner;
}

template <class T>
std::vector<float> LeafHierarchyBuilding<T>::computeMotherTeethArea(const Vertices<float>& curve,
                                                                    int first,
                                                                    int middle,
                                                                    int last) const
{
    return {closedArea(computeSubCurve(curve, first, middle), curve[last]),
            closedArea(computeSubCurve(curve, middle, last), curve[first])};
}

template class LeafHierarchyBuilding<float>;
