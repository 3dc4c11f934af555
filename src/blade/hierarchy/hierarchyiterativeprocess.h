#pragma once

#include "blade/hierarchy/hierarchyprocess.h"
#include "numerics/matrix.h"

/// The iterative hierarchy: a sinus that lies off the general line of the leaf becomes secondary.
/// That line is a strongly smoothed copy of the contour. Round by round, the sinus whose angle to its
/// primary neighbours falls most below the angle of the line is demoted, until none falls; then the
/// tips follow the sinuses around them. Each landmark has one label in the end.
///
/// The sinus table has a column a sinus, in contour order, and four rows: the angle to the
/// neighbours and the angle of the smooth line, both in degrees, their difference, and 1 for a
/// primary sinus or 0 for a demoted one. The first `N + 1` columns are those of the lower half. The
/// outermost sinus of each half and the one next to the apex are always primary.
///
/// The tip table has a row a landmark in contour order: contour index, code (0 a primary sinus, 1 a
/// tip, 2 a secondary sinus, 3 the apex), distance from the base of its tooth, and 1 for a primary
/// tip.
class HierarchyIterativeProcess : public HierarchyProcess
{
public:
    HierarchyIterativeProcess() = default;

    /// The stringency: the share of the smooth angle by which a sinus must fall below it to be
    /// secondary. The smaller, the more are.
    void setTolerance(float value) { tolerance = value; }

    float getTolerance() const { return tolerance; }

    /// Works on one slice, for whose landmarks `run` made the models; always returns the empty
    /// text. A slice that lacks a landmark, or has no secondary sinus, is left alone.
    std::string process(int slice) override;

    /// The contour at half of its Fourier fidelity, and at least two frequencies.
    Curve<float> createSmoothBlade() const;

    /// The angle in degrees, 0 to 360, at `centre`; on the contour a bulge gives less than 180. NaN
    /// where a neighbour is in the place of the centre.
    float calculCurvature(const Vector<float>& centre,
                          const Vector<float>& previous,
                          const Vector<float>& next) const;

    /// Fills row 1 with the angles over `h` vertices of the smooth curve on both sides.
    void calculateSmoothCurvature(const Vertices<float>& smooth, Matrix<float>& table, int h) const;

    // Fill the columns of a half in row 0. A half of one sinus has the junction and the apex as
    // that one's neighbours.
    void
    calculatHalfLeafCurvature1(const Vertices<float>& lower, int N, Matrix<float>& table) const;
    void
    calculatHalfLeafCurvature2(const Vertices<float>& upper, int N, Matrix<float>& table) const;

    /// The nearest primary column before, or after, a column; the outermost one if there is none.
    int previousSinus(const Matrix<float>& table, int column) const;
    int nextSinus(const Matrix<float>& table, int column) const;

    /// Demotes the candidate of the smallest difference, the first among equals; at most one.
    void removeSecondarySinus(Matrix<float>& table, int N) const;

    /// The sinuses as they are stored, in contour order, below the apex and from it on. Returns the
    /// position of the last one below, 0 without one.
    int split(Vertices<float>& lower, Vertices<float>& upper) const;

    /// The secondary sinuses, those of the lower half first; none if a half has no sinus.
    Vertices<float> computeToothHierarchy(const Curve<float>& smooth, int h) const;

    /// Moves the sinuses of the list from the primary to the secondary item.
    void updateSecondaryStructure(const Vertices<float>& secondary);

    /// The tip table of the items, with neither distance nor flag.
    Matrix<int> buildMatrix() const;

    /// Fills in the distances, in whole units, of the tips between two primary sinuses.
    void computeProjectionOnMatrix(Matrix<int>& table) const;

    /// Distance of the contour's vertex `tip` to the middle between two others.
    float computeDistanceTips(int first, int tip, int last) const;

    /// Leaves one primary tip between two primary sinuses, the one farthest from the middle of
    /// their chord; the others become secondary.
    void updatePeaks();

private:
    const Vector<float>& junction(int rank) const;

    float tolerance = 0.0f;
};
