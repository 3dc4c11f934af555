#pragma once

#include "blade/hierarchy/hierarchytreenode.h"
#include "numerics/matrix.h"
#include "shape/curves/curve.h"

#include <vector>

/// Finds for each sinus and tip of a leaf how deep it lies: 1 for the teeth of the leaf, 2 for the
/// teeth that those carry, and so on. It is itself a copy of the contour.
///
/// The leaf segmentation has a row a landmark, sorted by its first column: contour index and code,
/// 0 for a junction, 1 the apex, 2 a sinus, 3 a tip. The walk raises the code of a tip to its depth
/// plus 2, and lists the depths of each sinus. Each half is walked recursively: of the sinuses
/// between two bounding ones the one of the widest angle to them either is of this depth and splits
/// the range, or begins a tooth on a tooth. The smaller side of such a sinus goes one level down,
/// together with its outer bounding sinus, which so has two depths.
///
/// A half-leaf matrix has a row a landmark from the apex towards the petiole: contour index, code,
/// and row in the leaf segmentation.
template <class T>
class LeafHierarchyBuilding : public Vertices<float>
{
public:
    LeafHierarchyBuilding();

    /// Takes a copy of the contour, closed, with a positive `twiceArea(0, 1)`.
    void setCurve(const Vertices<float>& curve);

    /// A list that shares the vertices.
    Vertices<float> getCurve() const { return *this; }

    /// Raises `SizeError` unless there are two columns.
    void setLeafSegmentation(const Matrix<int>& segmentation);

    Matrix<int> getLeafSegmentation() const { return leafSegmentation; }

    /// The depths of each row of the segmentation, empty but for sinuses that the walk reached.
    std::vector<std::vector<int>> getStatus() const { return status; }

    /// The angle in radians above which a sinus is of the depth of its range; 2.3561945 at first.
    void setLimitAngle(float radians) { limitAngle = radians; }

    float getLimitAngle() const { return limitAngle; }

    /// Contour index of the first apex row, 0 without one.
    int findApexIdx() const;

    /// The landmarks from the apex down (`first`) and up (`second`) the contour, up to the next
    /// junction, which is left out, and so are those in the place of the apex. Of several landmarks
    /// in one place the first one enters.
    void separateHalfLeaves(Matrix<int>* first, Matrix<int>* second) const;

    /// The positions of the first and of the last sinus of a half; empty without one.
    std::vector<int> findExtremeSinusesIds(const Matrix<int>& half) const;

    /// Walks both halves. The roots take the record of the walk.
    void updateHierarchy(HierarchyTreeNode<T>& rootFirst, HierarchyTreeNode<T>& rootSecond);

    /// Walks the rows between the two sinus rows `first` and `last`. `swapped` tells the half that
    /// is walked up the contour. A range in which all sinuses lie in the place of a bounding one
    /// has no angle, and ends there. Tells each tooth on a tooth on the standard output.
    void updateHierarchyLoop(Matrix<int>* half,
                             const int& depth,
                             const int& first,
                             const int& last,
                             HierarchyTreeNode<T>* node,
                             const bool& swapped);

    /// The shorter one of the two open stretches of a closed curve between two vertices, with both.
    /// It shares the vertices.
    Curve<float> computeSubCurve(const Vertices<float>& curve, int i, int j) const;

    /// The signed areas of the tooth on each side of the sinus `middle`, closed over the bounding
    /// sinus of the other side.
    std::vector<float>
    computeMotherTeethArea(const Vertices<float>& curve, int first, int middle, int last) const;

private:
    struct Widest
    {
        int row;
        float angle;
        bool found;
    };

    Matrix<int> walkHalf(int direction) const;

    int segmentationRow(const Matrix<int>& half, int row) const { return half[row][2]; }

    int curveIndex(const Matrix<int>& half, int row) const;
    std::vector<int>& statusOf(const Matrix<int>& half, int row);
    float angleAt(const Matrix<int>& half, int row, int first, int last, bool swapped) const;
    Widest widestSinus(const Matrix<int>& half, int first, int last, bool swapped) const;
    void
    labelTooth(const Matrix<int>& half, int depth, int first, int last, HierarchyTreeNode<T>& node);
    void splitOffTooth(Matrix<int>& half,
                       int depth,
                       int first,
                       int middle,
                       int last,
                       HierarchyTreeNode<T>& node,
                       bool swapped);

    Matrix<int> leafSegmentation;
    std::vector<std::vector<int>> status;
    float limitAngle = 2.3561945f;
};

extern template class LeafHierarchyBuilding<float>;
