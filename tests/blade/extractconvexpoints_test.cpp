#include "blade/extractconvexpoints.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using leaf::Point;

namespace {

/// The process with the parameters that the window starts with, run on every slice.
std::vector<std::string> detect(LMXStack& stack, int neighbourhood = 25, float angle = 145.0f)
{
    ExtractConvexPoints process;
    process.setStack(stack);
    process.setNeigbourhood(neighbourhood);
    process.setThresholdAngle(angle);
    process.createModels();
    std::vector<std::string> reports;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        reports.push_back(process.process(i));
    }
    return reports;
}

void expectNear(const std::vector<Point>& found, const std::vector<Point>& drawn, double tolerance)
{
    ASSERT_EQ(found.size(), drawn.size());
    for (std::size_t k = 0; k < drawn.size(); ++k) {
        EXPECT_LE(leaf::distance(found[k], drawn[k]), tolerance) << "landmark " << k;
    }
}

Vector<float> profile(std::initializer_list<float> values)
{
    return Vector<float>(std::vector<float>(values));
}

std::vector<int> candidates(const Vector<float>& angles, int neighbourhood, float threshold)
{
    ExtractConvexPoints process;
    process.setNeigbourhood(neighbourhood);
    process.setThresholdAngle(threshold);
    return process.findSinusCandidates(angles, 0, angles.getSize());
}

} // namespace

TEST(ExtractConvexPoints, FindsApexAndSinusesAsDrawnWhateverTheLeafsPose)
{
    std::vector<leaf::Outline> outlines;
    for (const double angle : {0.0, 37.0, 90.0, 180.0, 283.0}) {
        leaf::Shape shape;
        shape.middle = {500.0, 500.0};
        shape.teethPerSide = 3 + static_cast<int>(outlines.size());
        shape.toothHeight = 40.0;
        shape.angleDegrees = angle;
        outlines.push_back(leaf::draw(shape));
    }
    const auto stack = leaf::stackOf(outlines);
    for (const std::string& report : detect(*stack)) {
        EXPECT_EQ(report, "");
    }
    for (int i = 0; i < stack->getNumSlices(); ++i) {
        SCOPED_TRACE(i);
        const leaf::Outline& outline = outlines[static_cast<std::size_t>(i)];
        expectNear(leaf::vertices(*stack, "Apex", i), {outline.apex}, 4.0);
        expectNear(leaf::vertices(*stack, "Primary Sinus", i), outline.sinuses, 4.0);
        // The stored contour starts in the middle of the petiole's end.
        EXPECT_LE(leaf::distance(leaf::vertices(*stack, "Contour", i)[0], outline.points[0]), 5.0);
    }
}

TEST(ExtractConvexPoints, ASecondRunFindsTheSameAndKeepsOneItemOfEachModel)
{
    leaf::Shape shape;
    shape.toothHeight = 40.0;
    const auto stack = leaf::stackOf({leaf::draw(shape)});
    detect(*stack);
    const std::vector<Point> first = leaf::vertices(*stack, "Primary Sinus", 0);
    detect(*stack);
    expectNear(leaf::vertices(*stack, "Primary Sinus", 0), first, 3.0);
    EXPECT_EQ(first.size(), 10u);
    EXPECT_EQ(stack->getSlice(0).getNumItems(), 4);
}

TEST(ExtractConvexPoints, ASmoothLeafGetsAnApexAndNoSinusItem)
{
    leaf::Shape shape;
    shape.teethPerSide = 0;
    const auto stack = leaf::stackOf({leaf::draw(shape)});
    EXPECT_EQ(detect(*stack)[0], "");
    EXPECT_GE(stack->findModel("Primary Sinus"), 0);
    EXPECT_EQ(leaf::findItem(*stack, "Primary Sinus", 0), nullptr);
    EXPECT_EQ(leaf::vertices(*stack, "Apex", 0).size(), 1u);
}

