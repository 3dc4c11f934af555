#include "numerics/squarematrix.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

template <class T>
class RealSquareMatrix : public testing::Test
{};

using RealTypes = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(RealSquareMatrix, RealTypes);

template <class T>
T precision()
{
    return std::numeric_limits<T>::epsilon();
}

template <class T>
SquareMatrix<T> symmetric(int n, std::mt19937& engine)
{
    const Matrix<T> m = randomMatrix<T>(n, n, engine);
    return SquareMatrix<T>(m + m.transpose());
}

/// Determinant by expansion along the first row.
template <class T>
T expandedDeterminant(const Matrix<T>& m)
{
    const int n = m.getSize1();
    T sum = n == 0 ? 1 : 0;
    for (int j = 0; j < n; ++j) {
        Vector<int> rows(n - 1);
        Vector<int> columns(n - 1);
        for (int k = 0; k + 1 < n; ++k) {
            rows[k] = k + 1;
            columns[k] = k < j ? k : k + 1;
        }
        sum += (j % 2 == 0 ? 1 : -1) * m[0][j] * expandedDeterminant(m.copy(rows, columns));
    }
    return sum;
}

/// A tridiagonal system with a dominant diagonal, and its corners.
template <class T>
struct CyclicSystem
{
    CyclicSystem(int n, std::mt19937& engine)
        : d(randomVector<T>(n, engine) + T(4))
        , l(randomVector<T>(n - 1, engine))
        , u(randomVector<T>(n - 1, engine))
        , alpha(randomUnit<T>(engine))
        , beta(randomUnit<T>(engine))
    {
        matrix.setTridiagonal(l, d, u);
    }

    Vector<T> d;
    Vector<T> l;
    Vector<T> u;
    T alpha;
    T beta;
    SquareMatrix<T> matrix;
};

} // namespace

TYPED_TEST(RealSquareMatrix, FactorsMultiplyToThePermutedMatrix)
{
    using T = TypeParam;
    std::mt19937 engine(1);
    for (int n = 0; n <= 9; ++n) {
        const SquareMatrix<T> m(randomMatrix<T>(n, n, engine));
        SquareMatrix<T> factors(m);
        Vector<int> perm;
        const int sign = factors.luDecomp(perm, 0);
        SquareMatrix<T> lower;
        SquareMatrix<T> upper;
        lower.setIdentity(n);
        upper.setZeros(n);
        Matrix<T> permuted(m);
        int exchanges = 0;
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                (j < i ? lower : upper)[i][j] = factors[i][j];
                EXPECT_TRUE(j >= i || std::abs(factors[i][j]) < 10);
            }
            permuted.swapRows(i, perm[i]);
            exchanges += perm[i] != i ? 1 : 0;
        }
        EXPECT_EQ(sign, exchanges % 2 == 0 ? 1 : -1);
        EXPECT_LE(std::sqrt((lower * upper - permuted).snorm()), 20 * precision<T>());

        const Vector<T> x = randomVector<T>(n, engine);
        Vector<T> b = m * x;
        factors.luSolve(b, perm);
        EXPECT_LE(b.distance(x), 2000 * precision<T>());
    }
}

TYPED_TEST(RealSquareMatrix, PivotsAreScaledAndTheLastOfEqualOnesWins)
{
    using T = TypeParam;
    // Scaled by their rows, both candidates of the first column count 1.
    SquareMatrix<T> m(matrixOf<T>({{2, 1}, {7, 3}}));
    Vector<int> perm;
    EXPECT_EQ(m.luDecomp(perm, 0), -1);
    EXPECT_EQ(perm, vectorOf<int>({1, 1}));
    // The second row is the larger one, but not in proportion.
    SquareMatrix<T> scaled(matrixOf<T>({{2, 1}, {7, 100}}));
    EXPECT_EQ(scaled.luDecomp(perm, 0), 1);
}

