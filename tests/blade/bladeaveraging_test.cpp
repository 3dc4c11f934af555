#include "blade/averages/bladeaveraging.h"
#include "blade/geometry/bladesymmetrization.h"
#include "support/temporaryfolder.h"
#include "system/dataset.h"
#include "system/exception.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <numeric>
#include <random>

namespace {

using Floats = std::vector<float>;
using Ints = std::vector<int>;

constexpr int points = 201;
constexpr float bladeLength = 500.0f;

/// Open outline of an uneven leaf from the one junction to the other; its axis from the origin along
/// the first coordinate axis, its tip at vertex 100, at `bladeLength`.
Curve<float> unevenLeaf()
{
    Curve<float> curve(3, points, 0, 0, true);
    for (int i = 0; i < points; ++i) {
        const bool first = i <= 100;
        const double t = first ? i / 100.0 : (200 - i) / 100.0;
        const double side = first ? -1.0 : 0.8;
        const double width = 10.0 * (1.0 - t) / std::fabs(side) + 110.0 * std::sin(M_PI * t) +
                             9.0 * std::sin((first ? 24.0 : 30.0) * M_PI * t);
        curve[i][0] = static_cast<float>(bladeLength * t);
        curve[i][1] = static_cast<float>(side * width);
        curve[i][2] = 0.0f;
    }
    return curve;
}

/// Scaled, then turned, then moved.
Curve<float>
moved(const Curve<float>& curve, double scale, double degrees = 0, double dx = 0, double dy = 0)
{
    Curve<float> result = curve;
    result.detach();
    const double c = std::cos(degrees * M_PI / 180.0) * scale;
    const double s = std::sin(degrees * M_PI / 180.0) * scale;
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
    Leaves() = default;

    /// Moved copies of one leaf.
    Leaves(const Curve<float>& curve, int number, double largestAngle, unsigned seed)
    {
        std::mt19937 engine(seed);
        std::uniform_real_distribution<double> angle(-largestAngle, largestAngle);
        std::uniform_real_distribution<double> shift(-2000.0, 2000.0);
        for (int k = 0; k < number; ++k) {
            const double turn = angle(engine);
            const double dx = shift(engine);
            add(moved(curve, 1.0, turn, dx, shift(engine)));
        }
    }

    void add(const Curve<float>& curve)
    {
        owned.push_back(std::make_unique<Curve<float>>(curve));
        curves.push_back(owned.back().get());
    }

    std::vector<std::unique_ptr<Curve<float>>> owned;
    std::vector<Curve<float>*> curves;
};

/// The averages of bins: leaf j belongs to bin `bins[j]`.
std::vector<Curve<float>> binAverages(const Leaves& leaves, const Floats& bins, const Ints& counts)
{
    const int n = static_cast<int>(bins.size());
    Matrix<float> matrix;
    matrix.setZeros(6, n);
    matrix[0].setSequence(0.0f, 1.0f);
    matrix.setRow(4, Vector<float>(bins));
    BladeAveraging averaging;
    averaging.setNumberOfAverages(static_cast<int>(counts.size()));
    std::vector<Curve<float>> averages;
    averaging.computeNewHomogeneousAverages(leaves.curves, averages, matrix, Vector<int>(counts));
    return averages;
}

/// Ascending keys, some of them equal.
Vector<float> randomKeys(int number, unsigned seed)
{
    std::mt19937 engine(seed);
    Floats keys;
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
    const auto at = [&](double x) { return distribution(x, mean, sigma); };
    const Floats keys = X.toStlVector(); // they ascend
    std::vector<double> weights;
    for (const float x : keys) {
        const auto [first, last] = std::equal_range(keys.begin(), keys.end(), x);
        const double low = first == keys.begin() ? at(0.0) - at(x) : at(*(first - 1));
        const double high = last == keys.end() ? 2.0 - at(x) : at(*last);
        weights.push_back((high - low) * 0.5 / static_cast<double>(last - first));
    }
    return weights;
}

/// The rank search without any saving: every rank sorts the distances anew.
Ints plainRanks(const BladeAveraging& averaging,
                const Vector<float>& X,
                const Vector<float>& r,
                const Vector<float>& T)
{
    const int ranks = static_cast<int>(averaging.computeOptimalKNNParameter(X, T)[0]);
    std::vector<Floats> columns;
    Floats all;
    for (const float t : T.toStlVector()) {
        columns.emplace_back();
        for (int k = 1; k <= ranks; ++k) {
            const Vector<double> w =
                averaging.balanceSample(X, t, averaging.computeBandWith(X, t, k));
            double m = 0.0;
            double v = 0.0;
            for (int j = 0; j < X.getSize(); ++j) {
                m += r[j] * w[j];
            }
            for (int j = 0; j < X.getSize(); ++j) {
                v += (r[j] - m) * (r[j] - m) * w[j];
            }
            columns.back().push_back(static_cast<float>(std::sqrt(v) / m * 100.0));
            all.push_back(columns.back().back());
        }
    }
    const auto [least, most] = std::minmax_element(all.begin(), all.end());
    const auto band = static_cast<float>((*most - *least) * 0.05);
    Ints K;
    for (const Floats& column : columns) {
        std::size_t q = size_t(std::min_element(column.begin(), column.end()) - column.begin());
        const float threshold = band + column[q];
        while (q + 1 < column.size() && column[q + 1] < threshold) {
            ++q;
        }
        K.push_back(static_cast<int>(q) + 3);
    }
    const int n = T.getSize();
    const int span = static_cast<int>(n * 0.015);
    for (int i = 0; span > 3 && i < n; ++i) {
        const int first = std::max(i - span, 1);
        const int last = std::min(i + span, n);
        const double sum = std::accumulate(K.begin() + first, K.begin() + last, 0.0);
        K[size_t(i)] = static_cast<int>(sum / (last - first));
    }
    return K;
}

} // namespace

