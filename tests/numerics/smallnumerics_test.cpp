#include "numerics/gauss.h"
#include "numerics/histogram.h"
#include "numerics/maths.h"
#include "numerics/numbers.h"
#include "numerics/scalar.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <cmath>
#include <limits>
#include <sstream>

TEST(Maths, PowersOfTwo)
{
    for (int n = -3; n <= 70; ++n) {
        int power = 1;
        while (power < n) {
            power *= 2;
        }
        EXPECT_EQ(Maths::nextPowerOfTwo(n), power);
        EXPECT_EQ(Maths::isPowerOfTwo(n), n >= 1 && power == n) << n;
    }
    EXPECT_EQ(Maths::nextPowerOfTwo(1 << 30), 1 << 30);
    EXPECT_THROW(Maths::nextPowerOfTwo((1 << 30) + 1), RangeError);
}

TEST(Maths, CombinationsFollowPascalsTriangle)
{
    for (int n = 0; n <= 15; ++n) {
        EXPECT_EQ(Maths::comb(n, 0), 1);
        EXPECT_EQ(Maths::comb(n, n), 1);
        for (int p = 1; p < n; ++p) {
            EXPECT_EQ(Maths::comb(n, p), Maths::comb(n - 1, p - 1) + Maths::comb(n - 1, p));
        }
    }
    EXPECT_EQ(Maths::factorial(6), 720);
    EXPECT_EQ(Maths::comb(vectorOf<int>({4, 5}), vectorOf<int>({2, 1})), vectorOf<int>({6, 5}));
    EXPECT_NEAR(Maths::logComb(vectorOf<int>({40}), vectorOf<int>({20}))[0],
                std::lgamma(41.0) - 2 * std::lgamma(21.0), 1e-4);
    EXPECT_NEAR(Maths::pdfPoisson(2.5F, 3), 0.213763F, 1e-6);
}

TEST(Maths, RoundingTakesHalvesUpward)
{
    EXPECT_EQ(Maths::fround(-0.5), 0);
    EXPECT_EQ(Maths::fround(0.5), 1);
    EXPECT_EQ(Maths::fround(-1.5F), -1);
    // The sum with a half is formed in double: in single precision this would be 1.
    EXPECT_EQ(Maths::fround(std::nextafter(0.5F, 0.0F)), 0);
    EXPECT_EQ(Maths::fround(7.4F, 0.5F), 7.5F);
    EXPECT_EQ(Maths::fround(vectorOf<float>({0.4F, 2.5F})), vectorOf<int>({0, 3}));
    EXPECT_EQ(Maths::fround(vectorOf<double>({13, -14}), 5.0), vectorOf<double>({15, -15}));
}

TEST(Maths, EqualityIsRelativeForLargeAndAbsoluteForSmallNumbers)
{
    EXPECT_TRUE(Maths::equal(1e-8F, -1e-8F));
    EXPECT_TRUE(Maths::equal(1e6F, std::nextafter(1e6F, 2e6F)));
    EXPECT_FALSE(Maths::equal(1.0F, 1.000001F));
    EXPECT_TRUE(Maths::equal(1e20, 1e20 * (1 + 2e-16)));
    EXPECT_FALSE(Maths::equal(1e20, 1.000001e20));
    EXPECT_TRUE(Maths::equal(3, 3));
    EXPECT_FALSE(Maths::equal(3, 4));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(Maths::equal(nan, nan));
}

TEST(Maths, RotationsTurnCounterClockwise)
{
    const float quarter = Maths::toRadians(90);
    EXPECT_FLOAT_EQ(Maths::toDegrees(quarter), 90);
    EXPECT_FLOAT_EQ(Maths::rotationAngle(Maths::rotationMatrix(0.7F)), 0.7F);
    // Each rotation takes one axis to the next: y to z, z to x, x to y.
    const SquareMatrix<float> rotations[] = {Maths::xRotationMatrix3D(quarter),
                                             Maths::yRotationMatrix3D(quarter),
                                             Maths::zRotationMatrix3D(quarter)};
    for (int axis = 0; axis < 3; ++axis) {
        const auto unit = [](int i) {
            return vectorFrom<float>(3, [i](int j) { return j == i % 3; });
        };
        EXPECT_LT((rotations[axis] * unit(axis + 1)).distance(unit(axis + 2)), 1e-6F);
        EXPECT_EQ(rotations[axis] * unit(axis), unit(axis));
        EXPECT_TRUE(rotations[axis].isRHSystem());
    }
}

TEST(Maths, DecomposedRotationIsTheProductOfItsParts)
{
    std::mt19937 engine(6);
    const auto product = [](float a, float b, float c) {
        return Maths::xRotationMatrix3D(a) * Maths::yRotationMatrix3D(b) *
               Maths::zRotationMatrix3D(c);
    };
    for (int round = 0; round < 100; ++round) {
        float a = round % 5 == 0 ? 0.0F : 3 * randomUnit<float>(engine);
        float b = round % 7 == 0 ? 0.0F : 1.5F * randomUnit<float>(engine);
        float c = 3 * randomUnit<float>(engine);
        const Matrix<float> m = product(a, b, c);
        Maths::decomposeRotationMatrix3D(m, a, b, c);
        EXPECT_LT((product(a, b, c) - m).snorm(), 1e-10F) << round;
    }
}

