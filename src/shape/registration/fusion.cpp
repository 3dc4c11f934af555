#include "shape/registration/fusion.h"

#include "image/values/colormap.h"
#include "shape/meshes/quadmesh.h"
#include "shape/registration/fusionmean.h"
#include "shape/registration/polynomialwarp.h"
#include "shape/registration/thinplatesplinewarp3d.h"
#include "shape/vertices/vertexdistance.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

/// Copies of sets, deleted at the end with their shapes.
template <class T>
class OwnedSets
{
public:
    OwnedSets() = default;
    OwnedSets(const OwnedSets&) = delete;
    OwnedSets& operator=(const OwnedSets&) = delete;

    ~OwnedSets()
    {
        for (const auto& set : sets_) {
            set->clear();
        }
    }

    ShapeSet<T>* add(ShapeSet<T>* set)
    {
        sets_.emplace_back(set);
        return set;
    }

private:
    std::vector<std::unique_ptr<ShapeSet<T>>> sets_;
};

/// Moves every shape: rotation first, then translation.
template <class T>
void moveShapes(const ShapeSet<T>& set,
                const Vector<T>& translation,
                const SquareMatrix<T>& rotation)
{
    for (int i = 0; i < set.getSize(); ++i) {
        if (set[i] != nullptr) {
            set[i]->multiply(rotation);
            set[i]->translate(translation);
        }
    }
}

template <class T>
std::vector<QuadMesh<T>*> meshesOf(const ShapeSet<T>& set)
{
    std::vector<QuadMesh<T>*> meshes;
    for (int i = 0; i < set.getSize(); ++i) {
        if (auto* mesh = dynamic_cast<QuadMesh<T>*>(set[i])) {
            meshes.push_back(mesh);
        }
    }
    return meshes;
}

/// Sums over many meshes are kept wider than the coordinates: their rounding is no distance.
template <class T>
using Wide = typename FusionMean<T>::Wide;

template <class T>
void requireEqualDimensions(const std::vector<QuadMesh<T>*>& meshes, const char* where)
{
    for (const QuadMesh<T>* mesh : meshes) {
        const QuadMesh<T>& first = *meshes.front();
        if (mesh->getHeight() != first.getHeight() || mesh->getWidth() != first.getWidth() ||
            mesh->getSpace() != first.getSpace()) {
            raise<SizeError>(where, "Incompatible mesh dimensions");
        }
    }
}

/// The squared distances of all pairs of places that the meshes have at one grid point, added up.
/// Of `k` places they are `k` times the squared distances from the mean, so that no pair has to be
/// visited.
template <class T>
Wide<T> pairDistances(const std::vector<QuadMesh<T>*>& meshes, int level, int column)
{
    const auto count = static_cast<Wide<T>>(meshes.size());
    const Vector<T>& first = (*meshes.front())[level][column];
    for (const QuadMesh<T>* mesh : meshes) {
        requireEqualSizes(first, (*mesh)[level][column]);
    }
    Wide<T> sum = 0;
    for (int c = 0; c < first.getSize(); ++c) {
        Wide<T> mean = 0;
        for (const QuadMesh<T>* mesh : meshes) {
            mean += (*mesh)[level][column][c];
        }
        mean /= count;
        for (const QuadMesh<T>* mesh : meshes) {
            const Wide<T> offset = (*mesh)[level][column][c] - mean;
            sum += offset * offset;
        }
    }
    return sum * count;
}

/// The levels of all meshes of a set, on their servers.
template <class T>
VertexStack<T> meshLevels(const ShapeSet<T>& set)
{
    VertexStack<T> levels;
    for (int i = 0; i < set.getSize(); ++i) {
        if (const auto* mesh = dynamic_cast<const QuadMesh<T>*>(set[i])) {
            levels.append(*mesh);
        }
    }
    return levels;
}

} // namespace

template <class T>
Fusion<T>::Fusion() = default;

template <class T>
Fusion<T>::~Fusion() = default;

template <class T>
void Fusion<T>::addShapeSet(ShapeSet<T>* set)
{
    shapeSets_.push_back(set);
    SquareMatrix<T> identity;
    identity.setIdentity(4);
    transformMatrices_.push_back(identity);
    referenceShapeSets_.push_back(set->referenceShapeSet());
    Vector<int> offsets;
    offsets.setZeros(referenceShapeSets_.back().getSize());
    offsets_.push_back(offsets);
}

template <class T>
void Fusion<T>::removeShapeSet(const ShapeSet<T>* set)
{
    const auto entry = std::find(shapeSets_.begin(), shapeSets_.end(), set);
    if (entry == shapeSets_.end()) {
        return;
    }
    const auto place = entry - shapeSets_.begin();
    shapeSets_.erase(entry);
    transformMatrices_.erase(transformMatrices_.begin() + place);
    referenceShapeSets_.erase(referenceShapeSets_.begin() + place);
    offsets_.erase(offsets_.begin() + place);
}

