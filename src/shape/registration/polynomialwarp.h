#pragma once

#include "numerics/polynomial.h"
#include "numerics/squarematrix.h"
#include "shape/registration/shapewarp.h"

#include <vector>

/// A warp whose displacements are polynomials of the coordinates, one for each coordinate, fitted
/// by least squares. Degree 1 gives affine motions.
///
/// One warp must not be used by two threads at a time, not even to move points.
template <class T>
class PolynomialWarp : public ShapeWarp<T>
{
public:
    PolynomialWarp();
    ~PolynomialWarp() override;

    /// The degree of the next fit, 1 at first.
    void setDegree(int degree) { degree_ = degree; }

    int getDegree() const { return degree_; }

    /// With fewer vertices than terms, or where they don't tell the terms apart, the lower terms
    /// are used, with a line on the standard error stream. Raises `SizeError` unless the shapes
    /// have one dimension and equally many vertices, at least one; errors as `Polynomial`.
    void fit(const Shape<T>& source, const Shape<T>& target) override;

    using ShapeWarp<T>::apply;
    /// Raises `ProgramError` before the first fit, `SizeError` for a point of another dimension.
    void apply(Vector<T>& x) const override;

    /// Whether the determinant of the warp's Jacobian is above 0. Errors as `apply`.
    bool isValidAt(const Vector<T>& x) const override;

private:
    void computeJacobianMatrix();

    int degree_ = 1;
    int space_ = 0;
    std::vector<Polynomial<T>> polynomials_;
    std::vector<std::vector<Polynomial<T>>> derivatives_;
    mutable SquareMatrix<T> jacobian_;
};

extern template class PolynomialWarp<float>;
extern template class PolynomialWarp<double>;
extern template class PolynomialWarp<long double>;
