#include "shape/registration/polynomialwarp.h"

template <class T>
PolynomialWarp<T>::PolynomialWarp() = default;

template <class T>
PolynomialWarp<T>::~PolynomialWarp() = default;

template <class T>
void PolynomialWarp<T>::fit(const Shape<T>& source, const Shape<T>& target)
{
    const auto sample = this->displacements(
        source, target, "void PolynomialWarp<T>::fit(const Shape<T>&,const Shape<T>&)");
    const int space = source.getSpace();
    Matrix<T> steps(space, static_cast<int>(sample.steps.size()));
    for (int i = 0; i < steps.getSize2(); ++i) {
        steps.setColumn(i, sample.steps[static_cast<std::size_t>(i)]);
    }
    std::vector<Polynomial<T>> basis;
    Polynomial<T>::buildBasis(degree_, space, basis);
    Polynomial<T>::gramSchmidt(basis, sample.points, basis);
    polynomials_.assign(static_cast<std::size_t>(space), Polynomial<T>(degree_, space));
    for (int k = 0; k < space; ++k) {
        polynomials_[static_cast<std::size_t>(k)].approximate(basis, sample.points, steps[k]);
    }
    space_ = space;
    computeJacobianMatrix();
}

template <class T>
void PolynomialWarp<T>::computeJacobianMatrix()
{
    derivatives_.clear();
    for (const Polynomial<T>& polynomial : polynomials_) {
        derivatives_.emplace_back();
        for (int j = 0; j < space_; ++j) {
            derivatives_.back().push_back(polynomial.derivative(j));
        }
    }
    jacobian_.setSize(space_);
}

template <class T>
void PolynomialWarp<T>::apply(Vector<T>& x) const
{
    this->requirePoint(x, space_, "void PolynomialWarp<T>::apply(Vector<T>&) const");
    const Vector<T> start = x;
    for (int k = 0; k < space_; ++k) {
        x[k] += polynomials_[static_cast<std::size_t>(k)].eval(start);
    }
}

template <class T>
bool PolynomialWarp<T>::isValidAt(const Vector<T>& x) const
{
    this->requirePoint(x, space_, "bool PolynomialWarp<T>::isValidAt(const Vector<T>&) const");
    for (int i = 0; i < space_; ++i) {
        const std::vector<Polynomial<T>>& row = derivatives_[static_cast<std::size_t>(i)];
        for (int j = 0; j < space_; ++j) {
            jacobian_(i, j) = row[static_cast<std::size_t>(j)].eval(x) + (i == j ? T(1) : T(0));
        }
    }
    return jacobian_.det() > 0;
}

template class PolynomialWarp<float>;
template class PolynomialWarp<double>;
template class PolynomialWarp<long double>;
