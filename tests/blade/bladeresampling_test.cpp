#include "blade/averages/averagingprocess.h"
#include "blade/averages/bladeresampling.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>

namespace {

using Lists = std::vector<Vector<int>>;

/// Resamples a stack whose leaves have the given numbers of teeth on each side.
struct Resampled
{
    Resampled(const std::vector<int>& teeth, bool sinuses, bool peaks, int points)
    {
        for (const int count : teeth) {
            leaf::Shape shape;
            const auto k = static_cast<double>(outlines.size());
            shape.teethPerSide = count;
            shape.toothHeight = 40.0;
            shape.length = 600.0 - 70.0 * k;
            shape.angleDegrees = 20.0 * k;
            outlines.push_back(leaf::draw(shape));
        }
        stack = leaf::landmarkedStack(outlines);
        for (int slice = 0; slice < stack->getNumSlices(); ++slice) {
            leaf::setPixelWidth(*stack, slice, width(slice));
        }
        process.setStack(*stack);
        process.sinusIsEnabled(sinuses);
        process.peakIsEnabled(peaks);
        process.setResamplingPointsNumber(points);
    }

    void run()
    {
        for (Curve<float>* curve : process.computeResampling(O)) {
            curves.emplace_back(curve);
        }
        Vector<int> apexes;
        Vector<int> n1;
        Vector<int> n2;
        process.findLandmarks(first, second, apexes, n1, n2);
    }

    static float width(int slice) { return 0.5f + static_cast<float>(slice); }

    /// Whether vertex `i` of a resampled curve is the contour vertex at `index`.
    bool stands(int slice, int i, int index) const
    {
        leaf::Probe probe(*stack);
        probe.getModels(slice);
        const Vector<float>& found = (*curves[static_cast<std::size_t>(slice)])[i];
        const Vector<float>& place = (*probe.contour)[index];
        return found[0] == place[0] * width(slice) && found[1] == place[1] * width(slice);
    }

    /// Vertices in front of segment `segment`.
    int begin(int segment) const
    {
        int sum = 0;
        for (int i = 0; i < segment; ++i) {
            sum += O[i];
        }
        return sum;
    }

    std::vector<leaf::Outline> outlines;
    std::unique_ptr<LMXStack> stack;
    AveragingProcess process;
    Vector<int> O;
    std::vector<std::unique_ptr<Curve<float>>> curves;
    Lists first;
    Lists second;
};

Lists randomLists(std::mt19937& engine, int leaves, int longest)
{
    Lists lists;
    for (int k = 0; k < leaves; ++k) {
        const unsigned size = k == 0 ? longest : 2 + engine() % unsigned(longest - 1);
        std::set<int> indexes;
        while (indexes.size() < size) {
            indexes.insert(static_cast<int>(engine() % 3000));
        }
        lists.push_back(Vector<int>(std::vector<int>(indexes.begin(), indexes.end())));
    }
    return lists;
}

/// Mean relative places of the lists of `n` entries, times 0.5, in double precision.
std::vector<double> meanPlaces(const Lists& lists, int n)
{
    std::vector<double> mean;
    for (int i = 0; i < n; ++i) {
        double sum = 0.0;
        int count = 0;
        for (const Vector<int>& list : lists) {
            if (list.getSize() == n) {
                sum += 0.5 * (list[i] - list[0]) / (list[n - 1] - list[0]);
                ++count;
            }
        }
        mean.push_back(sum / count);
    }
    return mean;
}

void expectNear(const Vector<float>& found, const std::vector<double>& expected)
{
    ASSERT_EQ(found.getSize(), static_cast<int>(expected.size()));
    for (int i = 0; i < found.getSize(); ++i) {
        EXPECT_NEAR(found[i], expected[static_cast<std::size_t>(i)], 1e-6) << i;
    }
}

} // namespace

