#include "numerics/squarematrix.h"
#include "support/errors.h"
#include "support/types.h"
#include "support/vectors.h"

#include <cmath>
#include <limits>

namespace {

template <class T>
class RealMatrix : public testing::Test
{};

TYPED_TEST_SUITE(RealMatrix, RealTypes);

/// The precision of a result after about a hundred rotations. Their sines and cosines are double at
/// best, since the root in them is.
template <class T>
T tolerance()
{
    return 200 * std::max(std::numeric_limits<T>::epsilon(),
                          static_cast<T>(std::numeric_limits<double>::epsilon()));
}

template <class T>
void expectOrthogonal(const Matrix<T>& m)
{
    EXPECT_LE(normOf(m * m.transpose() - identityMatrix<T>(m.getSize1())), tolerance<T>());
}

/// Matrices of all shapes that decompositions find hard.
template <class T>
std::vector<Matrix<T>> sampleMatrices()
{
    std::mt19937 engine(12);
    std::vector<Matrix<T>> samples;
    for (int p = 1; p <= 8; ++p) {
        for (int n = p; n <= p + 3; n += 3) {
            const Matrix<T> random = randomMatrix<T>(n, p, engine);
            const int rank = p / 2;
            samples.push_back(random);
            samples.push_back(randomMatrix<T>(n, rank, engine) * randomMatrix<T>(rank, p, engine));
            samples.push_back(
                matrixFrom<T>(n, p, [](int i, int j) { return T(1) / T(i + j + 1); }));
            samples.push_back(matrixFrom<T>(
                n, p, [&](int i, int j) { return random[i][j] * T(std::pow(10.0, -2 * i)); }));
            samples.push_back(matrixFrom<T>(
                n, p, [](int i, int j) { return j == i + 1 || (j == i && i % 3 != 1) ? 1 : 0; }));
        }
    }
    return samples;
}

} // namespace

TYPED_TEST(RealMatrix, HouseholderTransformsReflectRowsAndColumns)
{
    using T = TypeParam;
    std::mt19937 engine(2);
    const Matrix<T> m = randomMatrix<T>(4, 6, engine);
    Vector<T> v = m.getColumn(2);
    T beta = 0;
    v.householderVector(beta);
    const Matrix<T> reflected = (identityMatrix<T>(4) - v.outerProduct(v) * beta) * m;
    Matrix<T> left(m);
    left.leftHouseholderTransform(v, beta);
    EXPECT_LE(normOf(left - reflected), tolerance<T>());
    Matrix<T> right = m.transpose();
    right.rightHouseholderTransform(v, beta);
    EXPECT_LE(normOf(right.transpose() - reflected), tolerance<T>());
    EXPECT_THROW(left.leftHouseholderTransform(v, beta, 1, 3, 0, 1), SizeError);
    EXPECT_THROW(left.rightHouseholderTransform(v, beta), SizeError);
}

TYPED_TEST(RealMatrix, BidiagonalFormAndSingularValuesRebuildTheMatrix)
{
    using T = TypeParam;
    for (const Matrix<T>& m : sampleMatrices<T>()) {
        Matrix<T> b(m);
        SquareMatrix<T> u;
        SquareMatrix<T> v;
        b.householderBidiag(&u, &v);
        EXPECT_EQ(b, matrixFrom<T>(b.getSize1(), b.getSize2(), [&](int i, int j) {
                      return j == i || j == i + 1 ? b[i][j] : T(0);
                  }));
        expectOrthogonal<T>(u);
        expectOrthogonal<T>(v);
        EXPECT_LE(normOf(u * m * v - b), tolerance<T>() * normOf(m));
        Matrix<T> alone(m);
        alone.householderBidiag(nullptr, nullptr);
        EXPECT_EQ(alone, b);

        const Vector<T> s = m.svd(&u, &v);
        ASSERT_EQ(s.getSize(), m.getSize2());
        EXPECT_GE(s.min(), 0);
        const Matrix<T> middle = matrixFrom<T>(m.getSize1(), m.getSize2(),
                                               [&](int i, int j) { return i == j ? s[i] : T(0); });
        // Dropping elements below the working tolerance is the other part of the error.
        const T bound = (tolerance<T>() + 20 * Vector<T>::epsilon()) * normOf(m);
        expectOrthogonal<T>(u);
        expectOrthogonal<T>(v);
        EXPECT_LE(normOf(u.transpose() * middle * v.transpose() - m), bound);
        EXPECT_EQ(m.svd(nullptr, nullptr), s);
    }
}

