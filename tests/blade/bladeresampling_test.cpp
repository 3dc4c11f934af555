#include "blade/averagingprocess.h"
#include "blade/bladeresampling.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <set>

namespace {

using Lists = std::vector<Vector<int>>;
using Curves = std::vector<std::unique_ptr<Curve<float>>>;

/// Resamples a stack whose leaves have the given numbers of teeth on each side.
struct Resampled
{
    Resampled(const std::vector<int>& teeth, bool sinuses, bool peaks, int points)
        : process()
    {
        for (std::size_t k = 0; k < teeth.size(); ++k) {
            leaf::Shape shape;
            shape.teethPerSide = teeth[k];
            shape.toothHeight = 40.0;
            shape.length = 600.0 - 70.0 * static_cast<double>(k);
            shape.angleDegrees = 20.0 * static_cast<double>(k);
            outlines.push_back(leaf::draw(shape));
        }
        stack = leaf::stackOf(outlines);
        for (std::size_t k = 0; k < teeth.size(); ++k) {
            const int slice = static_cast<int>(k);
            leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, slice, {outlines[k].apex});
            if (teeth[k] > 0) {
                leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, slice,
                              outlines[k].sinuses);
                leaf::addItem(*stack, "Primary Peak", PRIMITIVE_POLYPOINT, slice, outlines[k].tips);
            }
            PixelCalibration calibration;
            calibration.setPixelWidth(width(slice));
            stack->getSlice(slice).setPixelCalibration(calibration);
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
        const Curve<float>& curve = *curves[static_cast<std::size_t>(slice)];
        const Vector<float>& place = (*probe.contour)[index];
        return curve[i][0] == place[0] * width(slice) && curve[i][1] == place[1] * width(slice);
    }

    std::vector<leaf::Outline> outlines;
    std::unique_ptr<LMXStack> stack;
    AveragingProcess process;
    Vector<int> O;
    Curves curves;
    Lists first;
    Lists second;
};

Lists randomLists(std::mt19937& engine, int leaves, int longest)
{
    Lists lists;
    for (int k = 0; k < leaves; ++k) {
        const int size = k == 0 ? longest : 2 + static_cast<int>(engine() % unsigned(longest - 1));
        std::set<int> indexes;
        while (static_cast<int>(indexes.size()) < size) {
            indexes.insert(static_cast<int>(engine() % 3000));
        }
        lists.push_back(Vector<int>(std::vector<int>(indexes.begin(), indexes.end())));
    }
    return lists;
}

/// Mean relative places of the lists of `n` entries, times 0.5, in double precision.
std::vector<double> meanPlaces(const Lists& lists, int n)
{
    std::vector<double> mean(static_cast<std::size_t>(n), 0.0);
    int count = 0;
    for (const Vector<int>& list : lists) {
        for (int i = 0; list.getSize() == n && i < n; ++i) {
            mean[static_cast<std::size_t>(i)] +=
                0.5 * (list[i] - list[0]) / (list[n - 1] - list[0]);
        }
        count += list.getSize() == n ? 1 : 0;
    }
    for (double& place : mean) {
        place /= count;
    }
    return mean;
}

} // namespace