TEST(BladeAveraging, MovedCopiesOfALeafAverageByBinsToThatLeaf)
{
    const Curve<float> leaf = unevenLeaf();
    const Leaves leaves(leaf, 9, 180.0, 1);
    const Curve<float> before = moved(*leaves.curves[0], 1.0);
    std::vector<Curve<float>> averages =
        binAverages(leaves, {0, 0, 0, 0, 0, 1, 2, 2, 2}, {5, 1, 3});
    ASSERT_EQ(averages.size(), 3u);
    EXPECT_LT(shapeDifference(averages[0], leaf), 1e-3f * bladeLength);
    EXPECT_LT(shapeDifference(averages[2], leaf), 1e-3f * bladeLength);
    EXPECT_EQ(averages[1].getSize(), 0) << "a single leaf is no average";
    EXPECT_TRUE(averages[0].isOpen() && averages[1].isOpen());
    EXPECT_EQ(largestDistance(*leaves.curves[0], before), 0.0f) << "the leaves stay as they are";
    averages[0].setOpen(false);
    EXPECT_GT(averages[0].twiceArea(0, 1), 0.0f) << "no copy was mirrored";
    // Leaves keep their sizes.
    Leaves scaled;
    scaled.add(moved(leaf, 0.5, 30.0, 100.0, 0.0));
    scaled.add(moved(leaf, 1.0, -120.0, 0.0, 50.0));
    scaled.add(moved(leaf, 1.8, 75.0, -300.0, 9.0));
    EXPECT_LT(shapeDifference(binAverages(scaled, {0, 0, 0}, {3})[0], moved(leaf, 1.1)),
              1e-3f * bladeLength);
}

