#include "numerics/elementtype.h"
#include "numerics/squarematrix.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <cmath>
#include <limits>

namespace {

/// Element (i, j) is 10 i + j.
Matrix<int> numbered(int rows, int columns)
{
    return matrixFrom<int>(rows, columns, [](int i, int j) { return 10 * i + j; });
}

} // namespace

TEST(Matrix, ContiguousMatricesAreOneBlockAndAssignmentTakesTheMode)
{
    Matrix<int> m;
    m.setSize(3, 4, true);
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(m[0].data() + i, &m(i / 4, i % 4));
        m(i / 4, i % 4) = i;
    }
    const int* const block = m[0].data();
    m.swapRows(0, 2);
    EXPECT_EQ(m[0].data(), block);
    EXPECT_EQ(m(0, 1), 9);
    Matrix<int> copy(m);
    EXPECT_TRUE(copy.isOwner());
    copy[1][1] = -1;
    EXPECT_EQ(m(1, 1), 5);
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
    EXPECT_THROW(m.getSize(3), ValueError);
    EXPECT_TRUE(Matrix<int>(0, 4, true).isOwner());
    EXPECT_EQ(Matrix<int>(-2, -3).getSize(), vectorOf<int>({0, 0}));
}

TEST(Matrix, BlocksRowsAndColumnsAreTakenAndSet)
{
    Matrix<int> m;
    m.setSize(3, 4, true);
    m = numbered(3, 4);
    const Matrix<int> block = m.copy(1, 2, 1, 3);
    EXPECT_EQ(block, matrixOf<int>({{11, 12, 13}, {21, 22, 23}}));
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
    m = numbered(2, 3);
    EXPECT_EQ(m.getColumn(1), vectorOf<int>({1, 11}));
    EXPECT_EQ(m.getDiagonal(), vectorOf<int>({0, 11}));
    EXPECT_EQ(m.cat(), vectorOf<int>({0, 1, 2, 10, 11, 12}));
    EXPECT_EQ(m.transpose(), matrixFrom<int>(3, 2, [](int i, int j) { return 10 * j + i; }));
    EXPECT_EQ(Matrix<int>(m[1], false).transpose(), Matrix<int>(m[1], true));
    m.setColumn(0, vectorOf<int>({7, 8}));
    m.setRow(1, vectorOf<int>({1, 2, 3}));
    EXPECT_EQ(m, matrixOf<int>({{7, 1, 2}, {1, 2, 3}}));
    EXPECT_THROW(m.setRow(0, Vector<int>(2)), SizeError);
    EXPECT_THROW(m.setColumn(0, Vector<int>(3)), SizeError);
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

TEST(Matrix, StatisticsByRowsAndColumnsAreThoseOfTheirVectors)
{
    std::mt19937 engine(9);
    const Matrix<int> m = matrixFrom<int>(5, 7, [&](int, int) { return randomInt(-2, 2, engine); });
    for (const bool byRow : {true, false}) {
        const Matrix<int> lines = byRow ? m : m.transpose();
        for (int i = 0; i < lines.getSize1(); ++i) {
            const Vector<int> line = lines[i];
            EXPECT_EQ(m.min(byRow)[i], line.min());
            EXPECT_EQ(m.max(byRow)[i], line.max());
            EXPECT_EQ(m.sum(byRow)[i], line.sum());
            EXPECT_EQ(m.minPos(byRow)[i], line.minPos());
            EXPECT_EQ(m.maxPos(byRow)[i], line.maxPos());
        }
    }
    EXPECT_EQ(m.prod()[4], m[4].prod());
    const Vector<int> all = m.cat();
    EXPECT_EQ(matrixOf<int>({{1, 2}, {0, 3}}).range(), vectorOf<int>({0, 3}));
    EXPECT_EQ(m.snorm(), all.snorm());
    EXPECT_EQ(m.histogram(-2, 2, 3), all.histogram(-2, 2, 3));
    const Matrix<double> real = m.toType<double>();
    const Vector<double> reals = real.cat();
    EXPECT_DOUBLE_EQ(real.mean2(), reals.mean());
    EXPECT_NEAR(real.var2(), reals.var(), 1e-14);
    EXPECT_NEAR(real.std2(), reals.std(), 1e-14);
    EXPECT_EQ(real.mean()[1], real[1].mean());
    EXPECT_EQ(real.var()[1], real[1].var());
    EXPECT_EQ(real.std()[0], real[0].std());
    EXPECT_EQ(Matrix<float>().mean2(), 0);
    EXPECT_THROW(Matrix<float>().range(), SizeError);
    EXPECT_EQ(Matrix<float>(0, 3).min(true).getSize(), 0);
    EXPECT_EQ(matrixOf<unsigned char>({{200, 100}}).mean2(), 150);
    // In single precision the ones would be lost beside 2^24.
    EXPECT_EQ(matrixOf<float>({{16777216, 1, 1, 1}, {1, 1, 1, 1}}).mean2(), 2097152.875F);
}

TEST(Matrix, ProductsAreAssociative)
{
    std::mt19937 engine(5);
    const auto random = [&](int rows, int columns) {
        return matrixFrom<int>(rows, columns, [&](int, int) { return randomInt(-49, 49, engine); });
    };
    const Matrix<int> a = random(3, 4);
    const Matrix<int> b = random(4, 2);
    const Matrix<int> c = random(2, 5);
    EXPECT_EQ((a * b) * c, a * (b * c));
    EXPECT_EQ((a * b)(2, 1), a[2].scalarProduct(b.getColumn(1)));
    EXPECT_EQ((a * b).getColumn(1), a * b.getColumn(1));
    Matrix<int> inPlace;
    inPlace.setSize(3, 4, true);
    inPlace = a;
    inPlace *= b;
    EXPECT_EQ(inPlace, a * b);
    inPlace *= 2;
    EXPECT_EQ(inPlace, a * (b + b));
    EXPECT_EQ(a + a - a, a);
    EXPECT_EQ(-a * 2, a * -2);
    EXPECT_EQ((a * 6 + 3 - 3) / 3, a + a);
    EXPECT_EQ(matrixOf<int>({{2, 3}}).pointwiseProduct(matrixOf<int>({{5, 7}})),
              matrixOf<int>({{10, 21}}));
}

TEST(Matrix, OperandsThatDoNotFitAndDecompositionsOfIntegersAreRefused)
{
    Matrix<int> a(2, 3);
    Matrix<int> b(2, 2);
    a.setOnes();
    b.setOnes();
    EXPECT_RAISES(SizeError, "void Matrix<T>::operator+=(const Matrix&)",
                  "The dimensions of the two matrices differ", a += b);
    EXPECT_RAISES(SizeError, "void Matrix<T>::operator*=(const Matrix&)",
                  "The dimensions of the two matrices are not compatible", a *= b);
    EXPECT_THROW(a -= b, SizeError);
    EXPECT_THROW(a * b, SizeError);
    EXPECT_THROW(a.pointwiseProduct(b), SizeError);
    EXPECT_THROW(a * Vector<int>(2), SizeError);
    EXPECT_EQ(a.sum(true), vectorOf<int>({3, 3}));
    SquareMatrix<int> square(b);
    const char* const what = "Method not available for type 'int'";
    EXPECT_RAISES(TypeError, "Vector<int> Matrix<int>::svd(...) const", what,
                  b.svd(nullptr, nullptr));
    EXPECT_RAISES(TypeError, "int SquareMatrix<int>::luDecomp(...)", what, square.inverse());
    EXPECT_THROW(b.mean2(), TypeError);
    EXPECT_THROW(square.eigenValues(true), TypeError);
}