TEST(BladeResampling, LandmarksOfAllLeavesStandAtTheSamePlacesCountedFromTheApex)
{
    for (const bool peaks : {true, false}) {
        Resampled leaves({4, 2, 3}, true, peaks, 1000);
        leaves.run();
        const int m = leaves.first[0].getSize();
        ASSERT_EQ(m, peaks ? 11 : 7);
        Vector<int> ends(leaves.O.getSize() + 1);
        ends[0] = 0;
        for (int i = 0; i < leaves.O.getSize(); ++i) {
            ends[i + 1] = ends[i] + leaves.O[i];
        }
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
                const int end = ends[m - 1 - back];
                const int index = first[first.getSize() - 1 - back];
                EXPECT_TRUE(leaves.stands(slice, end - 1, index)) << back;
                EXPECT_TRUE(leaves.stands(slice, end, index)) << back;
            }
            for (int on = 0; on < second.getSize() - 1; ++on) {
                EXPECT_TRUE(leaves.stands(slice, ends[m - 1 + on], second[on])) << on;
            }
            EXPECT_TRUE(leaves.stands(slice, 999, second[second.getSize() - 1]));
            for (int i = 0; i < 1000; ++i) {
                const Vector<float>& place = (*leaves.curves[k])[i];
                const double w = Resampled::width(slice);
                EXPECT_LT(leaf::distanceToOutline(leaves.outlines[k], {place[0] / w, place[1] / w}),
                          1.5);
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
    for (const auto& curve : leaves.curves) {
        ASSERT_EQ(curve->getSize(), 501);
        EXPECT_EQ((*curve)[249], (*curve)[250]);
    }
    for (int slice = 0; slice < 2; ++slice) {
        const auto k = static_cast<std::size_t>(slice);
        EXPECT_TRUE(leaves.stands(slice, 249, leaves.first[k][1]));
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
        const Vector<int>& O = leaves.O;
        const Vector<int>& first = leaves.first[2];
        const Vector<int>& second = leaves.second[2];
        ASSERT_EQ(first.getSize(), 2);
        ASSERT_EQ(O.getSize(), 20);
        ASSERT_EQ(leaves.curves[2]->getSize(), 1000);
        int end = 0;
        for (int i = 0; i <= 6; ++i) {
            end += O[i];
        }
        const float span = 2.0f * static_cast<float>(first[1] - first[0]);
        int q = first[0];
        const float steps[] = {T[2] - T[1], T[2] - T[1], T[3] - T[2]};
        for (int cut = 0; cut < 3; ++cut) {
            q += static_cast<int>(steps[cut] * span);
            EXPECT_TRUE(leaves.stands(2, end - 1, q)) << cut;
            end += O[7 + cut];
        }
        EXPECT_TRUE(leaves.stands(2, end - 1, first[1]));
        const float secondSpan = 2.0f * static_cast<float>(second[1] - second[0]);
        q = second[0];
        for (int cut = 0; cut < 3; ++cut) {
            end += O[10 + cut];
            q = static_cast<int>(static_cast<float>(q) + (T[5 + cut] - T[4 + cut]) * secondSpan);
            EXPECT_TRUE(leaves.stands(2, end - 1, q)) << cut;
        }
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
        AveragingProcess process;
        process.setSymmetrizationState(false);
        const Vector<float> plain = process.averageNormalizedIntervals(first, second, m1, m2);
        std::vector<double> A = meanPlaces(first, m1);
        std::vector<double> B = meanPlaces(second, m2);
        ASSERT_EQ(plain.getSize(), m1 + m2 - 1);
        for (int i = 0; i < plain.getSize(); ++i) {
            const double place = i < m1 ? A[static_cast<std::size_t>(i)]
                                        : 0.5 + B[static_cast<std::size_t>(i - m1 + 1)];
            EXPECT_NEAR(plain[i], place, 1e-6);
        }
        process.setSymmetrizationState(true);
        const Vector<float> R = process.averageNormalizedIntervals(first, second, m1, m2);
        const int m = std::max(m1, m2);
        ASSERT_EQ(R.getSize(), 2 * m - 1);
        for (int i = 0; i < m; ++i) {
            EXPECT_NEAR(R[i] + R[2 * m - 2 - i], 1.0f, 1e-6);
            const auto k = static_cast<std::size_t>(i);
            const double pattern = m1 > m2   ? A[k]
                                   : m1 < m2 ? 0.5 - B[B.size() - 1 - k]
                                             : (A[k] + B[k]) / 2;
            EXPECT_NEAR(R[i], pattern, 1e-6);
        }
        for (const Vector<float>& positions : {plain, R}) {
            EXPECT_EQ(positions[0], 0.0f);
            EXPECT_EQ(positions[positions.getSize() - 1], 1.0f);
        }
    }
}

TEST(BladeResampling, TheOneToothedPositionsAreMirroredOrEquallySpaced)
{
    const Lists first = {vectorOf<int>({10, 50, 70, 100, 110}), vectorOf<int>({0, 9})};
    const Lists second = {vectorOf<int>({110, 120, 160, 190, 210}), vectorOf<int>({9, 20})};
    AveragingProcess process;
    const Vector<float> T = process.averageNormalizedIntervalsForOneTooth(first, second);
    // First half 0.2, 0.3, 0.45 from the base; the second one mirrored 0.1, 0.25, 0.45.
    const double expected[] = {0.0, 0.15, 0.275, 0.45, 0.5, 0.55, 0.725, 0.85, 1.0};
    process.setSymmetrizationState(false);
    const Vector<float> plain = process.averageNormalizedIntervalsForOneTooth(first, second);
    const double asRead[] = {0.0, 0.2, 0.3, 0.45, 0.5, 0.55, 0.75, 0.9, 1.0};
    const Lists none = {vectorOf<int>({10, 50})};
    const Vector<float> even = process.averageNormalizedIntervalsForOneTooth(none, none);
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(T[i], expected[i], 1e-6);
        EXPECT_NEAR(plain[i], asRead[i], 1e-6);
        EXPECT_EQ(even[i], 0.125f * static_cast<float>(i));
    }
}