TEST(BladeAveraging, TheLeavesOfABinGetFifteenRoundsToTurnToEachOther)
{
    // A rosette shares a wave with either neighbour: the middle of their turns is its best one.
    const int number = 10;
    Leaves leaves;
    std::vector<double> turns{0, 12, 24, 36, 48, 60, 72, 84, 96, 108};
    for (int k = 0; k < number; ++k) {
        Curve<float> rosette = unevenLeaf();
        for (int i = 0; i < points; ++i) {
            const auto wave = std::polar(1.0, 2.0 * M_PI * i / points);
            const auto place = std::pow(wave, k + 1) + std::pow(wave, k + 2);
            rosette[i][0] = static_cast<float>(place.real());
            rosette[i][1] = static_cast<float>(place.imag());
        }
        leaves.add(moved(rosette, 1.0, turns[size_t(k)]));
    }
    for (int step = 0; step < 15 * number; ++step) {
        const int k = step % number;
        const double before = turns[size_t(k > 0 ? k - 1 : 1)];
        const double after = turns[size_t(k + 1 < number ? k + 1 : k - 1)];
        turns[size_t(k)] = (before + after) / 2.0;
    }
    Curve<float> expected = moved(unevenLeaf(), 0.0);
    for (int k = 0; k < number; ++k) {
        expected += moved(*leaves.curves[size_t(k)], 1.0 / number, turns[size_t(k)] - 12.0 * k);
    }
    const Curve<float> average = binAverages(leaves, Floats(number, 0.0f), {number})[0];
    EXPECT_LT(largestDistance(average, expected), 1e-3f);
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
        double dropped = 0.0;
        for (int i = 0; i < X.getSize(); ++i) {
            const double expected = plain[size_t(i)];
            dropped += weights[i] == 0.0 ? expected : 0.0;
            EXPECT_TRUE(weights[i] == 0.0 || weights[i] >= 0.999e-5);
            if (std::fabs(expected - 1e-5) > 4e-7) {
                EXPECT_NEAR(weights[i], expected < 1e-5 ? 0.0 : expected, 4e-7) << seed << " " << i;
            }
        }
        EXPECT_NEAR(weights.sum(), 1.0 - 0.5 * distribution(0.0, mean, sigma) - dropped, 2e-6);
    }
    // Without a width the nearest keys share the weight, and beyond all leaves the last takes it.
    const Vector<float> X(Floats{100, 200, 200, 300});
    EXPECT_EQ(averaging.balanceSample(X, 200.0f, 0.0f).toStlVector(),
              (std::vector<double>{0.25, 0.25, 0.25, 0.25}));
    EXPECT_NEAR(averaging.balanceSample(X, 900.0f, 10.0f)[3], 1.0, 1e-6);
}

TEST(BladeAveraging, BandwidthIsTheDistanceOfTheNearestLeafOfThatRank)
{
    const BladeAveraging averaging;
    const Vector<float> X(Floats{10, 20, 40, 80});
    const float expected[] = {4.0f, 14.0f, 16.0f, 56.0f, 56.0f, 56.0f};
    for (int k = 1; k <= 6; ++k) {
        EXPECT_EQ(averaging.computeBandWith(X, 24.0f, k), expected[k - 1]) << k;
    }
    const Vector<float> T(Floats{24.0f, 80.0f});
    const Matrix<float> parameters = averaging.computeKnnParameters(X, T, Vector<int>(Ints{2, 9}));
    EXPECT_EQ(parameters[0].toStlVector(), (Floats{2.0f, 9.0f}));
    EXPECT_EQ(parameters[1].toStlVector(), (Floats{14.0f, 70.0f}));
    EXPECT_THROW(averaging.computeKnnParameters(X, T, Vector<int>(Ints{1})), SizeError);
}