TYPED_TEST(RealSquareMatrix, DeterminantAndInverseAgreeWithExpansion)
{
    using T = TypeParam;
    std::mt19937 engine(2);
    for (int n = 0; n <= 6; ++n) {
        const SquareMatrix<T> m(randomMatrix<T>(n, n, engine));
        const T expected = expandedDeterminant<T>(m);
        EXPECT_NEAR(static_cast<double>(m.det()), static_cast<double>(expected),
                    100 * precision<T>());
        const SquareMatrix<T> inverse = m.inverse();
        SquareMatrix<T> identity;
        identity.setIdentity(n);
        const T condition = std::sqrt(m.snorm() * inverse.snorm());
        EXPECT_LE(std::sqrt((m * inverse - identity).snorm()), 20 * condition * precision<T>());
    }
    SquareMatrix<T> hilbert;
    hilbert.setHilbert(3);
    EXPECT_NEAR(static_cast<double>(hilbert.det()), 1.0 / 2160, 10 * precision<T>());
}

TYPED_TEST(RealSquareMatrix, SingularMatrixHasDeterminantZeroAndNoInverse)
{
    using T = TypeParam;
    const char* const where = "int SquareMatrix<T>::luDecomp(...)";
    // The smallest pivot that counts is 20 times 2^-23, in every type.
    SquareMatrix<T> small(2);
    small.setDiagonal(T(2.3e-6));
    for (const Matrix<T>& matrix : {matrixOf<T>({{1, 2}, {2, 4}}), matrixOf<T>({{1, 2}, {0, 0}}),
                                    static_cast<const Matrix<T>&>(small)}) {
        const SquareMatrix<T> m(matrix);
        EXPECT_EQ(m.det(), 0);
        EXPECT_RAISES(MathError, where, "This matrix is singular", m.inverse());
        SquareMatrix<T> factors(m);
        Vector<int> perm = vectorOf<int>({5});
        EXPECT_THROW(factors.luDecomp(perm, T(2.3841858e-6)), MathError);
        EXPECT_EQ(factors, m);
        EXPECT_EQ(perm, vectorOf<int>({5}));
    }
    small.setDiagonal(T(2.4e-6));
    EXPECT_NE(small.det(), 0);
}

TYPED_TEST(RealSquareMatrix, TridiagonalSystemsAgreeWithTheDenseMatrix)
{
    using T = TypeParam;
    std::mt19937 engine(3);
    for (int n = 2; n <= 12; ++n) {
        const CyclicSystem<T> system(n, engine);
        const Vector<T> x = randomVector<T>(n, engine);
        Vector<T> b = system.matrix * x;
        SquareMatrix<T>::tridiagSolve(b, system.d, system.l, system.u);
        EXPECT_LT(b.distance(x), 20 * precision<T>());

        SquareMatrix<T> inverse;
        SquareMatrix<T>::tridiagInverse(inverse, system.d, system.l, system.u);
        EXPECT_LT((inverse - system.matrix.inverse()).snorm(), 20 * precision<T>());

        SquareMatrix<T> cyclic(system.matrix);
        cyclic[n - 1][0] += system.alpha;
        cyclic[0][n - 1] += system.beta;
        b = cyclic * x;
        SquareMatrix<T>::cyclicTridiagSolve(b, system.d, system.l, system.u, system.alpha,
                                            system.beta);
        EXPECT_LT(b.distance(x), 20 * precision<T>());
    }
}

TYPED_TEST(RealSquareMatrix, TridiagonalSolversRefuseNullPivots)
{
    using T = TypeParam;
    const Vector<T> d = vectorOf<T>({1, 1, 1});
    const Vector<T> e = vectorOf<T>({1, 0});
    Vector<T> x = vectorOf<T>({1, 2, 3});
    SquareMatrix<T> inverse;
    EXPECT_RAISES(MathError, "void SquareMatrix<T>::tridiagSolve(...)",
                  "Null pivoting element found.", SquareMatrix<T>::tridiagSolve(x, d, e, e));
    EXPECT_THROW(SquareMatrix<T>::tridiagInverse(inverse, d, e, e), MathError);
    // The circulant matrix of (1, -1/2, -1/2) maps constant vectors to zero.
    const Vector<T> half = vectorOf<T>({-0.5, -0.5});
    EXPECT_RAISES(MathError, "void SquareMatrix<T>::cyclicTridiagSolve(...)",
                  "Singular cyclic tridiagonal matrix.",
                  SquareMatrix<T>::cyclicTridiagSolve(x, d, half, half, -0.5, -0.5));
    EXPECT_THROW(SquareMatrix<T>::cyclicTridiagSolve(x, d * T(0), half, half, 1, 1), MathError);
    EXPECT_THROW(SquareMatrix<T>::tridiagSolve(x, d, e, d), SizeError);
    EXPECT_EQ(x, vectorOf<T>({1, 2, 3}));
    EXPECT_EQ(inverse.getSize(), 0);
}