TEST(BladeResampling, LandmarksOfAllLeavesStandAtTheSamePlacesCountedFromTheApex)
{
    for (const bool peaks : {true, false}) {
        Resampled leaves({4, 2, 3}, true, peaks, 1000);
        leaves.run();
        const int m = leaves.first[0].getSize();
        ASSERT_EQ(m, peaks ? 11 : 7);
        for (int slice = 0; slice < 3; ++slice) {
            SCOPED_TRACE(slice);
            const auto k = static_cast<std::size_t>(slice);
            const Vector<int>& first = leaves.first[k];
            const Vector<int>& second = leaves.second[k];
            ASSERT_EQ(leaves.curves[k]->getSize(), 1000);
            EXPECT_TRUE(leaves.curves[k]->isOpen());
            EXPECT_EQ(leaves.curves[k]->getName(), "leaf" + std::to_string(slice));
            EXPECT_TRUE(leaves.stands(slice, 0, first[0]));
            for (int back = 0; back < first.getSize() - 1; ++back) {
                // The end of a segment and the begin of the next.
                const int end = leaves.begin(m - 1 - back);
                const int index = first[first.getSize() - 1 - back];
                EXPECT_TRUE(leaves.stands(slice, end - 1, index)) << back;
                EXPECT_TRUE(leaves.stands(slice, end, index)) << back;
            }
            for (int on = 0; on < second.getSize() - 1; ++on) {
                EXPECT_TRUE(leaves.stands(slice, leaves.begin(m - 1 + on), second[on])) << on;
            }
            EXPECT_TRUE(leaves.stands(slice, 999, second[second.getSize() - 1]));
            for (int i = 0; i < 1000; ++i) {
                const Vector<float> place = (*leaves.curves[k])[i] / Resampled::width(slice);
                EXPECT_LT(leaf::distanceToOutline(leaves.outlines[k], {place[0], place[1]}), 1.5);
                EXPECT_EQ(place[2], 0.0f);
            }
        }
    }
}

TEST(BladeResampling, WithoutInnerLandmarksEachHalfIsEvenlySpaced)
{
    Resampled leaves({4, 0}, false, false, 501);
    leaves.run();
    ASSERT_EQ(leaves.O, vectorOf<int>({250, 251}));
    for (std::size_t k = 0; k < 2; ++k) {
        const int slice = static_cast<int>(k);
        ASSERT_EQ(leaves.curves[k]->getSize(), 501);
        EXPECT_TRUE(leaves.stands(slice, 249, leaves.first[k][1]));
        EXPECT_TRUE(leaves.stands(slice, 250, leaves.first[k][1]));
        EXPECT_TRUE(leaves.stands(slice, 500, leaves.second[k][1]));
    }
}

TEST(BladeResampling, ASmoothHalfIsCutByTheSpacingsOfTheOneToothedLeaf)
{
    for (const bool symmetric : {true, false}) {
        Resampled leaves({4, 1, 0}, true, true, 1000);
        leaves.process.setSymmetrizationState(symmetric);
        leaves.run();
        const Vector<float> T =
            leaves.process.averageNormalizedIntervalsForOneTooth(leaves.first, leaves.second);
        const Vector<int>& first = leaves.first[2];
        const Vector<int>& second = leaves.second[2];
        ASSERT_EQ(first.getSize(), 2);
        ASSERT_EQ(leaves.O.getSize(), 20);
        ASSERT_EQ(leaves.curves[2]->getSize(), 1000);
        const float span = 2.0f * static_cast<float>(first[1] - first[0]);
        const float secondSpan = 2.0f * static_cast<float>(second[1] - second[0]);
        const float steps[] = {T[2] - T[1], T[2] - T[1], T[3] - T[2]};
        int q = first[0];
        int p = second[0];
        for (int cut = 0; cut < 3; ++cut) {
            q += static_cast<int>(steps[cut] * span);
            EXPECT_TRUE(leaves.stands(2, leaves.begin(7 + cut) - 1, q)) << cut;
            p = static_cast<int>(static_cast<float>(p) + (T[5 + cut] - T[4 + cut]) * secondSpan);
            EXPECT_TRUE(leaves.stands(2, leaves.begin(11 + cut) - 1, p)) << cut;
        }
        EXPECT_TRUE(leaves.stands(2, leaves.begin(10) - 1, first[1]));
    }
}

TEST(BladeResampling, ReferencePositionsAgreeWithTheirMeansAndSpendAllPoints)
{
    std::mt19937 engine(3);
    for (int round = 0; round < 300; ++round) {
        const int m1 = 2 + static_cast<int>(engine() % 9);
        const int m2 = round % 3 == 0 ? m1 : 2 + static_cast<int>(engine() % 9);
        const Lists first = randomLists(engine, 7, m1);
        const Lists second = randomLists(engine, 7, m2);
        const std::vector<double> A = meanPlaces(first, m1);
        const std::vector<double> B = meanPlaces(second, m2);
        std::vector<double> asRead = A;
        for (std::size_t i = 1; i < B.size(); ++i) {
            asRead.push_back(0.5 + B[i]);
        }
        const std::size_t m = std::max(A.size(), B.size());
        std::vector<double> mirrored(2 * m - 1);
        for (std::size_t i = 0; i < m; ++i) {
            mirrored[i] = m1 > m2 ? A[i] : m1 < m2 ? 0.5 - B[m - 1 - i] : (A[i] + B[i]) / 2;
            mirrored[2 * m - 2 - i] = 1.0 - mirrored[i];
        }
        for (const bool symmetric : {false, true}) {
            AveragingProcess process;
            process.setSymmetrizationState(symmetric);
            const Vector<float> R = process.averageNormalizedIntervals(first, second, m1, m2);
            expectNear(R, symmetric ? mirrored : asRead);
            EXPECT_EQ(R[0], 0.0f);
            EXPECT_EQ(R[R.getSize() - 1], 1.0f);
        }
    }
}

