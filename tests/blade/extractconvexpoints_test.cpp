#include "support/stages.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using leaf::Point;

namespace {

std::vector<int> candidates(std::initializer_list<float> angles, int neighbourhood = 5)
{
    ExtractConvexPoints process;
    process.setNeigbourhood(neighbourhood);
    process.setThresholdAngle(145);
    return process.findSinusCandidates(vectorOf<float>(angles), 0, static_cast<int>(angles.size()));
}

} // namespace

TEST(ExtractConvexPoints, FindsApexAndSinusesAsDrawnWhateverTheLeafsPoseInEachRun)
{
    std::vector<leaf::Outline> outlines;
    for (const double angle : {0.0, 37.0, 90.0, 180.0, 283.0}) {
        const int teeth = 3 + static_cast<int>(outlines.size());
        outlines.push_back(leaf::draw(teeth, 40.0, angle, {500.0, 500.0}));
    }
    const auto stack = leaf::stackOf(outlines);
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(leaf::findSinuses(*stack), std::vector<std::string>(5));
        for (int i = 0; i < (run == 0 ? 5 : 1); ++i) {
            SCOPED_TRACE(i);
            const leaf::Outline& outline = outlines[static_cast<std::size_t>(i)];
            const auto sinuses = leaf::vertices(*stack, "Primary Sinus", i);
            EXPECT_TRUE(leaf::samePlaces(sinuses, outline.sinuses, 4.0));
            EXPECT_LE(leaf::distance(sinuses[0], outline.sinuses[0]), 4.0) << "in their order";
            EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Apex", i), {outline.apex}, 4.0));
            // The stored contour starts in the middle of the petiole's end.
            EXPECT_LE(leaf::distance(leaf::vertices(*stack, "Contour", i)[0], outline.points[0]),
                      5.0);
            EXPECT_EQ(stack->getSlice(i).getNumItems(), 4);
        }
    }
}

TEST(ExtractConvexPoints, ASmoothLeafHasNoSinusItemOneSinusOnAHalfIsToldAndUnfitSlicesArePassed)
{
    const leaf::Outline smooth = leaf::draw(0, 0.0);
    leaf::Outline notched = smooth;
    // One deep notch in the first half: a quarter of the way along the outline.
    const std::size_t middle = notched.points.size() / 4;
    for (std::size_t k = middle - 80; k <= middle + 80; ++k) {
        notched.points[k].x += (80.0 - std::fabs(double(k) - double(middle))) * 0.7;
    }
    const auto stack = leaf::stackOf({notched, notched, notched, smooth});
    delete leaf::findItem(*stack, "Petiole", 1);
    delete leaf::findItem(*stack, "Contour", 2);
    EXPECT_EQ(leaf::findSinuses(*stack), (std::vector<std::string>{"leaf0", "", "", ""}));
    EXPECT_EQ(leaf::vertices(*stack, "Primary Sinus", 0).size(), 1u);
    EXPECT_EQ(stack->getSlice(1).getNumItems(), 1);
    EXPECT_EQ(leaf::findItem(*stack, "Primary Sinus", 3), nullptr);
    EXPECT_EQ(leaf::vertices(*stack, "Apex", 3).size(), 1u);
}

TEST(ExtractConvexPoints, AnglesAgreeWithTheTurnOfTheCurve)
{
    std::mt19937 engine(11);
    std::normal_distribution<float> step(0.0f, 3.0f);
    Curve<float> curve(2, 400, 0, 0, false);
    for (int i = 0; i < curve.getSize(); ++i) {
        curve[i][0] = static_cast<float>(i) + step(engine);
        curve[i][1] = step(engine);
    }
    const auto direction = [&](int from, int to) {
        const Vector<float> d = curve[to] - curve[from];
        return std::atan2(double(d[1]), double(d[0]));
    };
    for (const int h : {1, 5, 60, 200}) { // of two neighbourhoods' size it is straight everywhere
        const Vector<float> angles = ExtractConvexPoints().computeCurvature(curve, h);
        for (int j = 0; j < curve.getSize(); ++j) {
            double expected = 180.0;
            if (j >= h && j < curve.getSize() - h) {
                const double turn = direction(j, j + h) - direction(j, j - h);
                expected = std::fmod(turn * 180.0 / M_PI + 720.0, 360.0);
            }
            // Near 0 and 180 degrees the arc cosine of a float loses half its digits.
            const double error = std::fabs(angles[j] - expected);
            EXPECT_LE(std::min(error, 360.0 - error), 0.1) << j << ", neighbourhood " << h;
        }
    }
}

TEST(ExtractConvexPoints, AnIntervalClosesAtABulgeAndIsCarriedOnWhereItIsTooShort)
{
    using Found = std::vector<int>;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    // Two vertices are needed with a neighbourhood of 5 to 9.
    EXPECT_EQ(candidates({100, 90, 90, 170, 200}), Found{1});
    EXPECT_EQ(candidates({100, 200, 170, 120, 200}), Found{0});
    EXPECT_EQ(candidates({100, 90, 170, 180, 80, 190}), Found{4});
    EXPECT_EQ(candidates({100, 90, 190, 80, 70, 190}), (Found{1, 4}));
    EXPECT_EQ(candidates({100, 90, 80, 180}), Found{});
    EXPECT_EQ(candidates({145, 145, 190}), Found{});
    EXPECT_EQ(candidates({nan, 90, nan, 100, 190}), Found{1});
    EXPECT_EQ(candidates({90, 190, 100, 190}, 4), (Found{0, 2}));
}