TEST(BladeResampling, APartOfAContourRunsOverItsBeginIfItsEndIsNotBehind)
{
    const BladeResampling process;
    const Curve<float> square = Curve<float>::square(0.0f, 0.0f, 1.0f);
    const auto places = [&](unsigned start, unsigned end) {
        const Curve<float> part = process.extractSubCurve(square, start, end);
        EXPECT_TRUE(part.isOpen());
        std::vector<int> result;
        for (int i = 0; i < part.getSize(); ++i) {
            for (int k = 0; k < 4; ++k) {
                if (part[i] == square[k]) {
                    result.push_back(k);
                }
            }
        }
        return result;
    };
    EXPECT_EQ(places(1, 3), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(places(3, 1), (std::vector<int>{3, 0, 1}));
    EXPECT_EQ(places(2, 2), (std::vector<int>{2, 3, 0, 1, 2}));
}

TEST(BladeResampling, ALandmarkOnAnotherCountsOnce)
{
    Resampled leaves({2, 2}, true, true, 400);
    auto tips = leaves.outlines[0].tips;
    tips.push_back(leaves.outlines[0].apex);
    tips.push_back(tips.front());
    delete leaf::findItem(*leaves.stack, "Primary Peak", 0);
    leaf::addItem(*leaves.stack, "Primary Peak", PRIMITIVE_POLYPOINT, 0, tips);
    leaves.run();
    for (const Lists& lists : {leaves.first, leaves.second}) {
        EXPECT_EQ(lists[0].getSize(), 7);
        EXPECT_EQ(lists[1].getSize(), 7);
    }
    EXPECT_EQ(leaves.curves[0]->getSize(), 400);
}

TEST(BladeResampling, ALeafWithoutItsLandmarksIsNamed)
{
    const char* where = "void AveragingProcess::findLandmarks(...)";
    Resampled leaves({2, 2}, true, true, 400);
    delete leaf::findItem(*leaves.stack, "Apex", 1);
    expectError<UsageError>([&] { leaves.run(); }, where,
                            "Slice leaf1 lacks contour, two junctions or apex");
    leaf::addItem(*leaves.stack, "Apex", PRIMITIVE_POLYPOINT, 1, {leaves.outlines[1].points[0]});
    expectError<UsageError>([&] { leaves.run(); }, where,
                            "Slice leaf1: the apex is not between the two junctions");
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
    Vector<int> O;
    testing::internal::CaptureStdout();
    const std::vector<Curve<float>*> curves =
        process.resampling(leaves.first, leaves.second, two, two,
                           vectorOf<float>({0.0f, 0.5f, 0.9f}), Vector<float>(9), O);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n&& ERROR : 90\n");
    EXPECT_EQ(curves[0]->getSize(), 90);
    delete curves[0];
}
