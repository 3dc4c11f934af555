#include "blade/bladeaveraging.h"
#include "blade/bladesymmetrization.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"
#include "system/dataset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <random>

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr int points = 201;
constexpr float bladeLength = 500.0f;

/// Open outline of an uneven leaf from the one junction to the other; its axis from the origin along
/// the first coordinate axis, its tip at vertex 100, at `bladeLength`.
Curve<float> unevenLeaf()
{
    Curve<float> curve(3, points, 0, 0, true);
    for (int i = 0; i < points; ++i) {
        const double t = i <= 100 ? i / 100.0 : (200 - i) / 100.0;
        const double side = i <= 100 ? -1.0 : 0.8;
        const double width = 10.0 * (1.0 - t) / std::fabs(side) + 110.0 * std::sin(pi * t) +
                             9.0 * std::sin((i <= 100 ? 24.0 : 30.0) * pi * t);
        curve[i][0] = static_cast<float>(bladeLength * t);
        curve[i][1] = static_cast<float>(side * width);
        curve[i][2] = 0.0f;
    }
    return curve;
}

/// Scaled, then turned, then moved.
Curve<float> moved(const Curve<float>& curve, double scale, double degrees, double dx, double dy)
{
    Curve<float> result = curve;
    result.detach();
    const double c = std::cos(degrees * pi / 180.0) * scale;
    const double s = std::sin(degrees * pi / 180.0) * scale;
    for (int i = 0; i < curve.getSize(); ++i) {
        const double x = curve[i][0];
        const double y = curve[i][1];
        result[i][0] = static_cast<float>(c * x - s * y + dx);
        result[i][1] = static_cast<float>(s * x + c * y + dy);
    }
    return result;
}

/// Largest difference of the distances between vertices, which no motion changes.
float shapeDifference(const Curve<float>& a, const Curve<float>& b)
{
    float largest = a.getSize() == b.getSize() ? 0.0f : 1e30f;
    for (int i = 0; i < a.getSize() && a.getSize() == b.getSize(); ++i) {
        for (int j = 0; j < i; j += 7) {
            largest = std::max(largest, std::fabs(a[i].distance(a[j]) - b[i].distance(b[j])));
        }
    }
    return largest;
}

float largestDistance(const Curve<float>& a, const Curve<float>& b)
{
    float largest = 0.0f;
    for (int i = 0; i < a.getSize(); ++i) {
        largest = std::max(largest, a[i].distance(b[i]));
    }
    return largest;
}

/// Curves that are owned, and pointers to them.
struct Leaves
{
    void add(const Curve<float>& curve)
    {
        owned.push_back(std::make_unique<Curve<float>>(curve));
        curves.push_back(owned.back().get());
    }

    std::vector<std::unique_ptr<Curve<float>>> owned;
    std::vector<Curve<float>*> curves;
};

Leaves copiesOf(const Curve<float>& curve, int number, double largestAngle, unsigned seed)
{
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> angle(-largestAngle, largestAngle);
    std::uniform_real_distribution<double> shift(-2000.0, 2000.0);
    Leaves leaves;
    for (int k = 0; k < number; ++k) {
        const double turn = angle(engine);
        const double dx = shift(engine);
        leaves.add(moved(curve, 1.0, turn, dx, shift(engine)));
    }
    return leaves;
}

/// A bin matrix of which leaf j belongs to bin `bins[j]`.
Matrix<float> binMatrix(const std::vector<int>& bins)
{
    Matrix<float> matrix;
    matrix.setZeros(6, static_cast<int>(bins.size()));
    for (std::size_t j = 0; j < bins.size(); ++j) {
        matrix[0][static_cast<int>(j)] = static_cast<float>(j);
        matrix[4][static_cast<int>(j)] = static_cast<float>(bins[j]);
    }
    return matrix;
}

Vector<int> ints(const std::vector<int>& values)
{
    return Vector<int>(values);
}

/// Ascending keys, some of them equal.
Vector<float> randomKeys(int number, unsigned seed)
{
    std::mt19937 engine(seed);
    std::vector<float> keys;
    for (int k = 0; k < number; ++k) {
        keys.push_back(static_cast<float>(100 + engine() % 900));
    }
    std::sort(keys.begin(), keys.end());
    return Vector<float>(keys);
}

double distribution(double x, double mean, double sigma)
{
    return 0.5 * std::erfc(-(x - mean) / sigma / std::sqrt(2.0));
}