TEST(BladeAveraging, RankLimitCountsTheLeavesWithinSilvermansBandwidth)
{
    const BladeAveraging averaging;
    Vector<float> X(101);
    X.setSequence(0.0f, 1.0f);
    // Percentiles 25 and 75 are 25 and 75, the deviation is 29.3: the smaller one is it.
    const double h = 0.9 * std::sqrt(101.0 * 102.0 / 12.0) * std::pow(101.0, -0.2);
    const Floats found =
        averaging.computeOptimalKNNParameter(X, Vector<float>(Floats{50.25f, 50.25f, 0.0f}));
    EXPECT_NEAR(found[1], h, 1e-4);
    // h is 10.43: 40 to 60 lie within it of the first two targets, 0 to 10 of the last.
    EXPECT_EQ(found[0], std::floor((21.0f + 21.0f + 11.0f) / 3.0f));
    // All leaves lie within the bandwidth of no target: none counts, and two is the least.
    EXPECT_EQ(averaging.computeOptimalKNNParameter(X, Vector<float>(Floats{5e3f}))[0], 2.0f);
    // Cubes crowd in the middle: their quartiles are 25^3 off it, the deviation is far more.
    for (int j = 0; j < 101; ++j) {
        X[j] = static_cast<float>((j - 50) * (j - 50) * (j - 50));
    }
    EXPECT_NEAR(averaging.computeOptimalKNNParameter(X, X)[1],
                0.9 * 2.0 * 15625.0 / 1.34 * std::pow(101.0, -0.2), 0.01);
}

TEST(BladeAveraging, RankSearchEqualsThePlainOneOrRefusesWhatHasNoAnswer)
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
        EXPECT_EQ(K.toStlVector(), plainRanks(averaging, X, r, T));
        EXPECT_EQ(table.getValues<int>("optima").toStlVector(), K.toStlVector());
    }
    std::filesystem::remove(folder.file("optima.csv"));
    BladeAveraging averaging;
    averaging.setTargets(Vector<float>(Floats{150.0f}));
    Vector<int> K;
    const Vector<float> X(Floats{100, 150, 200});
    Vector<float> r(Floats{0.5f, 0.5f, 0.5f});
    EXPECT_THROW(averaging.computeOptimaKnn(X, Vector<float>(2), K, folder.file("")), SizeError);
    EXPECT_THROW(averaging.computeOptimaKnn(X, r, K, folder.file("none/")), FileWriteError);
    r.setZeros();
    EXPECT_THROW(averaging.computeOptimaKnn(X, r, K, folder.file("")), MathError);
    EXPECT_EQ(folder.fileCount(), 0);
}

TEST(BladeAveraging, SlidingAverageIsTheWeightedMeanOfAllLeaves)
{
    // Leaves on the axis, each a scaled copy: the mean is a copy scaled by the mean of the scales.
    const Curve<float> leaf = unevenLeaf();
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
    averaging.setTargets(Vector<float>(Floats{150.0f, 110.0f}));
    averaging.setKOptimal(Vector<int>(Ints{3, 2}));
    std::vector<Curve<float>> averages;
    averaging.computeSlidingAverages(leaves.curves, averages, S, X, false);
    ASSERT_EQ(averages.size(), 2u);
    for (int i = 0; i < 2; ++i) {
        const std::vector<double> w =
            plainWeights(X, averaging.getTargets()[i], averaging.getKnnParameters()[1][i]);
        double scale = 0.0;
        for (int j = 0; j < 10; ++j) {
            scale += w[size_t(j)] * double(X[j]) / 100.0;
        }
        EXPECT_LT(shapeDifference(averages[size_t(i)], moved(leaf, scale)), 0.2f);
    }
}

TEST(BladeAveraging, PositiveSineDoublesTheTiltOfAnAxisThatPointsDown)
{
    const BladeAveraging averaging;
    Vector<float> axis(3);
    axis.setCanonical(0);
    for (int degrees = -179; degrees < 180; degrees += 7) {
        const float angle = static_cast<float>(degrees * M_PI / 180.0);
        const Vector<float> v(Floats{5.0f * std::cos(angle), 5.0f * std::sin(angle), 0.0f});
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
    const BladeSymmetrization symmetrizer;
    for (double degrees : {0.0, 35.0, 150.0}) {
        const Curve<float> leaf = moved(unevenLeaf(), 1.0, degrees, 70.0, -30.0);
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
    const Curve<float> none(3, 0, 0, 0, true);
    EXPECT_EQ(symmetrizer.computeSymetrizeContour(none, false).getSize(), 0);
}
