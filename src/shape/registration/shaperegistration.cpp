// The principal axes, registration and deformations of `Shape`.

#include "numerics/squarematrix.h"
#include "shape/curves/curvestack.h"
#include "shape/vertices/shape.h"
#include "shape/vertices/shapeset.h"
#include "shape/vertices/vertexpointers.h"
#include "system/exception.h"

namespace {

/// The rigid motion of `points` about `centre` onto `targets` about `targetCentre`.
template <class T>
void registerPoints(const std::vector<const Vector<T>*>& points,
                    const std::vector<const Vector<T>*>& targets,
                    const Vector<T>& centre,
                    const Vector<T>& targetCentre,
                    Vector<T>& translation,
                    SquareMatrix<T>& rotation)
{
    if (targets.size() < points.size()) {
        raise<SizeError>("void Shape<T>::computeLSRegistration(...) const",
                         "The target contains less vertices than this shape");
    }
    const int space = centre.getSize();
    SquareMatrix<T> covariance(space);
    covariance.setZeros();
    for (std::size_t i = 0; i < points.size(); ++i) {
        covariance += (*points[i] - centre).outerProduct(*targets[i] - targetCentre);
    }
    SquareMatrix<T> u;
    SquareMatrix<T> v;
    const Vector<T> values = covariance.svd(&u, &v);
    SquareMatrix<T> best = v * u;
    if (best.det() < 0) {
        // The direction of the least singular value, which `svd` does not sort to the end, is the one
        // that a reflection costs least; a plane shape has no extent along it.
        const int least = values.minPos();
        SquareMatrix<T> mirror;
        mirror.setIdentity(space);
        mirror(least, least) = SquareMatrix<T>(u * v).det();
        best = v * mirror * u;
    }
    translation = targetCentre - best * centre;
    rotation = best;
}

} // namespace

template <class T>
SquareMatrix<T> Shape<T>::inertia() const
{
    Vector<T> centre;
    return inertia(centre);
}

template <class T>
SquareMatrix<T> Shape<T>::inertia(Vector<T>& centre) const
{
    const int space = getSpace();
    SquareMatrix<T> scatter(space);
    scatter.setZeros();
    if (getSize() == 0) {
        return scatter;
    }
    centre = cog();
    for (ConstVertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        const Vector<T> offset = *walk.current() - centre;
        for (int i = 0; i < space; ++i) {
            for (int j = 0; j < space; ++j) {
                scatter(i, j) += offset[i] * offset[j];
            }
        }
    }
    return scatter;
}

template <class T>
SquareMatrix<T> Shape<T>::principalAxes() const
{
    Vector<T> eigenvalues;
    return principalAxes(eigenvalues);
}

template <class T>
SquareMatrix<T> Shape<T>::principalAxes(Vector<T>& eigenvalues) const
{
    SquareMatrix<T> covariance = inertia();
    if (getSize() > 0) {
        covariance /= static_cast<T>(getSize());
    }
    SquareMatrix<T> axes;
    covariance.eigenJacobi(eigenvalues, axes, true);
    return axes;
}

template <class T>
void Shape<T>::computePAT(Vector<T>& translation, SquareMatrix<T>& rotation) const
{
    Vector<T> centre = cog();
    Vector<T> eigenvalues;
    SquareMatrix<T> axes;
    inertia(centre).eigenJacobi(eigenvalues, axes, true);
    rotation = axes.transpose();
    translation = -centre;
}

template <class T>
void Shape<T>::applyPAT()
{
    Vector<T> translation;
    SquareMatrix<T> rotation;
    computePAT(translation, rotation);
    translate(translation);
    multiply(rotation);
}

template <class T>
void Shape<T>::computeLSRegistration(Vector<T>& translation,
                                     SquareMatrix<T>& rotation,
                                     const Shape& target) const
{
    registerPoints(vertexPointers(*this), vertexPointers(target), cog(), target.cog(), translation,
                   rotation);
}

template <class T>
void Shape<T>::computeLSRegistration(Vector<T>& translation,
                                     SquareMatrix<T>& rotation,
                                     const Shape& target,
                                     const std::vector<Vector<unsigned int>>& correspondences) const
{
    std::vector<const Vector<T>*> targets;
    targets.reserve(correspondences.size());
    for (const Vector<unsigned int>& locator : correspondences) {
        targets.push_back(&target[locator]);
    }
    registerPoints(vertexPointers(*this), targets, cog(), target.cog(), translation, rotation);
}

template <class T>
CurveStack<T> Shape<T>::deformations(const Shape& shape) const
{
    if (getSpace() != shape.getSpace() || getSize() != shape.getSize()) {
        raise<SizeError>("CurveStack<T> Shape<T>::deformations(const Shape&) const",
                         "Space or size mismatch between shapes");
    }
    CurveStack<T> steps(getSpace(), getSize(), 2, 0, 0, true);
    ConstVertexIterator<T> other = shape.vertexIterator();
    ConstVertexIterator<T> walk = vertexIterator();
    for (int i = 0; walk.current() != nullptr && other.current() != nullptr; ++i) {
        steps[i][0] = *walk.current();
        steps[i][1] = *other.current();
        walk++;
        other++;
    }
    return steps;
}

#define INSTANTIATE_SHAPE_REGISTRATION(T)                                                          \
    template SquareMatrix<T> Shape<T>::inertia() const;                                            \
    template SquareMatrix<T> Shape<T>::inertia(Vector<T>&) const;                                  \
    template SquareMatrix<T> Shape<T>::principalAxes() const;                                      \
    template SquareMatrix<T> Shape<T>::principalAxes(Vector<T>&) const;                            \
    template void Shape<T>::computePAT(Vector<T>&, SquareMatrix<T>&) const;                        \
    template void Shape<T>::applyPAT();                                                            \
    template void Shape<T>::computeLSRegistration(Vector<T>&, SquareMatrix<T>&, const Shape<T>&)   \
        const;                                                                                     \
    template void Shape<T>::computeLSRegistration(Vector<T>&, SquareMatrix<T>&, const Shape<T>&,   \
                                                  const std::vector<Vector<unsigned int>>&) const; \
    template CurveStack<T> Shape<T>::deformations(const Shape<T>&) const;

INSTANTIATE_SHAPE_REGISTRATION(int)
INSTANTIATE_SHAPE_REGISTRATION(float)
INSTANTIATE_SHAPE_REGISTRATION(double)
INSTANTIATE_SHAPE_REGISTRATION(long double)
