#include "numerics/squarematrix.h"
#include "support/errors.h"
#include "support/types.h"
#include "support/vectors.h"

#include <cmath>
#include <limits>

namespace {

template <class T>
class RealSquareMatrix : public testing::Test
{};

TYPED_TEST_SUITE(RealSquareMatrix, RealTypes);

template <class T>
T precision()
{
    return std::numeric_limits<T>::epsilon();
}

/// Determinant by expansion along the first row.
template <class T>
T expandedDeterminant(const Matrix<T>& m)
{
    const int n = m.getSize1();
    T sum = n == 0 ? 1 : 0;
    for (int j = 0; j < n; ++j) {
        const Matrix<T> minor =
            matrixFrom<T>(n - 1, n - 1, [&](int i, int k) { return m[i + 1][k < j ? k : k + 1]; });
        sum += (j % 2 == 0 ? 1 : -1) * m[0][j] * expandedDeterminant(minor);
    }
    return sum;
}

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
        const auto lower = matrixFrom<T>(
            n, n, [&](int i, int j) { return j < i ? factors[i][j] : T(j == i ? 1 : 0); });
        const auto upper =
            matrixFrom<T>(n, n, [&](int i, int j) { return j < i ? 0 : factors[i][j]; });
        EXPECT_LT(normOf(lower), 10 * n + 1);
        Matrix<T> permuted(m);
        int expectedSign = 1;
        for (int i = 0; i < n; ++i) {
            permuted.swapRows(i, perm[i]);
            expectedSign *= perm[i] != i ? -1 : 1;
        }
        EXPECT_EQ(sign, expectedSign);
        EXPECT_LE(normOf(lower * upper - permuted), 20 * precision<T>());

        const Vector<T> x = randomVector<T>(n, engine);
        Vector<T> b = m * x;
        factors.luSolve(b, perm);
        EXPECT_LE(b.distance(x), 2000 * precision<T>());

        const SquareMatrix<T> inverse = m.inverse();
        EXPECT_LE(normOf(m * inverse - identityMatrix<T>(n)),
                  20 * normOf(m) * normOf(inverse) * precision<T>());
        if (n <= 6) {
            EXPECT_LE(std::abs(m.det() - expandedDeterminant<T>(m)), 100 * precision<T>());
        }
    }
    SquareMatrix<T> hilbert;
    hilbert.setHilbert(3);
    EXPECT_NEAR(static_cast<double>(hilbert.det()), 1.0 / 2160, 10 * precision<T>());
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
        const Vector<T> d = randomVector<T>(n, engine) + T(4);
        const Vector<T> l = randomVector<T>(n - 1, engine);
        const Vector<T> u = randomVector<T>(n - 1, engine);
        const Vector<T> corners = randomVector<T>(2, engine);
        SquareMatrix<T> matrix;
        matrix.setTridiagonal(l, d, u);
        const Vector<T> x = randomVector<T>(n, engine);
        Vector<T> b = matrix * x;
        SquareMatrix<T>::tridiagSolve(b, d, l, u);
        EXPECT_LT(b.distance(x), 20 * precision<T>());

        SquareMatrix<T> inverse;
        SquareMatrix<T>::tridiagInverse(inverse, d, l, u);
        EXPECT_LT((inverse - matrix.inverse()).snorm(), 20 * precision<T>());

        matrix[n - 1][0] += corners[0];
        matrix[0][n - 1] += corners[1];
        b = matrix * x;
        SquareMatrix<T>::cyclicTridiagSolve(b, d, l, u, corners[0], corners[1]);
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
    for (int sample = 0; sample < 44; ++sample) {
        const int n = sample / 4;
        const Matrix<T> random = randomMatrix<T>(n, n, engine);
        const Matrix<T> symmetric = random + random.transpose();
        const Matrix<T> factor = randomMatrix<T>(n, n / 2, engine);
        const Matrix<T> samples[] = {
            symmetric, factor * factor.transpose(),
            matrixFrom<T>(n, n, [](int i, int j) { return T(1) / T(i + j + 1); }),
            matrixFrom<T>(n, n, [&](int i, int j) {
                return symmetric[i][j] * T(std::pow(10.0, -2.0 * (i + j)));
            })};
        const SquareMatrix<T> m(samples[sample % 4]);
        Vector<T> values;
        SquareMatrix<T> vectors;
        m.eigenJacobi(values, vectors, true);
        EXPECT_EQ(m, samples[sample % 4]);
        EXPECT_TRUE(n < 2 || values.isDecreasing());
        SquareMatrix<T> diagonal;
        diagonal.setDiagonal(values);
        const T bound = 50 * precision<T>();
        EXPECT_LE(normOf(vectors.transpose() * vectors - identityMatrix<T>(n)), bound);
        EXPECT_LE(normOf(m * vectors - vectors * diagonal), bound * normOf(m));
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