template <class T>
std::size_t Fusion<T>::pairCount() const
{
    return shapeSets_.empty() ? 0 : shapeSets_.size() * (shapeSets_.size() - 1) / 2;
}

template <class T>
const std::vector<ShapeSetCorrespondence<T>>& Fusion<T>::getCorrespondences() const
{
    if (correspondences_.size() != pairCount()) {
        correspondences_.clear();
        for (std::size_t i = 0; i < shapeSets_.size(); ++i) {
            for (std::size_t j = i + 1; j < shapeSets_.size(); ++j) {
                ShapeSetCorrespondence<T> pair;
                pair.firstShapeSet = static_cast<unsigned int>(i);
                pair.secondShapeSet = static_cast<unsigned int>(j);
                correspondences_.push_back(pair);
            }
        }
    }
    return correspondences_;
}

template <class T>
void Fusion<T>::patAlignment()
{
    for (int i = 0; i < getSize(); ++i) {
        const auto place = static_cast<std::size_t>(i);
        Vector<T> translation;
        SquareMatrix<T> rotation;
        referenceShapeSets_[place].computePAT(translation, rotation);
        combineTransformMatrix(i, translation, rotation);
        const ShapeSet<T>& set = *shapeSets_[place];
        for (int shape = 0; shape < set.getSize(); ++shape) {
            if (set[shape] != nullptr) {
                set[shape]->translate(translation);
                set[shape]->multiply(rotation);
            }
        }
    }
}

template <class T>
void Fusion<T>::amibRegistration(int rounds, bool matchFirst, bool useClosestPoints)
{
    for (int i = 1; matchFirst && i < getSize(); ++i) {
        ShapeSet<T>& set = referenceShapeSets_[static_cast<std::size_t>(i)];
        combineOffsets(i, set.matchSurfaces(referenceShapeSets_.front()));
    }
    for (int round = 0; round < rounds; ++round) {
        FusionMean<T> others(referenceShapeSets_);
        for (int i = 0; i < getSize(); ++i) {
            if (isCanceled()) {
                notifyCanceled("");
                return;
            }
            const ShapeSet<T>& references = referenceShapeSets_[static_cast<std::size_t>(i)];
            others.take(references);
            registerOnto(others, i, useClosestPoints);
            others.add(references);
        }
        computeGlobalRegistrationError(false);
        notifyProgressed(round + 1, rounds);
    }
}

template <class T>
void Fusion<T>::registerOnto(const FusionMean<T>& others, int i, bool useClosestPoints)
{
    const auto place = static_cast<std::size_t>(i);
    ShapeSet<T>& references = referenceShapeSets_[place];
    OwnedSets<T> owned;
    const ShapeSet<T>& mean = *owned.add(new ShapeSet<T>(others.meanLike(references)));
    if (mean.numVertices() == 0) {
        return;
    }
    combineOffsets(i, references.matchSurfaces(mean));
    Vector<T> translation;
    SquareMatrix<T> rotation;
    if (useClosestPoints) {
        references.computeICPLSRegistration(mean, translation, rotation);
    } else {
        references.computeLSRegistration(mean, translation, rotation);
    }
    combineTransformMatrix(i, translation, rotation);
    moveShapes(*shapeSets_[place], translation, rotation);
}

template <class T>
void Fusion<T>::warpOnto(const ShapeSet<T>& target, ShapeWarp<T>& warp)
{
    this->notifyStarted("");
    const VertexStack<T> goal = meshLevels(target);
    for (int i = 0; i < getSize(); ++i) {
        ShapeSet<T>& set = *shapeSets_[static_cast<std::size_t>(i)];
        set.matchSurfaces(target);
        warp.fit(meshLevels(set), goal);
        warp.apply(set);
        this->notifyProgressed(i + 1, getSize() + 1);
    }
    this->notifyFinished("");
}

template <class T>
void Fusion<T>::polynomialWarping(const ShapeSet<T>& target, int degree)
{
    PolynomialWarp<T> warp;
    warp.setDegree(degree);
    warpOnto(target, warp);
}

template <class T>
void Fusion<T>::tpsWarping(const ShapeSet<T>& target)
{
    ThinPlateSplineWarp3D<T> warp;
    warpOnto(target, warp);
}

template <class T>
void Fusion<T>::combineOffsets(int i, const Vector<int>& offsets)
{
    offsets_[static_cast<std::size_t>(i)] += offsets;
}

