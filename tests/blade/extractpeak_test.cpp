#include "blade/blademessages.h"
#include "blade/extractconvexpoints.h"
#include "blade/extractpeak.h"
#include "shape/edge.h"
#include "support/errors.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using leaf::Point;

namespace {

/// The process with what its base holds, on one slice that was read.
class Tips : public ExtractPeak
{
public:
    Tips(LMXStack& open, MethodExtractPeaks method, VenationType venation, int divisor = 10)
    {
        setStack(open);
        setMethodToExtract(method);
        setExcludeNeighbourhood(divisor);
        setVenationType(venation);
    }

    using ExtractPeak::contour;
};

leaf::Outline toothedLeaf(double angle = 0.0)
{
    leaf::Shape shape;
    shape.middle = {520.0, 520.0};
    shape.teethPerSide = 7;
    shape.toothHeight = 16.0;
    shape.angleDegrees = angle;
    return leaf::draw(shape);
}

void detectSinuses(LMXStack& stack)
{
    ExtractConvexPoints process;
    process.setStack(stack);
    process.setNeigbourhood(25);
    process.setThresholdAngle(145.0f);
    process.createModels();
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        process.process(i);
    }
}

std::vector<std::string> runQuietly(ExtractPeak& process)
{
    std::vector<std::string> messages;
    const auto former =
        BladeMessages::setHandler([&](const std::string& text) { messages.push_back(text); });
    process.run();
    BladeMessages::setHandler(former);
    return messages;
}

void setSinuses(LMXStack& stack, const std::vector<Point>& points)
{
    delete leaf::findItem(stack, "Primary Sinus", 0);
    leaf::addItem(stack, "Primary Sinus", PRIMITIVE_POLYPOINT, 0, points);
}

std::vector<Point> tips(LMXStack& stack)
{
    return leaf::vertices(stack, "Primary Peak", 0);
}

} // namespace

TEST(ExtractPeak, BothMethodsPutTheTipsWhereTheyAreDrawn)
{
    for (const MethodExtractPeaks method : {LocalCurvature, LocalSymmetry}) {
        for (const double angle : {0.0, 61.0, 180.0}) {
            const leaf::Outline outline = toothedLeaf(angle);
            const auto stack = leaf::stackOf({outline});
            detectSinuses(*stack);
            Tips process(*stack, method, PINNATE);
            EXPECT_EQ(runQuietly(process),
                      std::vector<std::string>{"Peaks extraction is complete"});
            const std::vector<Point> found = tips(*stack);
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

TEST(ExtractPeak, TheStretchAcrossTheApexIsAToothOfAPalmateLeafAlone)
{
    const leaf::Outline outline = toothedLeaf();
    const auto stack = leaf::stackOf({outline});
    detectSinuses(*stack);
    Tips palmate(*stack, LocalCurvature, PALMATE);
    runQuietly(palmate);
    const std::vector<Point> found = tips(*stack);
    ASSERT_EQ(found.size(), outline.tips.size() + 1);
    EXPECT_LE(leaf::distance(found[outline.tips.size() / 2], outline.apex), 4.0);
}

TEST(ExtractPeak, OneSinusOrOneOnEachHalfOfAPinnateLeafLeavesNoItem)
{
    const leaf::Outline outline = toothedLeaf();
    const auto stack = leaf::stackOf({outline});
    detectSinuses(*stack);
    const std::size_t last = outline.sinuses.size() - 1;
    const std::vector<std::vector<Point>> lists = {{outline.sinuses[0]},
                                                   {outline.sinuses[0], outline.sinuses[last]}};
    for (const std::vector<Point>& list : lists) {
        setSinuses(*stack, list);
        Tips process(*stack, LocalCurvature, PINNATE);
        runQuietly(process);
        EXPECT_GE(stack->findModel("Primary Peak"), 0);
        EXPECT_EQ(leaf::findItem(*stack, "Primary Peak", 0), nullptr);
    }
    setSinuses(*stack, {outline.sinuses[0], outline.sinuses[1]});
    Tips process(*stack, LocalCurvature, PINNATE);
    runQuietly(process);
    EXPECT_EQ(tips(*stack).size(), 1u);
}

TEST(ExtractPeak, SinusesPlacedByHandAreMovedOntoTheContour)
{
    const leaf::Outline outline = toothedLeaf();
    const auto stack = leaf::stackOf({outline});
    detectSinuses(*stack);
    const Point sinus = outline.sinuses[1];
    setSinuses(*stack, {{sinus.x - 20.0, sinus.y}, outline.sinuses[2]});
    Tips process(*stack, LocalCurvature, PINNATE);
    runQuietly(process);
    for (const Point& moved : leaf::vertices(*stack, "Primary Sinus", 0)) {
        EXPECT_LE(leaf::distanceToOutline(outline, moved), 1.5);
    }
}

TEST(ExtractPeak, AWindowAsLongAsTheToothFindsNothing)
{
    const auto stack = leaf::stackOf({toothedLeaf()});
    detectSinuses(*stack);
    Tips process(*stack, LocalCurvature, PINNATE);
    process.getModels(0);
    const Vector<float> angles = process.findTeethCurvature(300, 340, 2);
    EXPECT_EQ(angles.minPos(), 0);
    EXPECT_FLOAT_EQ(angles.min(), static_cast<float>(M_PI));
    expectError<ValueError>([&] { process.findTeethCurvature(300, 340, 0); },
                            "Vector<float> ExtractPeak::findTeethCurvature(int, int, int)",
                            "The divisor of the tooth's length is below 1");
}

TEST(ExtractPeak, TheMediatriceIsSquareToTheChordAndRunsThroughThePoint)
{
    std::mt19937 engine(5);
    std::uniform_int_distribution<int> coordinate(-20, 20);
    const ExtractPeak process;
    for (int round = 0; round < 300; ++round) {
        Vector<float> p1(2);
        Vector<float> p2(2);
        Vector<float> m(2);
        for (int c = 0; c < 2; ++c) {
            p1[c] = static_cast<float>(coordinate(engine));
            p2[c] = static_cast<float>(coordinate(engine));
            m[c] = (p1[c] + p2[c]) / 2;
        }
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
