#include "numerics/squarematrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

/// A product of small integers, whose rank is exact.
template <class T>
Matrix<T> matrixOfRank(int size, int rank, std::mt19937& random)
{
    Matrix<T> left(size, rank);
    Matrix<T> right(rank, size);
    for (int i = 0; i < size; ++i) {
        for (int j = 0; j < rank; ++j) {
            left[i][j] = static_cast<T>(static_cast<int>(random() % 7) - 3);
            right[j][i] = static_cast<T>(static_cast<int>(random() % 7) - 3);
        }
    }
    return left * right;
}

template <class T>
T distanceFromOrthogonal(const SquareMatrix<T>& matrix)
{
    T worst = 0;
    for (int i = 0; i < matrix.getSize(); ++i) {
        for (int j = 0; j <= i; ++j) {
            const T product = matrix[i].scalarProduct(matrix[j]);
            worst = std::max(worst, std::abs(product - T(i == j ? 1 : 0)));
        }
    }
    return worst;
}

template <class T>
class RankDeficientMatrix : public testing::Test
{};

using RealTypes = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(RankDeficientMatrix, RealTypes);

} // namespace

// What elimination leaves of such a matrix shrinks by the precision of the type again and again, until
// the squares of a Householder vector have no digits left; the factors then were not orthogonal.
TYPED_TEST(RankDeficientMatrix, FactorsStayOrthogonal)
{
    using T = TypeParam;
    std::mt19937 random(3);
    // Rotations have the precision of double at most.
    const T epsilon = std::max<T>(std::numeric_limits<T>::epsilon(),
                                  static_cast<T>(std::numeric_limits<double>::epsilon()));
    for (int size = 2; size < 30; ++size) {
        const int rank = 1 + static_cast<int>(random() % (1 + static_cast<unsigned int>(size) / 3));
        const Matrix<T> matrix = matrixOfRank<T>(size, rank, random);
        SquareMatrix<T> u;
        SquareMatrix<T> v;
        const Vector<T> values = matrix.svd(&u, &v);
        EXPECT_LT(distanceFromOrthogonal(u), 50 * epsilon) << size << " " << rank;
        EXPECT_LT(distanceFromOrthogonal(v), 50 * epsilon) << size << " " << rank;
        const T negligible = 50 * epsilon * values.max();
        int counted = 0;
        for (int i = 0; i < size; ++i) {
            counted += values[i] > negligible;
        }
        EXPECT_LE(counted, rank);
    }
}
