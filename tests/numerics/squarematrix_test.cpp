#include "numerics/squarematrix.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <cmath>

TEST(SquareMatrix, StaysSquare)
{
    SquareMatrix<float> m(2);
    m.setOnes();
    EXPECT_RAISES(SizeError, "void SquareMatrix<T>::setSize(const int, const int)",
                  "Arguments n and p have distinct values.", m.setSize(2, 3, false));
    Matrix<float>& base = m;
    EXPECT_THROW(base = Matrix<float>(3, 1), SizeError);
    EXPECT_THROW(SquareMatrix<float>(Matrix<float>(2, 3)), SizeError);
    EXPECT_EQ(m.trace(), 2);
    m.setSize(3, true);
    EXPECT_TRUE(m.isOwner());
    EXPECT_EQ(m.getSize(2), 3);
}

TEST(SquareMatrix, DiagonalsComeBackAsTheyWereSet)
{
    const Vector<int> a = vectorOf<int>({1, 2, 3});
    const Vector<int> b = vectorOf<int>({4, 5, 6, 7});
    const Vector<int> c = vectorOf<int>({8, 9, 10});
    SquareMatrix<int> m;
    m.setTridiagonal(a, b, c);
    m.pasteUpperDiagonal2(vectorOf<int>({-1, -2}));
    m.pasteLowerDiagonal2(vectorOf<int>({-3, -4}));
    EXPECT_EQ(m, matrixOf<int>({{4, 8, -1, 0}, {1, 5, 9, -2}, {-3, 2, 6, 10}, {0, -4, 3, 7}}));
    EXPECT_EQ(m.lowerDiagonal(), a);
    EXPECT_EQ(m.diagonal(), b);
    EXPECT_EQ(m.upperDiagonal(), c);
    m.setUpperBidiagonal(b, c);
    EXPECT_EQ(m[1], vectorOf<int>({0, 5, 9, 0}));
    m.setLowerBidiagonal(b, a);
    EXPECT_EQ(m[1], vectorOf<int>({1, 5, 0, 0}));
    const SquareMatrix<int> before(m);
    const Vector<int> wrong(6);
    EXPECT_RAISES(SizeError, "void SquareMatrix<T>::pasteUpperDiagonal(...)",
                  "Incompatible matrix and vector dimensions", m.pasteUpperDiagonal(wrong));
    for (const auto paste :
         {&SquareMatrix<int>::pasteDiagonal, &SquareMatrix<int>::pasteLowerDiagonal2}) {
        EXPECT_THROW((m.*paste)(wrong), SizeError);
    }
    for (const auto set :
         {&SquareMatrix<int>::setUpperBidiagonal, &SquareMatrix<int>::setLowerBidiagonal}) {
        EXPECT_THROW((m.*set)(wrong, wrong), SizeError);
    }
    EXPECT_THROW(m.setTridiagonal(wrong, wrong, wrong), SizeError);
    EXPECT_EQ(m, before);
}

TEST(SquareMatrix, SymmetryIsExact)
{
    std::mt19937 engine(1);
    const Matrix<double> m = randomMatrix<double>(4, 4, engine);
    SquareMatrix<double> even(m + m.transpose());
    SquareMatrix<double> odd(m - m.transpose());
    EXPECT_TRUE(even.isSymmetrical());
    EXPECT_FALSE(even.isAntiSymmetrical());
    EXPECT_TRUE(odd.isAntiSymmetrical());
    EXPECT_FALSE(odd.isSymmetrical());
    even[0][3] = std::nextafter(even[0][3], 9.0);
    EXPECT_FALSE(even.isSymmetrical());
    odd[2][2] = 1e-300;
    EXPECT_FALSE(odd.isAntiSymmetrical());
}

TEST(SquareMatrix, UnitQuaternionIsARightHandedRotation)
{
    std::mt19937 engine(2);
    for (int round = 0; round < 20; ++round) {
        Vector<double> q = randomVector<double>(4, engine);
        q.normalize();
        const Quaternion<double> quaternion{q[0], q[1], q[2], q[3]};
        const SquareMatrix<double> m(quaternion, false);
        EXPECT_LT(normOf(m * m.transpose() - identityMatrix<double>(3)), 1e-14);
        EXPECT_TRUE(m.isRHSystem());
        // The axis stays where it is, the trace tells the angle.
        const Vector<double> axis = q.copyFrom(1);
        EXPECT_LT((m * axis).distance(axis), 1e-14);
        EXPECT_NEAR(m.trace(), 4 * q[0] * q[0] - 1, 1e-14);
        const SquareMatrix<double> homogeneous(quaternion, true);
        EXPECT_EQ(homogeneous.copy(0, 2, 0, 2), m);
        EXPECT_EQ(homogeneous[3], vectorOf<double>({0, 0, 0, 1}));
        EXPECT_EQ(homogeneous.getColumn(3), homogeneous[3]);
    }
    // A half turn about the bisector of x and y exchanges these; a third one is cyclic.
    const SquareMatrix<float> cyclic(Quaternion<float>{0.5F, 0.5F, 0.5F, 0.5F}, false);
    EXPECT_EQ(cyclic, matrixOf<float>({{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}));
    SquareMatrix<float> mirrored(cyclic);
    mirrored.swapRows(0, 1);
    EXPECT_FALSE(mirrored.isRHSystem());
    EXPECT_THROW(SquareMatrix<float>(2).isRHSystem(), SizeError);
}
