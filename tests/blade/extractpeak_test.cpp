#include "shape/curves/edge.h"
#include "support/errors.h"
#include "support/stages.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using leaf::Point;

namespace {

leaf::Outline toothedLeaf(double angle = 0.0)
{
    return leaf::draw(7, 16.0, angle, {520.0, 520.0});
}

/// The tips found between the sinuses given.
std::vector<Point> tips(LMXStack& stack, VenationType venation, const std::vector<Point>& sinuses)
{
    leaf::remark(stack, "Primary Sinus", 0, sinuses);
    leaf::findTips(stack, venation);
    EXPECT_GE(stack.findModel("Primary Peak"), 0);
    return leaf::vertices(stack, "Primary Peak", 0);
}

} // namespace

TEST(ExtractPeak, BothMethodsPutTheTipsWhereTheyAreDrawn)
{
    for (const MethodExtractPeaks method : {LocalCurvature, LocalSymmetry}) {
        for (const double angle : {0.0, 61.0, 180.0}) {
            const leaf::Outline outline = toothedLeaf(angle);
            const auto stack = leaf::stackOf({outline});
            leaf::findSinuses(*stack);
            EXPECT_EQ(leaf::findTips(*stack, PINNATE, method),
                      std::vector<std::string>{"Peaks extraction is complete"});
            const std::vector<Point> found = leaf::vertices(*stack, "Primary Peak", 0);
            ASSERT_EQ(found.size(), outline.tips.size()) << "method " << method;
            // The areas on both sides of a chord near the top are small whatever their symmetry, so
            // that the other method may stay down to the middle of a straight flank.
            const double tolerance = method == LocalCurvature ? 4.0 : 19.0;
            for (std::size_t k = 0; k < found.size(); ++k) {
                EXPECT_LE(leaf::distance(found[k], outline.tips[k]), tolerance)
                    << "method " << method << ", angle " << angle << ", tip " << k;
            }
        }
    }
}

TEST(ExtractPeak, TeethLieBetweenSinusesOfAHalfAndOfAPalmateLeafAcrossTheApex)
{
    const leaf::Outline outline = toothedLeaf();
    const std::vector<Point>& sinuses = outline.sinuses;
    const auto stack = leaf::stackOf({outline});
    leaf::findSinuses(*stack);
    const std::vector<Point> palmate = tips(*stack, PALMATE, sinuses);
    ASSERT_EQ(palmate.size(), outline.tips.size() + 1);
    EXPECT_LE(leaf::distance(palmate[outline.tips.size() / 2], outline.apex), 4.0);
    EXPECT_EQ(tips(*stack, PINNATE, {sinuses[0], sinuses[1]}).size(), 1u);
    for (const std::vector<Point>& few :
         {std::vector<Point>{sinuses[0]}, {sinuses[0], sinuses.back()}}) {
        tips(*stack, PINNATE, few);
        EXPECT_EQ(leaf::findItem(*stack, "Primary Peak", 0), nullptr);
    }
    // Sinuses placed by hand are moved onto the contour.
    tips(*stack, PINNATE, {{sinuses[1].x - 20.0, sinuses[1].y}, sinuses[2]});
    for (const Point& moved : leaf::vertices(*stack, "Primary Sinus", 0)) {
        EXPECT_LE(leaf::distanceToOutline(outline, moved), 1.5);
    }
}

TEST(ExtractPeak, AWindowAsLongAsTheToothFindsNothing)
{
    const auto stack = leaf::stackOf({toothedLeaf()});
    ExtractPeak process;
    process.setStack(*stack);
    process.getModels(0);
    const Vector<float> angles = process.findTeethCurvature(300, 340, 2);
    EXPECT_EQ(angles.minPos(), 0);
    EXPECT_FLOAT_EQ(angles.min(), static_cast<float>(M_PI));
    EXPECT_RAISES(ValueError, "Vector<float> ExtractPeak::findTeethCurvature(int, int, int)",
                  "The divisor of the tooth's length is below 1",
                  process.findTeethCurvature(300, 340, 0));
}

TEST(ExtractPeak, TheMediatriceIsSquareToTheChordAndRunsThroughThePoint)
{
    std::mt19937 engine(5);
    const auto place = [&] {
        return vectorOf<float>({float(engine() % 41) - 20, float(engine() % 41) - 20});
    };
    const ExtractPeak process;
    for (int round = 0; round < 300; ++round) {
        const Vector<float> p1 = place();
        const Vector<float> p2 = round % 3 == 0 ? vectorOf<float>({p1[0], p1[1] + 7}) : place();
        const Vector<float> m = (p1 + p2) * 0.5f;
        if (p1 == p2) {
            continue;
        }
        const Edge<float> line = process.findMediatrice(p1, p2, m);
        EXPECT_EQ(line[0], m);
        const Vector<float> direction = line[1] - line[0];
        ASSERT_GT(direction.norm(), 0.0f);
        const float scale = direction.norm() * p1.distance(p2);
        EXPECT_NEAR(direction.scalarProduct(p2 - p1) / scale, 0.0f, 1e-5f);
        EXPECT_NEAR(process.findVertexDistance(p1, line), p1.distance(m), 1e-4f);
    }
}