TEST(BladeResampling, TheOneToothedPositionsAreMirroredOrEquallySpaced)
{
    const Lists first = {vectorOf<int>({10, 50, 70, 100, 110}), vectorOf<int>({0, 9})};
    const Lists second = {vectorOf<int>({110, 120, 160, 190, 210}), vectorOf<int>({9, 20})};
    const Lists none = {vectorOf<int>({10, 50})};
    AveragingProcess process;
    // First half 0.2, 0.3, 0.45 from the base; the second one mirrored 0.1, 0.25, 0.45.
    expectNear(process.averageNormalizedIntervalsForOneTooth(first, second),
               {0.0, 0.15, 0.275, 0.45, 0.5, 0.55, 0.725, 0.85, 1.0});
    expectNear(process.averageNormalizedIntervalsForOneTooth(none, none),
               {0.0, 0.125, 0.25, 0.375, 0.5, 0.625, 0.75, 0.875, 1.0});
    process.setSymmetrizationState(false);
    expectNear(process.averageNormalizedIntervalsForOneTooth(first, second),
               {0.0, 0.2, 0.3, 0.45, 0.5, 0.55, 0.75, 0.9, 1.0});
}

TEST(BladeResampling, APartOfAContourRunsOverItsBeginIfItsEndIsNotBehind)
{
    const Curve<float> square = Curve<float>::square(0.0f, 0.0f, 1.0f);
    const auto expectPlaces = [&](unsigned start, unsigned end, const std::vector<int>& places) {
        const Curve<float> part = BladeResampling().extractSubCurve(square, start, end);
        EXPECT_TRUE(part.isOpen());
        ASSERT_EQ(part.getSize(), static_cast<int>(places.size()));
        for (int i = 0; i < part.getSize(); ++i) {
            EXPECT_EQ(part[i], square[places[static_cast<std::size_t>(i)]]);
        }
    };
    expectPlaces(1, 3, {1, 2, 3});
    expectPlaces(3, 1, {3, 0, 1});
    expectPlaces(2, 2, {2, 3, 0, 1, 2});
}

TEST(BladeResampling, ALandmarkOnAnotherCountsOnceAndALeafWithoutItsLandmarksIsNamed)
{
    const char* where = "void AveragingProcess::findLandmarks(...)";
    Resampled leaves({2, 2}, true, true, 400);
    auto tips = leaves.outlines[0].tips;
    tips.push_back(leaves.outlines[0].apex);
    tips.push_back(tips.front());
    leaf::remark(*leaves.stack, "Primary Peak", 0, tips);
    leaves.run();
    for (const Lists& lists : {leaves.first, leaves.second}) {
        EXPECT_EQ(lists[0].getSize(), 7);
        EXPECT_EQ(lists[1].getSize(), 7);
    }
    EXPECT_EQ(leaves.curves[0]->getSize(), 400);
    delete leaf::findItem(*leaves.stack, "Apex", 1);
    EXPECT_RAISES(UsageError, where, "Slice leaf1 lacks contour, two junctions or apex",
                  leaves.run());
    leaf::mark(*leaves.stack, "Apex", 1, {leaves.outlines[1].points[0]});
    EXPECT_RAISES(UsageError, where, "Slice leaf1: the apex is not between the two junctions",
                  leaves.run());
}

TEST(BladeResampling, PositionsThatEndShortOfTheContourAreTold)
{
    Resampled leaves({0}, false, false, 100);
    leaves.run();
    BladeResampling process;
    process.setStack(*leaves.stack);
    process.setResamplingPointNumber(100);
    process.setMaximumNumberLandmarksPerFirstHalfLeaf(2);
    process.setMaximumNumberLandmarksPerSecondHalfLeaf(2);
    const Vector<int> two = vectorOf<int>({2});
    testing::internal::CaptureStdout();
    const std::unique_ptr<Curve<float>> curve(
        process.resampling(leaves.first, leaves.second, two, two,
                           vectorOf<float>({0.0f, 0.5f, 0.9f}), Vector<float>(9), leaves.O)[0]);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n&& ERROR : 90\n");
    EXPECT_EQ(curve->getSize(), 90);
}