TEST(ExtractConvexPoints, ReportsASliceWithOneSinusOnAHalfAndPassesOverUnfitSlices)
{
    leaf::Outline notched = leaf::draw([] {
        leaf::Shape shape;
        shape.teethPerSide = 0;
        return shape;
    }());
    // One deep notch in the first half: a quarter of the way along the outline.
    const std::size_t middle = notched.points.size() / 4;
    for (std::size_t k = middle - 80; k <= middle + 80; ++k) {
        const double depth = 80.0 - std::fabs(double(k) - double(middle));
        notched.points[k].x += depth * 0.7;
    }
    const auto stack = leaf::stackOf({notched, notched, notched});
    delete leaf::findItem(*stack, "Petiole", 1);
    delete leaf::findItem(*stack, "Contour", 2);
    const std::vector<std::string> reports = detect(*stack);
    EXPECT_EQ(reports[0], "leaf0");
    EXPECT_EQ(leaf::vertices(*stack, "Primary Sinus", 0).size(), 1u);
    EXPECT_EQ(reports[1] + reports[2], "");
    EXPECT_EQ(stack->getSlice(1).getNumItems(), 1);
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
    for (const int h : {1, 5, 60}) {
        const Vector<float> angles = ExtractConvexPoints().computeCurvature(curve, h);
        for (int j = 0; j < curve.getSize(); ++j) {
            double expected = 180.0;
            if (j >= h && j < curve.getSize() - h) {
                const double back = std::atan2(double(curve[j - h][1]) - curve[j][1],
                                               double(curve[j - h][0]) - curve[j][0]);
                const double ahead = std::atan2(double(curve[j + h][1]) - curve[j][1],
                                                double(curve[j + h][0]) - curve[j][0]);
                expected = std::fmod((ahead - back) * 180.0 / M_PI + 720.0, 360.0);
            }
            // Near 0 and 180 degrees the arc cosine of a float loses half its digits.
            const double error = std::fabs(angles[j] - expected);
            EXPECT_LE(std::min(error, 360.0 - error), 0.1)
                << "vertex " << j << ", neighbourhood " << h;
        }
    }
}

TEST(ExtractConvexPoints, ACurveOfTwoNeighbourhoodsIsStraightEverywhere)
{
    Curve<float> curve(2, 10, 0, 0, false);
    for (int i = 0; i < 10; ++i) {
        curve[i][0] = static_cast<float>(i * i);
        curve[i][1] = static_cast<float>(i % 3);
    }
    const Vector<float> angles = ExtractConvexPoints().computeCurvature(curve, 5);
    EXPECT_EQ(angles.min(), 180.0f);
    EXPECT_EQ(angles.max(), 180.0f);
}

TEST(ExtractConvexPoints, AnIntervalClosesAtABulgeAndIsCarriedOnWhereItIsTooShort)
{
    using Found = std::vector<int>;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    // Two vertices are needed with a neighbourhood of 5 to 9.
    EXPECT_EQ(candidates(profile({100, 90, 90, 170, 200}), 5, 145), Found{1});
    EXPECT_EQ(candidates(profile({100, 200, 170, 120, 200}), 5, 145), Found{0});
    EXPECT_EQ(candidates(profile({100, 90, 170, 180, 80, 190}), 5, 145), Found{4});
    EXPECT_EQ(candidates(profile({100, 90, 190, 80, 70, 190}), 5, 145), (Found{1, 4}));
    EXPECT_EQ(candidates(profile({100, 90, 80, 180}), 5, 145), Found{});
    EXPECT_EQ(candidates(profile({145, 145, 190}), 5, 145), Found{});
    EXPECT_EQ(candidates(profile({nan, 90, nan, 100, 190}), 5, 145), Found{1});
    EXPECT_EQ(candidates(profile({90, 190, 100, 190}), 4, 145), (Found{0, 2}));
}