TYPED_TEST(RealMatrix, SingularValuesOfADiagonalMatrixAreAbsoluteValues)
{
    using T = TypeParam;
    SquareMatrix<T> m;
    m.setDiagonal(vectorOf<T>({3, -2, 0, 5}));
    SquareMatrix<T> u;
    SquareMatrix<T> v;
    EXPECT_EQ(m.svd(&u, &v), vectorOf<T>({3, 2, 0, 5}));
    EXPECT_EQ(u.diagonal(), vectorOf<T>({1, -1, 1, 1}));
    EXPECT_EQ(v, identityMatrix<T>(4));
    Matrix<T> zeros;
    zeros.setZeros(3, 2);
    EXPECT_EQ(zeros.svd(nullptr, nullptr), vectorOf<T>({0, 0}));
    EXPECT_EQ(zeros.pinverse(), zeros.transpose());
    EXPECT_EQ(Matrix<T>(2, 0).svd(nullptr, nullptr).getSize(), 0);
}

// What elimination leaves of such a matrix shrinks by the precision of the type again and again, until
// the squares of a Householder vector have no digits left; the factors then were not orthogonal.
TYPED_TEST(RealMatrix, FactorsOfRankDeficientMatricesStayOrthogonal)
{
    using T = TypeParam;
    std::mt19937 random(3);
    const auto integer = [&](int, int) { return randomInt(-3, 3, random); };
    for (int size = 2; size < 30; ++size) {
        const int rank = randomInt(1, 1 + size / 3, random);
        SquareMatrix<T> u;
        SquareMatrix<T> v;
        const Vector<T> values =
            (matrixFrom<T>(size, rank, integer) * matrixFrom<T>(rank, size, integer)).svd(&u, &v);
        expectOrthogonal<T>(u);
        expectOrthogonal<T>(v);
        int counted = 0;
        for (int i = 0; i < size; ++i) {
            counted += values[i] > tolerance<T>() * values.max() / 4;
        }
        EXPECT_LE(counted, rank);
    }
}

TYPED_TEST(RealMatrix, PseudoInverseMeetsPenrosesConditions)
{
    using T = TypeParam;
    std::mt19937 engine(4);
    for (int p = 1; p <= 6; ++p) {
        for (int rank = 1; rank <= p; ++rank) {
            const Matrix<T> a =
                randomMatrix<T>(p + 2, rank, engine) * randomMatrix<T>(rank, p, engine);
            const Matrix<T> x = a.pinverse();
            ASSERT_EQ(x.getSize(), vectorOf<int>({p, p + 2}));
            const T bound = 30 * tolerance<T>() * normOf(a) * normOf(x);
            EXPECT_LE(normOf(a * x * a - a), bound * normOf(a));
            EXPECT_LE(normOf(x * a * x - x), bound * normOf(x));
            EXPECT_LE(normOf((a * x).transpose() - a * x), bound);
            EXPECT_LE(normOf((x * a).transpose() - x * a), bound);

            // A projection has its rank for trace: no noise was taken for a singular value.
            EXPECT_NEAR(static_cast<double>(SquareMatrix<T>(a * x).trace()), rank, 0.01);

            const Vector<T> b = randomVector<T>(p + 2, engine);
            EXPECT_LT((a.solve(b) - x * b).norm(), bound * normOf(x));
        }
    }
}

TYPED_TEST(RealMatrix, DecompositionsRefuseWideMatricesAndNaN)
{
    using T = TypeParam;
    Matrix<T> wide(2, 3);
    wide.setOnes();
    const char* const svdWhere = "Vector<T> Matrix<T>::svd(...) const";
    EXPECT_RAISES(SizeError, svdWhere, "Cannot perform svd of (n,p) matrix with p > n",
                  wide.svd(nullptr, nullptr));
    EXPECT_THROW(wide.householderBidiag(nullptr, nullptr), SizeError);
    EXPECT_THROW(wide.transpose().solve(vectorOf<T>({1, 2})), SizeError);
    SquareMatrix<T> untouched;
    for (const T bad : {std::numeric_limits<T>::quiet_NaN(), std::numeric_limits<T>::infinity()}) {
        Matrix<T> m = wide.transpose();
        m[1][1] = bad;
        EXPECT_RAISES(MathError, svdWhere, "No convergence", m.svd(&untouched, nullptr));
        try {
            m.solve(m.getColumn(0));
            ADD_FAILURE();
        } catch (const MathError& error) {
            EXPECT_NE(error.callStack().find("[1] Vector<T> Matrix<T>::solve(...) const"),
                      std::string::npos);
        }
    }
    EXPECT_EQ(untouched.getSize(), 0);
}
