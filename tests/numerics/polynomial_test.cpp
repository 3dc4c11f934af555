#include "numerics/polynomial.h"
#include "support/errors.h"
#include "support/types.h"
#include "support/vectors.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <sstream>

namespace {

template <class T>
class PolynomialOf : public testing::Test
{};

TYPED_TEST_SUITE(PolynomialOf, RealTypes);

/// The exponents of all terms in the order of the coefficients: descending.
std::vector<std::vector<int>> termsOf(int degree, int dimension)
{
    std::vector<std::vector<int>> terms;
    for (int code = static_cast<int>(std::pow(degree + 1, dimension)) - 1; code >= 0; --code) {
        std::vector<int> exponents(static_cast<std::size_t>(dimension));
        int rest = code;
        for (auto e = exponents.rbegin(); e != exponents.rend(); ++e, rest /= degree + 1) {
            *e = rest % (degree + 1);
        }
        if (std::accumulate(exponents.begin(), exponents.end(), 0) <= degree) {
            terms.push_back(exponents);
        }
    }
    return terms;
}

template <class T>
T monomial(const std::vector<int>& exponents, const Vector<T>& x)
{
    T product = 1;
    for (std::size_t k = 0; k < exponents.size(); ++k) {
        product *= std::pow(x[static_cast<int>(k)], static_cast<T>(exponents[k]));
    }
    return product;
}

template <class T>
Polynomial<T> randomPolynomial(int degree, int dimension, std::mt19937& engine)
{
    Polynomial<T> polynomial(degree, dimension);
    for (const auto& exponents : termsOf(degree, dimension)) {
        polynomial.setCoeff(exponents.data(), randomUnit<T>(engine));
    }
    return polynomial;
}

template <class T>
std::vector<Vector<T>> randomPoints(int count, int dimension, std::mt19937& engine)
{
    std::vector<Vector<T>> points(static_cast<std::size_t>(count));
    for (Vector<T>& point : points) {
        point = randomVector<T>(dimension, engine);
    }
    return points;
}

std::string joined(const std::vector<int>& numbers)
{
    std::ostringstream text;
    for (int number : numbers) {
        text << number << ',';
    }
    return text.str();
}

TYPED_TEST(PolynomialOf, TermsValuesAndDerivativesAreThoseOfTheSumOfItsTerms)
{
    using T = TypeParam;
    std::mt19937 engine(2);
    for (int n = 0; n < 24; ++n) {
        const int degree = n % 6;
        const int dimension = 1 + n / 6;
        const auto terms = termsOf(degree, dimension);
        const Polynomial<T> p = randomPolynomial<T>(degree, dimension, engine);
        ASSERT_EQ(p.numTerms(), static_cast<int>(terms.size()));
        for (std::size_t i = 0; i < terms.size(); ++i) {
            EXPECT_EQ(p.locate(terms[i].data()), static_cast<int>(i));
            EXPECT_EQ(p.locate(joined(terms[i])), static_cast<int>(i));
        }
        const T tolerance = std::numeric_limits<T>::epsilon() * static_cast<T>(10 * terms.size());
        for (const Vector<T>& x : randomPoints<T>(5, dimension, engine)) {
            T value = 0;
            Vector<T> slopes(dimension);
            slopes.setZeros();
            for (const auto& exponents : terms) {
                const T coefficient = p.getCoeff(exponents.data());
                value += coefficient * monomial(exponents, x);
                for (int k = 0; k < dimension; ++k) {
                    auto lower = exponents;
                    int& exponent = lower[static_cast<std::size_t>(k)];
                    const T factor = static_cast<T>(exponent);
                    exponent = std::max(exponent - 1, 0);
                    slopes[k] += factor * coefficient * monomial(lower, x);
                }
            }
            EXPECT_LE(std::abs(p.eval(x) - value), tolerance);
            for (int k = 0; k < dimension; ++k) {
                const Polynomial<T> slope = p.derivative(k);
                EXPECT_EQ(slope.getDegree(), std::max(0, degree - 1));
                EXPECT_EQ(slope.getDimension(), dimension);
                EXPECT_LE(std::abs(slope.eval(x) - slopes[k]), tolerance * 5);
            }
        }
    }
    EXPECT_EQ(Polynomial<T>(1, 1000).numTerms(), 1001);
    EXPECT_EQ(Polynomial<T>(30, 4).numTerms(), 46376);
    EXPECT_EQ(Polynomial<T>(3, 0).numTerms(), 0);
    EXPECT_EQ(Polynomial<T>(3, 0).eval(Vector<T>()), 0);
}

TYPED_TEST(PolynomialOf, ArithmeticActsOnTheCoefficients)
{
    using T = TypeParam;
    std::mt19937 engine(3);
    Polynomial<T> p = randomPolynomial<T>(3, 2, engine);
    const Polynomial<T> q = randomPolynomial<T>(3, 2, engine);
    for (const auto& exponents : termsOf(3, 2)) {
        const int* e = exponents.data();
        EXPECT_EQ((p + q).getCoeff(e), p.getCoeff(e) + q.getCoeff(e));
        EXPECT_EQ((p - q * 3).getCoeff(e), p.getCoeff(e) - q.getCoeff(e) * 3);
        EXPECT_EQ((p / 3).getCoeff(e), p.getCoeff(e) / 3);
    }
    p.reset(3, 2);
    EXPECT_EQ(p.eval(vectorOf<T>({2, 3})), 0);
    p.setDegree(1);
    p.setDimension(3);
    EXPECT_EQ(p.numTerms(), 4);
    p.setCoeff("0,0,0", 5);
    EXPECT_EQ(p.eval(vectorOf<T>({2, 3, 4})), 5);
}

TYPED_TEST(PolynomialOf, TheFitIsTheLeastSquaresSolution)
{
    using T = TypeParam;
    std::mt19937 engine(5);
    for (int dimension = 1; dimension <= 3; ++dimension) {
        const auto terms = termsOf(4 - dimension, dimension);
        const int count = static_cast<int>(terms.size());
        const auto points = randomPoints<T>(60, dimension, engine);
        const Vector<T> values = randomVector<T>(60, engine);
        const Matrix<T> design = matrixFrom<T>(60, count, [&](int i, int t) {
            return monomial(terms[static_cast<std::size_t>(t)],
                            points[static_cast<std::size_t>(i)]);
        });
        Polynomial<T> fit(0, 1);
        fit.approximate(points, values, 4 - dimension);
        const Vector<T> found = vectorFrom<T>(
            count, [&](int t) { return fit.getCoeff(terms[static_cast<std::size_t>(t)].data()); });
        EXPECT_LE(found.distance(design.solve(values)), std::numeric_limits<T>::epsilon() * 4000);
    }
}

TEST(PolynomialErrors, AreRaisedForWhatDoesNotFit)
{
    using P = Polynomial<double>;
    const P p(2, 2);
    P other(2, 3);
    P higher(3, 2);
    EXPECT_RAISES(SizeError, "void Polynomial<T>::operator+=(const Polynomial&)",
                  "Dimension mismatch", other += p);
    EXPECT_RAISES(SizeError, "void Polynomial<T>::operator-=(const Polynomial&)", "Degree mismatch",
                  higher -= p);
    EXPECT_THROW(p.derivative(-1), RangeError);
    EXPECT_THROW(p.derivative(2), RangeError);
    EXPECT_THROW(p.locate("2,1"), RangeError);
    EXPECT_THROW(p.locate("-1,1"), RangeError);
    EXPECT_THROW(p.locate("1"), SizeError);
    EXPECT_THROW(p.locate("1,x"), TypeError);
    EXPECT_THROW(p.eval(Vector<double>(1)), SizeError);
    EXPECT_THROW(P(-1, 2), ValueError);
    EXPECT_THROW(P(100, 100), SizeError);

    const std::vector<Vector<double>> plane = {vectorOf<double>({1, 2}), vectorOf<double>({3, 4})};
    const std::vector<Vector<double>> uneven = {plane[0], vectorOf<double>({1})};
    std::vector<P> out;
    EXPECT_RAISES(SizeError, "void Polynomial<T>::gramSchmidt(...)", "Degree mismatch",
                  P::gramSchmidt({p, higher}, plane, out));
    EXPECT_THROW(P::gramSchmidt({p, other}, plane, out), SizeError);
    EXPECT_THROW(P::gramSchmidt({p}, uneven, out), SizeError);
    EXPECT_THROW(P::gramSchmidt({other}, plane, out), SizeError);
    P fit(1, 1);
    EXPECT_THROW(fit.approximate({p}, plane, Vector<double>(3)), SizeError);
    EXPECT_THROW(fit.approximate({}, Vector<double>(), 1), SizeError);
}

TEST(PolynomialFit, KeepsTheLowerTermWherePointsDoNotTellTermsApart)
{
    // On the line y = x the plane needs no second variable, and x2, xy, y2 are one.
    std::vector<Vector<double>> points;
    Vector<double> values(9);
    for (int i = 0; i < 9; ++i) {
        points.push_back(vectorOf<double>({i / 4.0, i / 4.0}));
        values[i] = 2 + 3 * i / 4.0 - i * i / 16.0;
    }
    Polynomial<double> fit(0, 1);
    testing::internal::CaptureStderr();
    fit.approximate(points, values, 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Polynomial<T>::gramSchmidt(...): warning: 3 polynomial(s) discarded.\n"
              "epsilon = 6e-15\n");
    EXPECT_LE(std::abs(fit.getCoeff("0,0") - 2), 1e-12);
    EXPECT_LE(std::abs(fit.getCoeff("0,1") - 3), 1e-12);
    EXPECT_LE(std::abs(fit.getCoeff("0,2") + 1), 1e-12);
    for (const char* higher : {"2,0", "1,1", "1,0"}) {
        EXPECT_EQ(fit.getCoeff(higher), 0);
    }
}

} // namespace
