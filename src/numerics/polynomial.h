#pragma once

#include "numerics/vector.h"

#include <ostream>
#include <string>
#include <vector>

/// A polynomial of total degree at most `degree` in `dimension` variables.
///
/// The terms are the leaves of a tree: a node of level `k` fixes the exponents of the first `k`
/// variables, and its children, the exponents of the next one, lie side by side from the largest
/// that the degree leaves down to 0. So the coefficients are ordered by descending exponents, the
/// first variable first, the constant last; for two variables of degree 2 as x2, xy, x, y2, y, 1.
///
/// A polynomial without variables has no terms. `eval` uses a buffer of the object, so that one
/// polynomial must not be evaluated by two threads at a time.
template <class T>
class Polynomial
{
public:
    /// All coefficients 0. `ValueError` for a negative number, `SizeError` for more terms than can
    /// be counted.
    Polynomial(int degree, int dimension);

    /// All coefficients become 0. Errors as the constructor.
    void reset(int degree, int dimension);

    /// `reset` with one value changed: the coefficients are lost.
    void setDegree(int degree);
    void setDimension(int dimension);

    int getDegree() const { return degree_; }

    int getDimension() const { return dimension_; }

    /// The binomial coefficient C(degree + dimension, dimension), 0 without variables.
    int numTerms() const;

    /// Index of the term with these exponents, one per variable, among the coefficients.
    /// `RangeError` for a negative exponent or a sum above the degree.
    int locate(const int* exponents) const;

    /// The same for exponents as text, "2,0,1". `SizeError` unless there is one per variable;
    /// errors as `StringTools::toInt`.
    int locate(const std::string& exponents) const;

    /// Errors as `locate`; `SizeError` without variables.
    void setCoeff(const int* exponents, T value);
    void setCoeff(const std::string& exponents, T value);
    T getCoeff(const int* exponents) const;
    T getCoeff(const std::string& exponents) const;

    /// The value at `x`, by a nested Horner scheme; 0 without variables. `SizeError` if `x` has
    /// fewer elements than there are variables; further ones are ignored.
    T eval(const Vector<T>& x) const;

    void operator*=(T factor);
    void operator/=(T divisor);
    Polynomial operator*(T factor) const;
    Polynomial operator/(T divisor) const;

    /// Coefficient by coefficient; `SizeError` unless degree and dimension agree.
    void operator+=(const Polynomial& other);
    void operator-=(const Polynomial& other);
    Polynomial operator+(const Polynomial& other) const;
    Polynomial operator-(const Polynomial& other) const;

    /// The partial derivative by the variable of this index, of a degree lower by one; that of a
    /// constant is the zero polynomial of degree 0. `RangeError` for a variable that does not
    /// exist.
    Polynomial derivative(int variable) const;

    /// Sum over the points of the product of both values. Errors as `eval`.
    T innerProduct(const Polynomial& other, const std::vector<Vector<T>>& points) const;

    /// All monomials, the constant first.
    static void buildBasis(int degree, int dimension, std::vector<Polynomial>& basis);

    /// Makes `out` polynomials that are orthogonal on the points: from each polynomial of the basis
    /// its projections on those before are taken away. One that vanishes on the points stays in
    /// `out`, but the later ones pass it by; their number is told on the standard error stream.
    /// `out` may be `basis`. `SizeError` unless all have one degree and one dimension, which is
    /// that of all points.
    ///
    /// Source: Golub and Van Loan, Matrix Computations, section 5.2.8 (modified Gram-Schmidt).
    static void gramSchmidt(const std::vector<Polynomial>& basis,
                            const std::vector<Vector<T>>& points,
                            std::vector<Polynomial>& out);

    /// Becomes the projection of the values at the points on a basis that is orthogonal there; the
    /// polynomials that vanish on the points take no part. `SizeError` for an empty basis or unless
    /// there is one value per point.
    void approximate(const std::vector<Polynomial>& basis,
                     const std::vector<Vector<T>>& points,
                     const Vector<T>& values);

    /// Becomes the least-squares fit of this degree to the values. Where the points don't tell
    /// terms apart the lower one is kept. `SizeError` without points; errors as above and as
    /// `gramSchmidt`.
    void approximate(const std::vector<Vector<T>>& points, const Vector<T>& values, int degree);

    /// Writes degree, dimension and coefficients, for debugging.
    void print(const std::string& title, std::ostream& stream) const;

private:
    void create();
    int firstLeaf(int level, int node) const;
    void requireLike(const Polynomial& other, const char* where) const;

    int degree_;
    int dimension_;
    Vector<T> coefficients_;
    mutable Vector<T> scratch_;
    std::vector<int> levelCounts;
    std::vector<std::vector<int>> levelExponents;
    std::vector<std::vector<int>> firstChild;
};

extern template class Polynomial<float>;
extern template class Polynomial<double>;
extern template class Polynomial<long double>;
