#include "numerics/polynomial.h"

#include "system/exception.h"
#include "system/stringtools.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <numeric>

namespace {

/// C(degree + dimension, dimension); the rounding makes it exact as far as an `int` reaches.
double termCount(int degree, int dimension)
{
    if (dimension == 0) {
        return 0;
    }
    const int smaller = std::min(degree, dimension);
    const double larger = std::max(degree, dimension);
    double logarithm = 0;
    for (int i = 1; i <= smaller; ++i) {
        logarithm += std::log(larger + i) - std::log(static_cast<double>(i));
    }
    return std::exp(logarithm) + 0.5;
}

void requireCountable(int degree, int dimension)
{
    const char* where = "Polynomial<T>::Polynomial(const int,const int)";
    if (degree < 0 || dimension < 0) {
        raise<ValueError>(where, "Negative degree or dimension");
    }
    if (!(termCount(degree, dimension) < std::numeric_limits<int>::max())) {
        raise<SizeError>(where, "Too many terms");
    }
}

/// All of one degree and one dimension.
template <class T>
void requireSample(const std::vector<Polynomial<T>>& basis, const std::vector<Vector<T>>& points)
{
    const char* where = "void Polynomial<T>::gramSchmidt(...)";
    for (const Polynomial<T>& polynomial : basis) {
        if (polynomial.getDegree() != basis.front().getDegree()) {
            raise<SizeError>(where, "Degree mismatch");
        }
        if (polynomial.getDimension() != basis.front().getDimension()) {
            raise<SizeError>(where, "Dimension mismatch");
        }
    }
    for (const Vector<T>& point : points) {
        if (point.getSize() != points.front().getSize()) {
            raise<SizeError>(where, "Size mismatch");
        }
    }
    if (!basis.empty() && !points.empty() &&
        points.front().getSize() != basis.front().getDimension()) {
        raise<SizeError>(where, "Dimension mismatch");
    }
}

template <class T>
Vector<T> valuesOn(const Polynomial<T>& polynomial, const std::vector<Vector<T>>& points)
{
    Vector<T> values(static_cast<int>(points.size()));
    for (int j = 0; j < values.getSize(); ++j) {
        values[j] = polynomial.eval(points[static_cast<std::size_t>(j)]);
    }
    return values;
}

/// Orthogonalises and returns how many polynomials vanish on the points.
template <class T>
int orthogonalise(std::vector<Polynomial<T>>& polynomials,
                  const std::vector<Vector<T>>& points,
                  T epsilon)
{
    const std::size_t size = polynomials.size();
    std::vector<Vector<T>> rows(size);
    std::vector<T> norms(size, T(0));
    int discarded = 0;
    for (std::size_t i = 0; i < size; ++i) {
        rows[i] = valuesOn(polynomials[i], points);
        for (std::size_t j = 0; j < i; ++j) {
            if (norms[j] > epsilon) {
                const T share = rows[i].scalarProduct(rows[j]) / norms[j];
                polynomials[i] -= polynomials[j] * share;
                rows[i] -= rows[j] * share;
            }
        }
        norms[i] = rows[i].snorm();
        discarded += norms[i] > epsilon ? 0 : 1;
    }
    return discarded;
}

} // namespace

template <class T>
Polynomial<T>::Polynomial(int degree, int dimension)
    : degree_(degree)
    , dimension_(dimension)
{
    requireCountable(degree, dimension);
    create();
}

template <class T>
void Polynomial<T>::create()
{
    const int terms = numTerms();
    coefficients_.setZeros(terms);
    scratch_.setSize(terms);
    levelCounts.clear();
    levelExponents.clear();
    firstChild.clear();
    if (dimension_ == 0) {
        return;
    }
    levelCounts.push_back(1);
    levelExponents.push_back({0});
    std::vector<int> used = {0};
    for (int k = 0; k < dimension_; ++k) {
        const long long count =
            (static_cast<long long>(degree_) + k + 1) * levelCounts.back() / (k + 1);
        auto next = static_cast<std::size_t>(count);
        std::vector<int> exponents(next);
        std::vector<int> usedBelow(next);
        std::vector<int> children(used.size());
        for (std::size_t node = used.size(); node-- > 0;) {
            for (int exponent = 0; exponent <= degree_ - used[node]; ++exponent) {
                --next;
                exponents[next] = exponent;
                usedBelow[next] = used[node] + exponent;
            }
            children[node] = static_cast<int>(next);
        }
        levelCounts.push_back(static_cast<int>(count));
        levelExponents.push_back(std::move(exponents));
        firstChild.push_back(std::move(children));
        used = std::move(usedBelow);
    }
    firstChild.emplace_back(used.size());
    std::iota(firstChild.back().begin(), firstChild.back().end(), 0);
}

template <class T>
void Polynomial<T>::reset(int degree, int dimension)
{
    if (degree == degree_ && dimension == dimension_) {
        coefficients_.setZeros();
        return;
    }
    *this = Polynomial(degree, dimension);
}