/// The weights before small ones are dropped: the mass of a value is half of what lies between its
/// neighbours, and at the ends all beyond counts whole.
std::vector<double> plainWeights(const Vector<float>& X, double mean, double sigma)
{
    std::vector<double> weights;
    for (int i = 0; i < X.getSize(); ++i) {
        double below = -1.0;
        double above = -1.0;
        int equal = 0;
        for (int j = 0; j < X.getSize(); ++j) {
            equal += X[j] == X[i];
            below = X[j] < X[i] ? std::max(below, double(X[j])) : below;
            above = X[j] > X[i] && (above < 0.0 || X[j] < above) ? double(X[j]) : above;
        }
        const double own = distribution(X[i], mean, sigma);
        const double low =
            below < 0.0 ? distribution(0.0, mean, sigma) - own : distribution(below, mean, sigma);
        const double high = above < 0.0 ? 2.0 - own : distribution(above, mean, sigma);
        weights.push_back((high - low) * 0.5 / equal);
    }
    return weights;
}

/// The rank search without any saving: every rank sorts the distances anew.
Vector<int> plainRanks(const BladeAveraging& averaging,
                       const Vector<float>& X,
                       const Vector<float>& r,
                       const Vector<float>& T)
{
    const int ranks = static_cast<int>(averaging.computeOptimalKNNParameter(X, T)[0]);
    std::vector<std::vector<float>> columns;
    float least = 1e30f;
    float most = -1e30f;
    for (int i = 0; i < T.getSize(); ++i) {
        columns.emplace_back();
        for (int k = 1; k <= ranks; ++k) {
            std::vector<float> distances;
            for (int j = 0; j < X.getSize(); ++j) {
                distances.push_back(std::fabs(T[i] - X[j]));
            }
            std::sort(distances.begin(), distances.end());
            const Vector<double> w = averaging.balanceSample(X, T[i], distances[size_t(k - 1)]);
            double m = 0.0;
            double v = 0.0;
            for (int j = 0; j < X.getSize(); ++j) {
                m += r[j] * w[j];
            }
            for (int j = 0; j < X.getSize(); ++j) {
                v += (r[j] - m) * (r[j] - m) * w[j];
            }
            columns.back().push_back(static_cast<float>(std::sqrt(v) / m * 100.0));
            least = std::min(least, columns.back().back());
            most = std::max(most, columns.back().back());
        }
    }
    Vector<int> K(T.getSize());
    const auto band = static_cast<float>((most - least) * 0.05);
    for (int i = 0; i < T.getSize(); ++i) {
        const std::vector<float>& column = columns[size_t(i)];
        std::size_t q = size_t(std::min_element(column.begin(), column.end()) - column.begin());
        const float threshold = band + column[q];
        for (; q + 1 < column.size() && column[q + 1] < threshold; ++q) {
        }
        K[i] = static_cast<int>(q) + 3;
    }
    const int span = static_cast<int>(T.getSize() * 0.015);
    for (int i = 0; span > 3 && i < T.getSize(); ++i) {
        std::vector<int> window;
        for (int o = -span; o < span; ++o) {
            if (i + o > 0 && i + o < T.getSize()) {
                window.push_back(K[i + o]);
            }
        }
        K[i] = static_cast<int>(std::accumulate(window.begin(), window.end(), 0.0) /
                                static_cast<double>(window.size()));
    }
    return K;
}

} // namespace

TEST(BladeAveraging, MovedCopiesOfALeafAverageByBinsToThatLeaf)
{
    const Curve<float> leaf = unevenLeaf();
    const Leaves leaves = copiesOf(leaf, 9, 180.0, 1);
    const Curve<float> before = moved(*leaves.curves[0], 1.0, 0.0, 0.0, 0.0);
    BladeAveraging averaging;
    averaging.setNumberOfAverages(3);
    std::vector<Curve<float>> averages;
    averaging.computeNewHomogeneousAverages(
        leaves.curves, averages, binMatrix({0, 0, 0, 0, 0, 1, 2, 2, 2}), ints({5, 1, 3}));
    ASSERT_EQ(averages.size(), 3u);
    EXPECT_LT(shapeDifference(averages[0], leaf), 1e-3f * bladeLength);
    EXPECT_LT(shapeDifference(averages[2], leaf), 1e-3f * bladeLength);
    EXPECT_EQ(averages[1].getSize(), 0) << "a single leaf is no average";
    EXPECT_TRUE(averages[0].isOpen() && averages[1].isOpen());
    EXPECT_EQ(largestDistance(*leaves.curves[0], before), 0.0f) << "the leaves stay as they are";
    // The orientation must survive: no copy may have been mirrored.
    averages[0].setOpen(false);
    EXPECT_GT(averages[0].twiceArea(0, 1), 0.0f);
}

