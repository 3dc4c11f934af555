#include "numerics/vector.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <cmath>
#include <limits>

namespace {

/// The bin by bisection over the formula, without tables and guesses.
template <class T>
int bisectedBin(T x, T origin, T step, int bins)
{
    int lo = 0;
    int hi = bins;
    while (hi > lo + 1) {
        const int mid = (lo + hi) >> 1;
        if (origin + mid * step > x) {
            hi = mid;
        } else {
            lo = mid;
        }
    }
    return lo;
}

template <class T>
void expectBisectedHistogram(const Vector<T>& values, T origin, T step, int bins)
{
    Vector<unsigned int> expected;
    expected.setZeros(bins);
    for (int i = 0; i < values.getSize(); ++i) {
        ++expected[bisectedBin(values[i], origin, step, bins)];
    }
    EXPECT_EQ(values.histogram(origin, step, bins), expected) << +origin << ' ' << +step;
}

} // namespace

TEST(Vector, RunningSumsAndDifferences)
{
    const Vector<int> v = vectorOf<int>({1, 2, 4, 7});
    EXPECT_EQ(v.csum(), vectorOf<int>({1, 3, 7, 14}));
    EXPECT_EQ(v.cprod(), vectorOf<int>({1, 2, 8, 56}));
    EXPECT_EQ(Vector<int>().csum().getSize(), 0);
    EXPECT_EQ(v.diff(1), vectorOf<int>({1, 2, 3, 0}));
    EXPECT_EQ(v.diff(3), vectorOf<int>({6, 0, 0, 0}));
    EXPECT_THROW(v.diff(4), SizeError);
    EXPECT_THROW(v.diff(-1), ValueError);
}

TEST(Vector, HistogramKeepsWhatLiesOutsideItsEdges)
{
    EXPECT_EQ(vectorOf<float>({-5, 0.5F, 99}).histogram(0, 1, 4),
              vectorOf<unsigned int>({2, 0, 0, 1}));
    EXPECT_EQ(vectorOf<float>({0.5F, 1.5F, 2.5F}).histogram(0, 1, 3, vectorOf<float>({1, 0, 7})),
              vectorOf<unsigned int>({1, 0, 1}));
    EXPECT_RAISES(SizeError, "Vectorui Vector<T>::histogram(...)", "Incompatible mask size",
                  vectorOf<float>({1, 2}).histogram(0, 1, 3, vectorOf<float>({1})));
    EXPECT_THROW(vectorOf<float>({1}).histogram(0, 1, 0), ValueError);
}

TEST(Vector, HistogramAgreesWithBisectionOnAndBesideEveryEdge)
{
    std::mt19937 engine(11);
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (int round = 0; round < 200; ++round) {
        const int bins = 1 + static_cast<int>(engine() % 300);
        const float origin = round % 4 == 0 ? 1e6F : 10 * randomUnit<float>(engine);
        const float step = round % 10 == 0 ? 0.0F : 3 * randomUnit<float>(engine);
        Vector<float> values = vectorOf<float>({-inf, inf, nan, 0, origin - 1000, origin + 1000});
        for (int i = 0; i < bins; ++i) {
            const float edge = origin + i * step;
            values.append(
                vectorOf<float>({std::nextafter(edge, -inf), edge, std::nextafter(edge, inf)}));
        }
        values.append(randomVector<float>(50, engine) * 100.0F);
        expectBisectedHistogram(values, origin, step, bins);
    }
    Vector<unsigned char> bytes(256);
    bytes.setSequence(1);
    expectBisectedHistogram<unsigned char>(bytes, 0, 1, 256);
    expectBisectedHistogram<unsigned char>(bytes, 10, 7, 100);
    Vector<int> integers(300);
    integers.setSequence(-150, 1);
    expectBisectedHistogram(integers, -20, 3, 50);
}

TEST(Vector, CorrelationAgreesWithItsDefinition)
{
    std::mt19937 engine(2);
    for (int size = 0; size < 12; ++size) {
        for (int kernelSize = 1; kernelSize <= 9; kernelSize += 2) {
            const Vector<double> x = randomVector<double>(size, engine);
            const Vector<double> kernel = randomVector<double>(kernelSize, engine);
            Vector<double> reversed(kernel);
            reversed.reverse();
            EXPECT_EQ(x.corr(kernel), vectorFrom<double>(size, [&](int i) {
                          double sum = 0;
                          for (int m = 0; m < kernelSize; ++m) {
                              const int position = i + m - kernelSize / 2;
                              const bool isInside = position >= 0 && position < size;
                              sum += isInside ? x[position] * kernel[m] : 0;
                          }
                          return sum;
                      }));
            EXPECT_EQ(x.conv(kernel), x.corr(reversed));
        }
    }
    EXPECT_RAISES(ValueError, "Vector<T> Vector<T>::corr(const Vector&) const",
                  "The kernel has an even size",
                  vectorOf<float>({1, 2}).corr(vectorOf<float>({1, 1})));
    // Beside the ends and the masked middle the single neighbour counts with 101.
    const Vector<double> x = vectorOf<double>({1, 2, 3, 4, 5});
    const Vector<double> kernel = vectorOf<double>({1, 10, 100});
    const Vector<double> mask = vectorOf<double>({1, 1, 0, 1, 1});
    EXPECT_EQ(x.corr(kernel, mask), vectorOf<double>({212, 121, 3, 545, 454}));
    EXPECT_EQ(x.conv(kernel, mask), vectorOf<double>({212, 121, 3, 545, 454}));
    const Vector<double> alone = vectorOf<double>({0, 0, 1, 0, 0});
    EXPECT_EQ(x.corr(kernel, alone), vectorOf<double>({1, 2, 30, 4, 5}));
    EXPECT_THROW(x.corr(kernel, kernel), SizeError);
}