template <class T>
void Fusion<T>::combineTransformMatrix(int i,
                                       const Vector<T>& translation,
                                       const SquareMatrix<T>& rotation)
{
    SquareMatrix<T> motion;
    motion.setIdentity(4);
    motion.paste(0, 0, rotation);
    for (int c = 0; c < std::min(3, translation.getSize()); ++c) {
        motion(c, 3) = translation[c];
    }
    combineTransformMatrix(i, motion);
}

template <class T>
void Fusion<T>::combineTransformMatrix(int i, const SquareMatrix<T>& matrix)
{
    SquareMatrix<T>& former = transformMatrices_[static_cast<std::size_t>(i)];
    former = SquareMatrix<T>(matrix * former);
}

template <class T>
T Fusion<T>::computeGlobalRegistrationError(bool match)
{
    OwnedSets<T> copies;
    std::vector<ShapeSet<T>*> sets = shapeSets_;
    for (std::size_t i = 1; match && i < sets.size(); ++i) {
        sets[i] = copies.add(shapeSets_[i]->clone());
        sets[i]->matchSurfaces(*sets.front());
    }
    const T error = registrationError(sets);
    distances_.push_back(error);
    return error;
}

template <class T>
T Fusion<T>::registrationError(const std::vector<ShapeSet<T>*>& sets) const
{
    if (pairCount() == 0) {
        return 0;
    }
    Wide<T> sum = 0;
    Wide<T> vertices = 0;
    for (int i = 0; i < sets.front()->getSize(); ++i) {
        const auto* first = dynamic_cast<const QuadMesh<T>*>((*sets.front())[i]);
        if (first == nullptr) {
            continue;
        }
        vertices += static_cast<Wide<T>>(first->getSize());
        std::vector<QuadMesh<T>*> meshes;
        for (const ShapeSet<T>* set : sets) {
            auto* mesh = i < set->getSize() ? dynamic_cast<QuadMesh<T>*>((*set)[i]) : nullptr;
            if (mesh != nullptr) {
                meshes.push_back(mesh);
            }
        }
        requireEqualDimensions(meshes, "T Fusion<T>::computeGlobalRegistrationError(const bool)");
        for (int k = 0; k < first->getHeight(); ++k) {
            for (int j = 0; j < first->getWidth(); ++j) {
                sum += pairDistances(meshes, k, j);
            }
        }
        // With several meshes the sum so far is divided again at each: the error weighs the first
        // meshes less.
        sum /= static_cast<Wide<T>>(pairCount());
    }
    return vertices > 0 ? static_cast<T>(std::sqrt(sum / vertices)) : T(0);
}

template <class T>
std::vector<Matrix<T>> Fusion<T>::computeNormalizationError() const
{
    const char* where = "std::vector<Matrix<T>> Fusion<T>::computeNormalizationError() const";
    std::vector<std::vector<QuadMesh<T>*>> meshes;
    for (const ShapeSet<T>* set : shapeSets_) {
        meshes.push_back(meshesOf(*set));
        if (meshes.back().size() != meshes.front().size()) {
            raise<SizeError>(where, "The sets differ in their number of meshes");
        }
    }
    std::vector<Matrix<T>> errors;
    for (std::size_t k = 0; pairCount() > 0 && k < meshes.front().size(); ++k) {
        std::vector<QuadMesh<T>*> atPlace;
        for (const std::vector<QuadMesh<T>*>& ofSet : meshes) {
            atPlace.push_back(ofSet[k]);
        }
        requireEqualDimensions(atPlace, where);
        Matrix<T> error(atPlace.front()->getHeight(), atPlace.front()->getWidth());
        for (int i = 0; i < error.getSize1(); ++i) {
            for (int j = 0; j < error.getSize2(); ++j) {
                error(i, j) = static_cast<T>(
                    std::sqrt(pairDistances(atPlace, i, j) / static_cast<Wide<T>>(pairCount())));
            }
        }
        errors.push_back(error);
    }
    return errors;
}

template <class T>
void Fusion<T>::computeColorMaps(const std::vector<Matrix<T>>& matrices)
{
    const Colormap colormap = Colormap::fire();
    for (const ShapeSet<T>* set : shapeSets_) {
        const std::vector<QuadMesh<T>*> meshes = meshesOf(*set);
        if (meshes.size() != matrices.size()) {
            raise<SizeError>("void Fusion<T>::computeColorMaps(const std::vector<Matrix<T>>&)",
                             "There is not one matrix for each mesh");
        }
        for (std::size_t k = 0; k < meshes.size(); ++k) {
            meshes[k]->buildVertexColors(matrices[k], colormap);
        }
    }
}

template class Fusion<float>;
template class Fusion<double>;
template class Fusion<long double>;