TEST(BladeAveraging, LeavesKeepTheirSizesInABin)
{
    const Curve<float> leaf = unevenLeaf();
    Leaves leaves;
    leaves.add(moved(leaf, 0.5, 30.0, 100.0, 0.0));
    leaves.add(moved(leaf, 1.0, -120.0, 0.0, 50.0));
    leaves.add(moved(leaf, 1.8, 75.0, -300.0, 9.0));
    BladeAveraging averaging;
    averaging.setNumberOfAverages(1);
    std::vector<Curve<float>> averages;
    averaging.computeNewHomogeneousAverages(leaves.curves, averages, binMatrix({0, 0, 0}),
                                            ints({3}));
    EXPECT_LT(shapeDifference(averages[0], moved(leaf, 3.3 / 3.0, 0.0, 0.0, 0.0)),
              1e-3f * bladeLength);
}

TEST(BladeAveraging, WeightsShareTheGaussianAmongTheLeaves)
{
    const BladeAveraging averaging;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const Vector<float> X = randomKeys(30, seed);
        const float mean = 50.0f + 60.0f * static_cast<float>(seed);
        const float sigma = 40.0f + 7.0f * static_cast<float>(seed);
        const Vector<double> weights = averaging.balanceSample(X, mean, sigma);
        const std::vector<double> plain = plainWeights(X, mean, sigma);
        double sum = 0.0;
        double dropped = 0.0;
        for (int i = 0; i < X.getSize(); ++i) {
            const double expected = plain[size_t(i)];
            sum += weights[i];
            dropped += weights[i] == 0.0 ? expected : 0.0;
            EXPECT_TRUE(weights[i] == 0.0 || weights[i] >= 0.999e-5);
            if (std::fabs(expected - 1e-5) > 4e-7) {
                EXPECT_NEAR(weights[i], expected < 1e-5 ? 0.0 : expected, 4e-7) << seed << " " << i;
            }
        }
        EXPECT_NEAR(sum, 1.0 - 0.5 * distribution(0.0, mean, sigma) - dropped, 2e-6);
    }
}

TEST(BladeAveraging, WithoutWidthTheWholeWeightStandsAtTheNearestKeys)
{
    const BladeAveraging averaging;
    const Vector<float> X(std::vector<float>{100, 200, 200, 300});
    const Vector<double> at = averaging.balanceSample(X, 200.0f, 0.0f);
    EXPECT_EQ(at.toStlVector(), (std::vector<double>{0.25, 0.25, 0.25, 0.25}));
    const Vector<double> beyond = averaging.balanceSample(X, 900.0f, 10.0f);
    EXPECT_NEAR(beyond[3], 1.0, 1e-6) << "a target beyond all leaves takes the last one";
}

TEST(BladeAveraging, BandwidthIsTheDistanceOfTheNearestLeafOfThatRank)
{
    const BladeAveraging averaging;
    const Vector<float> X(std::vector<float>{10, 20, 40, 80});
    const float expected[] = {4.0f, 14.0f, 16.0f, 56.0f, 56.0f, 56.0f};
    for (int k = 1; k <= 6; ++k) {
        EXPECT_EQ(averaging.computeBandWith(X, 24.0f, k), expected[k - 1]) << k;
    }
    const Vector<float> T(std::vector<float>{24.0f, 80.0f});
    const Matrix<float> parameters = averaging.computeKnnParameters(X, T, ints({2, 9}));
    EXPECT_EQ(parameters[0].toStlVector(), (std::vector<float>{2.0f, 9.0f}));
    EXPECT_EQ(parameters[1].toStlVector(), (std::vector<float>{14.0f, 70.0f}));
    EXPECT_THROW(averaging.computeKnnParameters(X, T, ints({1})), SizeError);
}