template <class T>
void Polynomial<T>::setDegree(int degree)
{
    reset(degree, dimension_);
}

template <class T>
void Polynomial<T>::setDimension(int dimension)
{
    reset(degree_, dimension);
}

template <class T>
int Polynomial<T>::numTerms() const
{
    return static_cast<int>(termCount(degree_, dimension_));
}

template <class T>
int Polynomial<T>::locate(const int* exponents) const
{
    const char* where = "int Polynomial<T>::locate(const int*) const";
    if (dimension_ == 0) {
        raise<SizeError>(where, "A polynomial without variables has no terms");
    }
    int left = degree_;
    int node = 0;
    for (int k = 0; k < dimension_; ++k) {
        if (exponents[k] < 0 || exponents[k] > left) {
            raise<RangeError>(where, "Exponents out of range");
        }
        node = firstChild[static_cast<std::size_t>(k)][static_cast<std::size_t>(node)] + left -
               exponents[k];
        left -= exponents[k];
    }
    return node;
}

template <class T>
int Polynomial<T>::locate(const std::string& exponents) const
{
    std::vector<int> numbers;
    for (const std::string& piece : StringTools::tokenize(exponents, ",")) {
        numbers.push_back(StringTools::toInt(piece));
    }
    if (static_cast<int>(numbers.size()) != dimension_) {
        raise<SizeError>("int Polynomial<T>::locate(const string&) const",
                         "The number of exponents differs from the dimension");
    }
    return locate(numbers.data());
}

template <class T>
void Polynomial<T>::setCoeff(const int* exponents, T value)
{
    coefficients_[locate(exponents)] = value;
}

template <class T>
void Polynomial<T>::setCoeff(const std::string& exponents, T value)
{
    coefficients_[locate(exponents)] = value;
}

template <class T>
T Polynomial<T>::getCoeff(const int* exponents) const
{
    return coefficients_[locate(exponents)];
}

template <class T>
T Polynomial<T>::getCoeff(const std::string& exponents) const
{
    return coefficients_[locate(exponents)];
}

template <class T>
T Polynomial<T>::eval(const Vector<T>& x) const
{
    if (x.getSize() < dimension_) {
        raise<SizeError>("T Polynomial<T>::eval(const Vector<T>&) const", "Dimension mismatch");
    }
    if (dimension_ == 0) {
        return 0;
    }
    T* values = scratch_.data();
    std::copy_n(coefficients_.data(), coefficients_.getSize(), values);
    for (int k = dimension_ - 1; k >= 0; --k) {
        const auto level = static_cast<std::size_t>(k);
        const int* exponents = levelExponents[level + 1].data();
        const T variable = x[k];
        int child = 0;
        for (int node = 0; node < levelCounts[level]; ++node) {
            T sum = values[child];
            while (exponents[child] != 0) {
                sum = sum * variable + values[++child];
            }
            ++child;
            values[node] = sum;
        }
    }
    return values[0];
}

template <class T>
void Polynomial<T>::operator*=(T factor)
{
    coefficients_ *= factor;
}

template <class T>
void Polynomial<T>::operator/=(T divisor)
{
    coefficients_ /= divisor;
}

template <class T>
Polynomial<T> Polynomial<T>::operator*(T factor) const
{
    Polynomial result(*this);
    result *= factor;
    return result;
}

template <class T>
Polynomial<T> Polynomial<T>::operator/(T divisor) const
{
    Polynomial result(*this);
    result /= divisor;
    return result;
}

template <class T>
void Polynomial<T>::requireLike(const Polynomial& other, const char* where) const
{
    if (other.degree_ != degree_) {
        raise<SizeError>(where, "Degree mismatch");
    }
    if (other.dimension_ != dimension_) {
        raise<SizeError>(where, "Dimension mismatch");
    }
}

template <class T>
void Polynomial<T>::operator+=(const Polynomial& other)
{
    requireLike(other, "void Polynomial<T>::operator+=(const Polynomial&)");
    coefficients_ += other.coefficients_;
}

template <class T>
void Polynomial<T>::operator-=(const Polynomial& other)
{
    requireLike(other, "void Polynomial<T>::operator-=(const Polynomial&)");
    coefficients_ -= other.coefficients_;
}

template <class T>
Polynomial<T> Polynomial<T>::operator+(const Polynomial& other) const
{
    requireLike(other, "Polynomial<T> Polynomial<T>::operator+(const Polynomial&) const");
    Polynomial result(*this);
    result += other;
    return result;
}

template <class T>
Polynomial<T> Polynomial<T>::operator-(const Polynomial& other) const
{
    requireLike(other, "Polynomial<T> Polynomial<T>::operator-(const Polynomial&) const");
    Polynomial result(*this);
    result -= other;
    return result;
}

