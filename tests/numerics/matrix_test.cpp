#include "numerics/elementtype.h"
#include "numerics/squarematrix.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

/// Element (i, j) is 10 i + j.
Matrix<int> numbered(int rows, int columns, bool owner = false)
{
    Matrix<int> result;
    result.setSize(rows, columns, owner);
    for (int i = 0; i < rows; ++i) {
        result[i].setSequence(10 * i, 1);
    }
    return result;
}

} // namespace

TEST(Matrix, ContiguousMatricesAreOneBlockAndAssignmentTakesTheMode)
{
    Matrix<int> m = numbered(3, 4, true);
    EXPECT_TRUE(m.isOwner());
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(m[0].data() + i, &m(i / 4, i % 4));
    }
    const int* const block = m[0].data();
    m.swapRows(0, 2);
    EXPECT_EQ(m[0].data(), block);
    EXPECT_EQ(m(0, 1), 21);
    Matrix<int> copy(m);
    EXPECT_TRUE(copy.isOwner());
    copy[1][1] = -1;
    EXPECT_EQ(m(1, 1), 11);
    const Matrix<int> moved(std::move(copy));
    EXPECT_EQ(moved(1, 1), -1);
    m.setSize(3, 4, false); // the same size: nothing changes
    EXPECT_TRUE(m.isOwner());
    m = numbered(2, 2);
    EXPECT_FALSE(m.isOwner());
    m.swap(m);
    const Matrix<int>& same = m;
    m = same;
    EXPECT_EQ(m, numbered(2, 2));
    m.setSize(vectorOf<int>({3, 2}));
    EXPECT_EQ(m.getSize(1), 3);
    EXPECT_THROW(m.getSize(3), ValueError);
    EXPECT_FALSE(Matrix<int>(3, 4, true).isOwner());
    EXPECT_TRUE(Matrix<int>(0, 4, true).isOwner());
    EXPECT_EQ(Matrix<int>(-2, -3).getSize(), vectorOf<int>({0, 0}));
}

TEST(Matrix, BlocksAreCopiedAndPasted)
{
    const Matrix<int> m = numbered(3, 4, true);
    const Matrix<int> block = m.copy(1, 2, 1, 3);
    EXPECT_EQ(block, matrixOf<int>({{11, 12, 13}, {21, 22, 23}}));
    EXPECT_TRUE(block.isOwner());
    EXPECT_FALSE(block[0].isShallow());
    EXPECT_TRUE(Matrix<int>(block)[0].isShallow());
    EXPECT_EQ(m.copy(1, 1, 0, 0), matrixOf<int>({{10}}));
    EXPECT_EQ(m.copy(vectorOf<int>({2, 0}), vectorOf<int>({3, 3})),
              matrixOf<int>({{23, 23}, {3, 3}}));
    Matrix<int> target = numbered(3, 3);
    target.paste(1, 2, matrixOf<int>({{-1}, {-2}}));
    EXPECT_EQ(target, matrixOf<int>({{0, 1, 2}, {10, 11, -1}, {20, 21, -2}}));
    for (const auto& place : {std::pair(2, 0), std::pair(0, 3), std::pair(-1, 0)}) {
        EXPECT_RAISES(SizeError, "void Matrix<T>::paste(...)",
                      "Cannot paste matrix at specified position",
                      target.paste(place.first, place.second, Matrix<int>(2, 1)));
    }
}

TEST(Matrix, RowsAndColumns)
{
    Matrix<int> m = numbered(2, 3);
    EXPECT_EQ(m.getColumn(1), vectorOf<int>({1, 11}));
    EXPECT_EQ(m.getDiagonal(), vectorOf<int>({0, 11}));
    EXPECT_EQ(m.cat(), vectorOf<int>({0, 1, 2, 10, 11, 12}));
    EXPECT_EQ(m.transpose().transpose(), m);
    EXPECT_EQ(m.transpose().getRow(2), m.getColumn(2));
    EXPECT_EQ(Matrix<int>(m[1], false).transpose(), Matrix<int>(m[1], true));
    m.setColumn(0, vectorOf<int>({7, 8}));
    m.setRow(1, vectorOf<int>({1, 2, 3}));
    EXPECT_EQ(m, matrixOf<int>({{7, 1, 2}, {1, 2, 3}}));
    EXPECT_THROW(m.setRow(0, Vector<int>(2)), SizeError);
    EXPECT_THROW(m.setColumn(0, Vector<int>(3)), SizeError);
    EXPECT_EQ(m.toType<unsigned char>()(1, 2), 3);
}

TEST(Matrix, SortingMovesWholeRowsAndPutsWhatIsNoNumberLast)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Matrix<double> m = matrixOf<double>({{nan, 1}, {2, 2}, {nan, 3}, {1, 4}, {0, 5}});
    m.sortRows(0, 3, 0);
    EXPECT_EQ(m.getColumn(1).copyUntil(1), vectorOf<double>({4, 2}));
    EXPECT_EQ(m(4, 1), 5);
    m.sortRows(1);
    EXPECT_EQ(m.getColumn(1), vectorOf<double>({1, 2, 3, 4, 5}));
    EXPECT_EQ(m.getColumn(0).copyFrom(3), vectorOf<double>({1, 0}));
}

