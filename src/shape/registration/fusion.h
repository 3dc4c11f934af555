#pragma once

#include "numerics/matrix.h"
#include "numerics/squarematrix.h"
#include "shape/registration/shapesetcorrespondence.h"
#include "shape/vertices/shapeset.h"
#include "system/progresssubject.h"

#include <vector>

template <class T>
class FusionMean;
template <class T>
class ShapeWarp;

/// Registers several shape sets onto each other by least squares. The sets are moved in place; they
/// are not owned. Quad meshes at equal entries of the sets correspond, grid point by grid point.
template <class T>
class Fusion : public ProgressSubject
{
public:
    Fusion();
    ~Fusion() override;

    void addShapeSet(ShapeSet<T>* set);

    /// Removes the first entry of the set with all that belongs to it; silent if there is none.
    void removeShapeSet(const ShapeSet<T>* set);

    /// Number of sets.
    int getSize() const { return static_cast<int>(shapeSets_.size()); }

    const std::vector<ShapeSet<T>*>& getShapeSets() const { return shapeSets_; }

    /// One for each pair of sets, in the order (0, 1), (0, 2), ... (1, 2), ...
    const std::vector<ShapeSetCorrespondence<T>>& getCorrespondences() const;

    /// The registration errors computed so far.
    const std::vector<T>& getDistances() const { return distances_; }

    /// For each set the shifts of its reference shapes, added up.
    const std::vector<Vector<int>>& getOffsets() const { return offsets_; }

    /// For each set the motions that it has made, as one matrix in homogeneous form, 4 x 4.
    const std::vector<SquareMatrix<T>>& getTransformMatrices() const { return transformMatrices_; }

    /// Brings each set to the principal axes of its reference shapes, which must be stacks
    /// (standard bad cast error). The motion is the translation, then the rotation; its matrix
    /// tells the two as they are, not as if the rotation came first.
    void patAlignment();

    /// Generalized Procrustes alignment: in each round each set is registered onto the mean of the
    /// reference meshes of all others, as they then stand, by grid point or by nearest vertex. With
    /// `matchFirst` the closed reference meshes of the other sets are matched to those of the first
    /// set before. Reference shapes must be meshes, equally many in each set, of equal dimensions
    /// (`SizeError`) and not shared between sets; a set without others stays. A round costs as much
    /// as the sets have vertices; the mean is summed in a wider type than theirs, and anew in each
    /// round. Each round adds to `getDistances` and reports progress; cancellation is tested before
    /// each set, leaves the sets as far as they have come, and is reported.
    ///
    /// Source: J. C. Gower, Generalized Procrustes analysis, Psychometrika 40, 1975.
    void amibRegistration(int rounds, bool matchFirst, bool useClosestPoints);

    /// How far the sets lie apart, place by place: for each mesh of the first set a matrix, whose
    /// rows are the levels, of the root mean squared distance of the corresponding grid points over
    /// all pairs of sets. Empty without pairs. Raises `SizeError` where a set lacks a mesh that the
    /// first one has, or meshes differ in dimensions.
    std::vector<Matrix<T>> computeNormalizationError() const;

    /// Colours the meshes of all sets by such matrices, one for each mesh of a set, from black for
    /// the smallest to white for the largest value of each matrix. Raises `SizeError` for another
    /// number of matrices than a set has meshes, or as `QuadMesh::buildVertexColors`; the meshes
    /// before the fault are coloured then.
    void computeColorMaps(const std::vector<Matrix<T>>& matrices);

    /// Warps each set onto the target: its meshes are matched to those of the target, a polynomial
    /// warp of this degree is fitted to all their vertices, and all shapes of the set are moved by
    /// it. Reports progress after each set. The meshes must be as many, and have as many vertices,
    /// as those of the target; errors as `QuadMesh::match` and `PolynomialWarp`.
    void polynomialWarping(const ShapeSet<T>& target, int degree);

    /// The same with thin-plate splines, which bring the meshes' vertices exactly to the target's.
    /// Costs, for each set, the cube of its number of vertices. Errors as `QuadMesh::match` and
    /// `RadialBasisFunctionWarp`.
    void tpsWarping(const ShapeSet<T>& target);

    /// Adds shifts, one per reference shape, to those of set `i`; raises `SizeError` for another
    /// number.
    void combineOffsets(int i, const Vector<int>& offsets);

    /// Puts a further motion, rotation before translation, in front of the matrix of set `i`.
    void
    combineTransformMatrix(int i, const Vector<T>& translation, const SquareMatrix<T>& rotation);
    void combineTransformMatrix(int i, const SquareMatrix<T>& matrix);

    /// Root mean squared distance of corresponding grid points over all pairs of sets, which is
    /// also added to `getDistances`; 0 without pairs or meshes. With `match` the closed meshes are
    /// first matched to those of the first set, on copies. Raises `SizeError` where meshes at one
    /// place differ in dimensions.
    T computeGlobalRegistrationError(bool match);

private:
    std::size_t pairCount() const;
    void registerOnto(const FusionMean<T>& others, int i, bool useClosestPoints);
    void warpOnto(const ShapeSet<T>& target, ShapeWarp<T>& warp);
    T registrationError(const std::vector<ShapeSet<T>*>& sets) const;

    std::vector<ShapeSet<T>*> shapeSets_;
    std::vector<ShapeSet<T>> referenceShapeSets_;
    std::vector<Vector<int>> offsets_;
    std::vector<SquareMatrix<T>> transformMatrices_;
    // Made when they are asked for: they are as many as the square of the sets.
    mutable std::vector<ShapeSetCorrespondence<T>> correspondences_;
    std::vector<T> distances_;
};

extern template class Fusion<float>;
extern template class Fusion<double>;
extern template class Fusion<long double>;