TYPED_TEST(RealSquareMatrix, EigenvectorsDiagonaliseAndStayRightHanded)
{
    using T = TypeParam;
    std::mt19937 engine(4);
    std::vector<SquareMatrix<T>> samples;
    for (int n = 0; n <= 10; ++n) {
        samples.push_back(symmetric<T>(n, engine));
        const Matrix<T> factor = randomMatrix<T>(n, n / 2, engine);
        samples.push_back(SquareMatrix<T>(factor * factor.transpose()));
        SquareMatrix<T> hilbert;
        hilbert.setHilbert(n);
        samples.push_back(hilbert);
        SquareMatrix<T> graded = symmetric<T>(n, engine);
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                graded[i][j] *= static_cast<T>(std::pow(10.0, -2.0 * (i + j)));
            }
        }
        samples.push_back(graded);
    }
    for (const SquareMatrix<T>& m : samples) {
        const int n = m.getSize();
        const SquareMatrix<T> before(m);
        Vector<T> values;
        SquareMatrix<T> vectors;
        m.eigenJacobi(values, vectors, true);
        EXPECT_EQ(m, before);
        EXPECT_TRUE(n < 2 || values.isDecreasing());
        SquareMatrix<T> identity;
        identity.setIdentity(n);
        SquareMatrix<T> diagonal;
        diagonal.setDiagonal(values);
        const T bound = 50 * precision<T>();
        EXPECT_LE(std::sqrt((vectors.transpose() * vectors - identity).snorm()), bound);
        EXPECT_LE(std::sqrt((m * vectors - vectors * diagonal).snorm()),
                  bound * std::sqrt(m.snorm()));
        if (n <= 6) {
            EXPECT_NEAR(static_cast<double>(expandedDeterminant<T>(vectors)), 1, bound);
        }
        EXPECT_EQ(m.eigenValues(true), values);
        Vector<T> sorted = m.eigenValues(false);
        sorted.sort();
        sorted.reverse();
        EXPECT_EQ(sorted, values);
    }
}

TEST(SquareMatrix, EigenvalueSortNegatesTheVectorThatMovesBack)
{
    Vector<float> values = vectorOf<float>({1, 3, 2, 3});
    SquareMatrix<float> vectors;
    vectors.setIdentity(4);
    SquareMatrix<float>::eigenSort(values, vectors);
    EXPECT_EQ(values, vectorOf<float>({3, 3, 2, 1}));
    // The first exchange takes 1 to position 1, the second one from there to 3, negated twice.
    EXPECT_EQ(vectors, matrixOf<float>({{0, 0, 0, 1}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 1, 0, 0}}));
}

TEST(SquareMatrix, EigenvaluesReadTheUpperTriangleAndEndOnBadNumbers)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const SquareMatrix<double> upper(matrixOf<double>({{2, 1}, {77, 2}}));
    EXPECT_EQ(upper.eigenValues(true), vectorOf<double>({3, 1}));
    for (const double bad : {nan, std::numeric_limits<double>::infinity()}) {
        for (int j = 0; j < 3; ++j) {
            SquareMatrix<double> m;
            m.setIdentity(3);
            m[0][j] = bad;
            Vector<double> values;
            SquareMatrix<double> vectors;
            EXPECT_RAISES(MathError, "void SquareMatrix<T>::eigenJacobi(...) const",
                          "No convergence", m.eigenJacobi(values, vectors, true));
            EXPECT_EQ(values.getSize(), 0);
        }
    }
}