TEST(BladeAveraging, RankLimitCountsTheLeavesWithinSilvermansBandwidth)
{
    const BladeAveraging averaging;
    Vector<float> X(101);
    X.setSequence(0.0f, 1.0f);
    // Percentiles 25 and 75 are 25 and 75, the deviation is 29.3: the smaller one is it.
    const double h = 0.9 * std::sqrt(101.0 * 102.0 / 12.0) * std::pow(101.0, -0.2);
    const std::vector<float> found = averaging.computeOptimalKNNParameter(
        X, Vector<float>(std::vector<float>{50.25f, 50.25f, 0.0f}));
    EXPECT_NEAR(found[1], h, 1e-4);
    // h is 10.43: 40 to 60 lie within it of the first two targets, 0 to 10 of the last.
    EXPECT_EQ(found[0], std::floor((21.0f + 21.0f + 11.0f) / 3.0f));
    // All leaves lie within the bandwidth of no target: none counts, and two is the least.
    EXPECT_EQ(averaging.computeOptimalKNNParameter(X, Vector<float>(std::vector<float>{5e3f}))[0],
              2.0f);
}

TEST(BladeAveraging, RankSearchEqualsThePlainOne)
{
    const TemporaryFolder folder;
    for (const auto& [leaves, targets] : {std::pair(25, 12), std::pair(60, 300)}) {
        const Vector<float> X = randomKeys(leaves, unsigned(leaves));
        std::mt19937 engine(7);
        Vector<float> r(leaves);
        for (int j = 0; j < leaves; ++j) {
            r[j] = 0.7f + 0.0002f * X[j] + static_cast<float>(engine() % 100) * 1e-3f;
        }
        BladeAveraging averaging;
        averaging.setNumberOfAverages(targets);
        averaging.setBegin(X[0]);
        averaging.setEnd(X[leaves - 1]);
        Vector<int> K;
        averaging.computeOptimaKnn(X, r, K, folder.path().string() + "/");

        const DataSet table(folder.file("optima.csv"));
        ASSERT_EQ(table.numRows(), targets);
        Vector<float> T(targets);
        const float step = (X[leaves - 1] - X[0]) / static_cast<float>(targets);
        for (int i = 0; i < targets; ++i) {
            T[i] = i == 0 ? static_cast<float>(step * 0.5 + X[0]) : T[i - 1] + step;
            EXPECT_NEAR(table.getValues<float>("timePoint")[i], T[i], 1e-2f);
        }
        EXPECT_EQ(K.toStlVector(), plainRanks(averaging, X, r, T).toStlVector());
        EXPECT_EQ(table.getValues<int>("optima").toStlVector(), K.toStlVector());
    }
}

TEST(BladeAveraging, RankSearchRefusesWhatHasNoAnswer)
{
    const TemporaryFolder folder;
    BladeAveraging averaging;
    averaging.setTargets(Vector<float>(std::vector<float>{150.0f}));
    Vector<int> K;
    const Vector<float> X(std::vector<float>{100, 150, 200});
    Vector<float> r(3);
    r.fill(0.5f);
    EXPECT_THROW(averaging.computeOptimaKnn(X, Vector<float>(2), K, folder.file("")), SizeError);
    EXPECT_THROW(averaging.computeOptimaKnn(X, r, K, folder.file("none/")), FileWriteError);
    r.setZeros();
    EXPECT_THROW(averaging.computeOptimaKnn(X, r, K, folder.file("")), MathError);
    EXPECT_EQ(folder.fileCount(), 0);
}

TEST(BladeAveraging, MovedCopiesOfALeafAverageBySlidingToThatLeaf)
{
    const Curve<float> leaf = unevenLeaf();
    const Leaves leaves = copiesOf(leaf, 12, 85.0, 3);
    BladeAveraging averaging;
    averaging.setAlignment(AxisAlignment::SignedSine);
    averaging.setNumberOfAverages(5);
    averaging.setKOptimal(ints({3, 3, 4, 4, 5}));
    Vector<int> S(12);
    S.setSequence(1);
    Vector<float> X(12);
    X.setSequence(1000.0f, 10.0f);
    std::vector<Curve<float>> averages;
    averaging.computeSlidingAverages(leaves.curves, averages, S, X, false);
    ASSERT_EQ(averages.size(), 5u);
    EXPECT_NEAR(averaging.getDeltaX(), 22.0f, 1e-3f);
    EXPECT_NEAR(averaging.getXCoord(), 1011.0f, 1e-3f);
    const Curve<float> expected = moved(leaf, 1.0, 0.0, -0.5 * (leaf[0][0] + leaf[points - 1][0]),
                                        -0.5 * (leaf[0][1] + leaf[points - 1][1]));
    for (const Curve<float>& average : averages) {
        EXPECT_LT(shapeDifference(average, leaf), 1e-3f * bladeLength);
        EXPECT_LT(std::fabs(average[100][1]), 1e-3f * bladeLength);
        EXPECT_GT(average[100][0], 0.0f);
    }
    EXPECT_TRUE(averages[0].isOpen());
}