TEST(Matrix, StatisticsByRowsAndColumns)
{
    const Matrix<int> m = matrixOf<int>({{3, 1, 1}, {3, 0, 2}});
    EXPECT_EQ(m.min(true), vectorOf<int>({1, 0}));
    EXPECT_EQ(m.max(false), vectorOf<int>({3, 1, 2}));
    EXPECT_EQ(m.minPos(true), vectorOf<int>({1, 1}));
    EXPECT_EQ(m.maxPos(false), vectorOf<int>({0, 0, 1}));
    EXPECT_EQ(m.minPos(false), vectorOf<int>({0, 1, 0}));
    EXPECT_EQ(m.sum(true), vectorOf<int>({5, 5}));
    EXPECT_EQ(m.sum(false), vectorOf<int>({6, 1, 3}));
    EXPECT_EQ(m.prod(), vectorOf<int>({3, 0}));
    EXPECT_EQ(m.range(), vectorOf<int>({0, 3}));
    EXPECT_EQ(m.snorm(), 24);
    EXPECT_EQ(m.histogram(0, 2, 2), vectorOf<unsigned int>({3, 3}));
    const Matrix<double> real = m.toType<double>();
    EXPECT_DOUBLE_EQ(real.mean2(), 10.0 / 6);
    EXPECT_DOUBLE_EQ(real.var2(), 24.0 / 6 - 100.0 / 36);
    EXPECT_DOUBLE_EQ(real.std2(), std::sqrt(real.var2()));
    EXPECT_EQ(real.mean()[1], real[1].mean());
    EXPECT_EQ(real.var()[1], real[1].var());
    EXPECT_EQ(real.std()[0], real[0].std());
    EXPECT_EQ(Matrix<float>().mean2(), 0);
    EXPECT_THROW(Matrix<float>().range(), SizeError);
    EXPECT_EQ(Matrix<float>(0, 3).min(true).getSize(), 0);
    // In single precision the ones would be lost beside 2^24.
    EXPECT_EQ(matrixOf<float>({{16777216, 1, 1, 1}, {1, 1, 1, 1}}).mean2(), 2097152.875F);
}

TEST(Matrix, ProductsAreAssociative)
{
    std::mt19937 engine(5);
    const Matrix<int> a = (randomMatrix<double>(3, 4, engine) * 50.0).toType<int>();
    const Matrix<int> b = (randomMatrix<double>(4, 2, engine) * 50.0).toType<int>();
    const Matrix<int> c = (randomMatrix<double>(2, 5, engine) * 50.0).toType<int>();
    EXPECT_EQ((a * b) * c, a * (b * c));
    EXPECT_EQ((a * b).transpose(), b.transpose() * a.transpose());
    EXPECT_EQ((a * b).getColumn(1), a * b.getColumn(1));
    Matrix<int> inPlace;
    inPlace.setSize(3, 4, true);
    inPlace = a;
    inPlace *= b;
    EXPECT_EQ(inPlace, a * b);
    EXPECT_EQ(a + a - a, a);
    EXPECT_EQ(-a * 2, a * -2);
    EXPECT_EQ((a * 6 + 3 - 3) / 3, a + a);
    EXPECT_EQ(matrixOf<int>({{2, 3}}).pointwiseProduct(matrixOf<int>({{5, 7}})),
              matrixOf<int>({{10, 21}}));
}

TEST(Matrix, OperandsThatDoNotFitAreRefused)
{
    Matrix<int> a(2, 3);
    const Matrix<int> b(2, 2);
    a.setOnes();
    EXPECT_RAISES(SizeError, "void Matrix<T>::operator+=(const Matrix&)",
                  "The dimensions of the two matrices differ", a += b);
    EXPECT_RAISES(SizeError, "void Matrix<T>::operator*=(const Matrix&)",
                  "The dimensions of the two matrices are not compatible", a *= b);
    EXPECT_THROW(a + b, SizeError);
    EXPECT_THROW(a - b, SizeError);
    EXPECT_THROW(a -= b, SizeError);
    EXPECT_THROW(a * b, SizeError);
    EXPECT_THROW(a.pointwiseProduct(b), SizeError);
    EXPECT_THROW(a * Vector<int>(2), SizeError);
    EXPECT_EQ(a.sum(true), vectorOf<int>({3, 3}));
}

TEST(Matrix, IntegersHaveNoDecompositions)
{
    Matrix<int> m(2, 2);
    m.setOnes();
    SquareMatrix<int> square(m);
    const char* const what = "Method not available for type 'int'";
    EXPECT_RAISES(TypeError, "Vector<int> Matrix<int>::svd(...) const", what,
                  m.svd(nullptr, nullptr));
    EXPECT_RAISES(TypeError, "int SquareMatrix<int>::luDecomp(...)", what, square.inverse());
    EXPECT_THROW(m.householderBidiag(nullptr, nullptr), TypeError);
    EXPECT_THROW(m.pinverse(), TypeError);
    EXPECT_THROW(m.mean2(), TypeError);
    EXPECT_THROW(m.std2(), TypeError);
    EXPECT_THROW(square.setHilbert(2), TypeError);
    EXPECT_THROW(square.eigenValues(true), TypeError);
    EXPECT_EQ(matrixOf<unsigned char>({{200, 100}}).mean2(), 150);
}