/// The first term below a node; for the number of nodes in a level, the number of terms.
template <class T>
int Polynomial<T>::firstLeaf(int level, int node) const
{
    for (auto k = static_cast<std::size_t>(level); k < firstChild.size() - 1; ++k) {
        node = node < levelCounts[k] ? firstChild[k][static_cast<std::size_t>(node)]
                                     : levelCounts[k + 1];
    }
    return node;
}

template <class T>
Polynomial<T> Polynomial<T>::derivative(int variable) const
{
    if (variable < 0 || variable >= dimension_) {
        raise<RangeError>("Polynomial<T> Polynomial<T>::derivative(const int) const",
                          "Index of derivation out of range");
    }
    if (degree_ == 0) {
        return Polynomial(0, dimension_);
    }
    Polynomial result(degree_ - 1, dimension_);
    const int level = variable + 1;
    const std::vector<int>& exponents = levelExponents[static_cast<std::size_t>(level)];
    int filled = 0;
    for (int node = 0; node < levelCounts[static_cast<std::size_t>(level)]; ++node) {
        // Less one exponent, the terms stand in the order of the lower degree.
        const int exponent = exponents[static_cast<std::size_t>(node)];
        if (exponent > 0) {
            const int end = firstLeaf(level, node + 1);
            for (int term = firstLeaf(level, node); term < end; ++term) {
                result.coefficients_[filled++] = coefficients_[term] * static_cast<T>(exponent);
            }
        }
    }
    return result;
}

template <class T>
T Polynomial<T>::innerProduct(const Polynomial& other, const std::vector<Vector<T>>& points) const
{
    T sum = 0;
    for (const Vector<T>& point : points) {
        sum += eval(point) * other.eval(point);
    }
    return sum;
}

template <class T>
void Polynomial<T>::buildBasis(int degree, int dimension, std::vector<Polynomial>& basis)
{
    const Polynomial zero(degree, dimension);
    const int terms = zero.numTerms();
    basis.assign(static_cast<std::size_t>(terms), zero);
    for (int i = 0; i < terms; ++i) {
        basis[static_cast<std::size_t>(i)].coefficients_[terms - 1 - i] = 1;
    }
}

template <class T>
void Polynomial<T>::gramSchmidt(const std::vector<Polynomial>& basis,
                                const std::vector<Vector<T>>& points,
                                std::vector<Polynomial>& out)
{
    const T epsilon = static_cast<T>(basis.size()) * Vector<T>::epsilon();
    int discarded = 0;
    try {
        requireSample(basis, points);
        out = basis;
        discarded = orthogonalise(out, points, epsilon);
    } catch (Exception& exception) {
        exception.addCall("void Polynomial<T>::gramSchmidt(...)");
        throw;
    }
    if (discarded > 0) {
        std::cerr << "Polynomial<T>::gramSchmidt(...): warning: " << discarded
                  << " polynomial(s) discarded.\n"
                  << "epsilon = " << epsilon << '\n';
    }
}

template <class T>
void Polynomial<T>::approximate(const std::vector<Polynomial>& basis,
                                const std::vector<Vector<T>>& points,
                                const Vector<T>& values)
{
    const char* where = "void Polynomial<T>::approximate(const vector<Polynomial>&,"
                        "const vector<Vector<T> >&,const Vector<T>&)";
    if (values.getSize() != static_cast<int>(points.size())) {
        raise<SizeError>(where, "Sizes of input vectors x and y differ.");
    }
    if (basis.empty()) {
        raise<SizeError>(where, "The basis is empty");
    }
    reset(basis.front().degree_, basis.front().dimension_);
    const T epsilon = static_cast<T>(numTerms()) * Vector<T>::epsilon();
    for (auto polynomial = basis.rbegin(); polynomial != basis.rend(); ++polynomial) {
        const Vector<T> sample = valuesOn(*polynomial, points);
        const T norm = sample.snorm();
        if (std::abs(norm) > epsilon) {
            *this += *polynomial * (values.scalarProduct(sample) / norm);
        }
    }
}

template <class T>
void Polynomial<T>::approximate(const std::vector<Vector<T>>& points,
                                const Vector<T>& values,
                                int degree)
{
    if (points.empty()) {
        raise<SizeError>("void Polynomial<T>::approximate(const vector<Vector<T> >&,"
                         "const Vector<T>&,const int)",
                         "There are no points");
    }
    std::vector<Polynomial> basis;
    buildBasis(degree, points.front().getSize(), basis);
    gramSchmidt(basis, points, basis);
    approximate(basis, points, values);
}

template <class T>
void Polynomial<T>::print(const std::string& title, std::ostream& stream) const
{
    stream << (title.empty() ? "Polynomial " : title) << '\n'
           << "  Dimension " << dimension_ << '\n'
           << "  Degree    " << degree_ << '\n'
           << "  Terms     " << numTerms() << '\n'
           << "  Coeffs    ";
    for (int i = 0; i < coefficients_.getSize(); ++i) {
        stream << coefficients_[i] << ' ';
    }
    stream << '\n';
}

template class Polynomial<float>;
template class Polynomial<double>;
template class Polynomial<long double>;