TEST(Gauss, DistributionMatchesTheErrorFunctionAndItsInverseWalksToTheFirstStepBeyond)
{
    const Gauss gauss;
    for (double x = -6; x <= 6; x += 0.125) {
        EXPECT_NEAR(gauss.cdf(x), 0.5 * std::erfc(-x / std::sqrt(2.0)), 7.5e-8);
        EXPECT_NEAR(gauss.cdf(3 + 2 * x, 3, 2), gauss.cdf(x), 1e-15);
        EXPECT_NEAR(gauss.pdf(3 + 2 * x, 3, 2), std::exp(-x * x / 2) / std::sqrt(8 * M_PI), 1e-15);
    }
    for (double mean : {-2.0, 0.0, 3.4e38}) {
        EXPECT_EQ(gauss.cdf(std::nextafter(mean, -1e39), mean, 0), 0);
        EXPECT_EQ(gauss.cdf(mean, mean, 0), 0.5);
        EXPECT_EQ(gauss.cdf(std::nextafter(mean, 1e39), mean, 0), 1);
    }
    EXPECT_EQ(gauss.invcdf(0.5), 0);
    for (const double p : {0.001, 0.2, 0.49, 0.51, 0.8, 0.999}) {
        const double x = gauss.invcdf(p);
        EXPECT_NEAR(x, -gauss.invcdf(1 - p), 1.001e-3);
        EXPECT_EQ(gauss.cdf(x) < p, p < 0.5);
        EXPECT_EQ(gauss.cdf(x - (p > 0.5 ? 0.001 : -0.001)) < p, p > 0.5);
    }
    EXPECT_GT(gauss.invcdf(1), 5);
    EXPECT_LT(gauss.invcdf(0), -5);
    for (const double p : {-0.1, 1.1, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_THROW(gauss.invcdf(p), RangeError);
    }
}

TEST(Histogram, IntegersTruncateTowardZeroAndRealNumbersDownward)
{
    Histogram<int> integers;
    integers.init(0, 2, 3);
    EXPECT_EQ(integers.compute(vectorOf<int>({-2, -1, 0, 1, 5, 6})), vectorOf<int>({3, 0, 1}));
    Histogram<float> reals;
    reals.init(0, 2, 3);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(reals.compute(vectorOf<float>({-1, 0, 1, 5.9F, 6, 1e30F, nan})),
              vectorOf<int>({2, 0, 1}));
    Histogram<unsigned char> bytes;
    bytes.compute(vectorOf<unsigned char>({1}));
    EXPECT_EQ(bytes.numBins(), 0);
    bytes.init(0, 0, 4);
    EXPECT_THROW(bytes.compute(vectorOf<unsigned char>({1})), ValueError);
}

TEST(Scalar, KeepsItsTypeAndComparesByText)
{
    const Scalar byte(static_cast<unsigned char>(200));
    EXPECT_EQ(byte.toString(), "200");
    EXPECT_EQ(static_cast<float>(byte), 200.0F);
    EXPECT_EQ(static_cast<int>(Scalar(2.9)), 2);
    EXPECT_TRUE(Scalar(1) == Scalar(1.0F));
    EXPECT_TRUE(Scalar(1) != Scalar(2U));
    Scalar a(static_cast<unsigned short>(7));
    const Scalar b(a);
    a = Scalar(2.5);
    EXPECT_EQ(b.toString(), "7");
    const Scalar c(std::move(a));
    EXPECT_EQ(static_cast<double>(c), 2.5);
    EXPECT_TRUE(a == Scalar());
    EXPECT_THROW(static_cast<void>(static_cast<int>(a)), UsageError);
}

TEST(Numbers, PrintsItsStatisticsInOrder)
{
    Numbers<float> numbers;
    numbers.setCount(3);
    numbers.setMaximum(5);
    numbers.setMedian(2);
    numbers.setSum(8);
    numbers.setMean(2.5F);
    numbers.setMinimum(1);
    std::ostringstream stream;
    EXPECT_THROW(stream << numbers, UsageError);
    numbers.setStddev(0.5F);
    numbers.setMinimum(-1);
    const Numbers<float> copy(numbers);
    numbers.clear();
    stream.str("");
    stream << copy;
    EXPECT_EQ(stream.str(),
              "Count:   3\nMinimum: -1\nMedian:  2\nMaximum: 5\nSum:     8\nMean:    2.5\n"
              "StdDev:  0.5\n");
    EXPECT_THROW(numbers.getSum(), UsageError);
    Numbers<Scalar> scalars;
    scalars.setMaximum(Scalar(7));
    scalars = Numbers<Scalar>(scalars);
    EXPECT_EQ(static_cast<int>(scalars.getMaximum()), 7);
}
