#pragma once

#include "numerics/matrix.h"
#include "shape/registration/shapewarp.h"

#include <memory>

/// A warp that moves the vertices of the source exactly to those of the target: an affine motion
/// plus, for each vertex, a radial function of the distance from it. The derived class tells the
/// function.
///
/// Source: F. L. Bookstein, Principal warps: thin-plate splines and the decomposition of
/// deformations, IEEE Transactions on Pattern Analysis and Machine Intelligence 11, 1989.
template <class T>
class RadialBasisFunctionWarp : public ShapeWarp<T>
{
public:
    RadialBasisFunctionWarp();
    ~RadialBasisFunctionWarp() override;

    /// Costs the cube of the number of vertices. Raises `SizeError` unless the shapes have one
    /// dimension and equally many vertices, at least one, and `MathError` where these coincide or
    /// lie in one plane (on one line of a plane); the warp then stays as it was.
    void fit(const Shape<T>& source, const Shape<T>& target) override;

    using ShapeWarp<T>::apply;
    /// Adds `eval` to the point. Raises `ProgramError` before the first fit, `SizeError` for a
    /// point of another dimension.
    void apply(Vector<T>& x) const override;

    /// The basis function of two points; symmetrical.
    virtual T rbf(const Vector<T>& a, const Vector<T>& b) const = 0;

    /// How far the warp moves a point; costs the number of control points. Errors as `apply`.
    Vector<T> eval(const Vector<T>& x) const;

private:
    std::unique_ptr<Shape<T>> controlPoints;
    Matrix<T> weights_;
};

extern template class RadialBasisFunctionWarp<float>;
extern template class RadialBasisFunctionWarp<double>;
extern template class RadialBasisFunctionWarp<long double>;