TEST(BladeAveraging, SlidingAverageIsTheWeightedMeanOfAllLeaves)
{
    // Leaves on the axis, each a scaled copy: the mean is a copy scaled by the mean of the scales.
    const Curve<float> leaf = moved(unevenLeaf(), 1.0, 0.0, 0.0, 0.0);
    Leaves leaves;
    Vector<float> X(10);
    Vector<int> S(10);
    for (int j = 0; j < 10; ++j) {
        X[j] = static_cast<float>(100 + 10 * j + j * j);
        S[j] = 9 - j;
    }
    for (int k = 0; k < 10; ++k) {
        leaves.add(moved(leaf, double(X[9 - k]) / 100.0, 0.0, 40.0, -7.0));
    }
    BladeAveraging averaging;
    averaging.setTargets(Vector<float>(std::vector<float>{150.0f, 110.0f}));
    averaging.setKOptimal(ints({3, 2}));
    std::vector<Curve<float>> averages;
    averaging.computeSlidingAverages(leaves.curves, averages, S, X, false);
    ASSERT_EQ(averages.size(), 2u);
    for (int i = 0; i < 2; ++i) {
        const float target = averaging.getTargets()[i];
        const float band = averaging.getKnnParameters()[1][i];
        const std::vector<double> w = plainWeights(X, target, band);
        double scale = 0.0;
        for (int j = 0; j < 10; ++j) {
            scale += w[size_t(j)] * double(X[j]) / 100.0;
        }
        EXPECT_LT(shapeDifference(averages[size_t(i)], moved(leaf, scale, 0.0, 0.0, 0.0)), 0.2f);
    }
}

TEST(BladeAveraging, PositiveSineDoublesTheTiltOfAnAxisThatPointsDown)
{
    const BladeAveraging averaging;
    Vector<float> axis(3);
    axis.setCanonical(0);
    for (int degrees = -179; degrees < 180; degrees += 7) {
        const float angle = static_cast<float>(degrees * pi / 180.0);
        Vector<float> v(3);
        v[0] = 5.0f * std::cos(angle);
        v[1] = 5.0f * std::sin(angle);
        v[2] = 0.0f;
        const Vector<float> signedTurn = axisRotation(v, axis, AxisAlignment::SignedSine) * v;
        EXPECT_NEAR(signedTurn[0], 5.0f, 1e-4f) << degrees;
        EXPECT_NEAR(signedTurn[1], 0.0f, 1e-2f) << degrees;
        const Vector<float> turned = averaging.computeRotationMatrix(v, axis) * v;
        const float expected = degrees >= 0 ? 0.0f : 2.0f * angle;
        EXPECT_NEAR(turned[0], 5.0f * std::cos(expected), 1e-2f) << degrees;
        EXPECT_NEAR(turned[1], 5.0f * std::sin(expected), 1e-2f) << degrees;
    }
}

TEST(BladeSymmetrization, HalvesBecomeMirrorImages)
{
    for (double degrees : {0.0, 35.0, 150.0}) {
        const Curve<float> leaf = moved(unevenLeaf(), 1.0, degrees, 70.0, -30.0);
        const BladeSymmetrization symmetrizer;
        const Curve<float> framed = symmetrizer.computeSymetrizeContour(leaf, true);
        const Curve<float> inPlace = symmetrizer.computeSymetrizeContour(leaf, false);
        for (int i = 0; i <= points / 2; ++i) {
            EXPECT_EQ(framed[i][0], framed[points - 1 - i][0]);
            EXPECT_EQ(framed[i][1], -framed[points - 1 - i][1]);
        }
        EXPECT_LT(shapeDifference(framed, inPlace), 2e-3f);
        const Vector<float> base = (leaf[0] + leaf[points - 1]) * 0.5f;
        EXPECT_LT(((inPlace[0] + inPlace[points - 1]) * 0.5f).distance(base), 1e-3f);
        EXPECT_NEAR(inPlace[100].distance(leaf[100]), 0.0f, 1e-2f) << "the tip stays";
        EXPECT_LT(largestDistance(symmetrizer.computeSymetrizeContour(inPlace, false), inPlace),
                  1e-2f)
            << "twice is once";
        EXPECT_TRUE(inPlace.isOpen());
    }
    EXPECT_EQ(BladeSymmetrization()
                  .computeSymetrizeContour(Curve<float>(3, 0, 0, 0, true), false)
                  .getSize(),
              0);
}
