#include "blade/landmarks/junctionproposal.h"
#include "samples/leafoutline.h"
#include "support/curves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Pair = JunctionProposal::Pair;

Curve<float> closedCurve(const Polyline& points)
{
    Curve<float> curve(2, static_cast<int>(points.size()), 0, 0, false);
    for (int i = 0; i < curve.getSize(); ++i) {
        curve[i][0] = static_cast<float>(points[static_cast<std::size_t>(i)].x);
        curve[i][1] = static_cast<float>(points[static_cast<std::size_t>(i)].y);
    }
    return curve;
}

Point vertex(const Curve<float>& curve, int i)
{
    return {double(curve[i][0]), double(curve[i][1])};
}

bool proposes(const Polyline& points)
{
    return JunctionProposal::propose(closedCurve(points)).has_value();
}

/// The larger distance of a proposal from the places of the left and the right junction.
double miss(const Curve<float>& contour, const Pair& pair, const Point& left, const Point& right)
{
    return std::max(length(vertex(contour, pair.first) - left),
                    length(vertex(contour, pair.second) - right));
}

/// The blade without its stalk, closed by a straight line.
Polyline bladeOf(const LeafOutline& leaf)
{
    Polyline points = leaf.outline;
    const int left = nearestPoint(points, leaf.leftJunction);
    std::rotate(points.begin(), points.begin() + left, points.end());
    points.resize(static_cast<std::size_t>(nearestPoint(points, leaf.rightJunction)) + 1);
    return points;
}

/// A leaf with its tip up, 700 long on a stalk 20 wide. Its right lobe lies back along the stalk;
/// the left flank runs on to a height of `leftEnd`.
Polyline obliqueLeaf(double leftEnd)
{
    const Polyline left = {{10, 900}, {-10, 900}, {-10, 800 - leftEnd}, {-200, 500}, {0, 100}};
    Polyline corners = {{250, 500}, {200, 800}, {40, 840}, {10, 800}};
    corners.insert(corners.begin(), left.begin(), left.end());
    return resampledLoop(corners, 1.0);
}

} // namespace

TEST(JunctionProposal, OfDrawnLeavesLiesWithinTwoPercentAndIsNothingWithoutTheStalk)
{
    for (int index = 0; index < 28; ++index) {
        const LeafPlan plan = planLeaf(index, 5);
        const LeafOutline leaf = makeOutline(plan, 900, 1300);
        const Curve<float> contour = closedCurve(leaf.outline);
        const auto pair = JunctionProposal::propose(contour);
        ASSERT_TRUE(pair) << plan.name;
        EXPECT_LE(miss(contour, *pair, leaf.leftJunction, leaf.rightJunction),
                  0.02 * plan.bladeLength)
            << plan.name;
        EXPECT_FALSE(proposes(bladeOf(leaf))) << plan.name;
    }
}

TEST(JunctionProposal, StaysWithTheLeafWhereverItLiesAndHoweverItIsRead)
{
    const LeafPlan plan = planLeaf(3, 1);
    const LeafOutline leaf = makeOutline(plan, 900, 1300);
    const Curve<float> original = closedCurve(leaf.outline);
    const auto expected = JunctionProposal::propose(original);
    ASSERT_TRUE(expected);
    std::mt19937 engine(1);
    for (int round = 0; round < 40; ++round) {
        const bool mirrored = round % 2 == 1;
        const double angle = M_PI * randomUnit<double>(engine);
        const double factor = std::pow(10.0, 3.0 * randomUnit<double>(engine));
        const auto moved = [&](const Point& p) {
            const double x = mirrored ? -p.x : p.x;
            return Point{factor * (x * std::cos(angle) - p.y * std::sin(angle)) + 500.0,
                         factor * (x * std::sin(angle) + p.y * std::cos(angle)) - 900.0};
        };
        Polyline points;
        for (const Point& point : resampledLoop(leaf.outline, 0.5 + (round % 5))) {
            points.push_back(moved(point));
        }
        std::rotate(points.begin(), points.begin() + engine() % points.size(), points.end());
        if (round % 3 == 0) {
            std::reverse(points.begin(), points.end());
        }
        const Curve<float> contour = closedCurve(points);
        const auto pair = JunctionProposal::propose(contour);
        ASSERT_TRUE(pair) << round;
        const Point first = moved(vertex(original, expected->first));
        const Point second = moved(vertex(original, expected->second));
        EXPECT_LE(miss(contour, *pair, mirrored ? second : first, mirrored ? first : second),
                  0.01 * plan.bladeLength * factor)
            << round;
    }
}

TEST(JunctionProposal, FollowsTheFreeFlankPastALobeThatHidesTheOther)
{
    for (const double leftEnd : {0.0, 20.0, 40.0}) {
        const Curve<float> contour = closedCurve(obliqueLeaf(leftEnd));
        const auto pair = JunctionProposal::propose(contour);
        ASSERT_TRUE(pair) << leftEnd;
        EXPECT_LE(miss(contour, *pair, {-10, 800 - leftEnd}, {10, 800}), 7.0) << leftEnd;
    }
    EXPECT_FALSE(proposes(obliqueLeaf(200.0)));
}

TEST(JunctionProposal, IsNothingForShapesWithoutAStalk)
{
    std::mt19937 engine(2);
    for (int round = 0; round < 60; ++round) {
        Polyline blob;
        const Curve<double> star = randomStar<double>(3 + round % 12, 300.0, engine);
        for (int i = 0; i < star.getSize(); ++i) {
            blob.push_back({star[i][0], star[i][1]});
        }
        EXPECT_FALSE(proposes(smoothedLoop(resampledLoop(blob, 1.0), 25.0))) << round;
    }
    // Lobes that narrow to a point, as narrow as 9 degrees to either side of their axis.
    for (int lobes = 5; lobes <= 8; ++lobes) {
        Polyline outline;
        for (int i = 0; i < 2 * lobes; ++i) {
            const double angle = M_PI * i / lobes;
            const double distance = i % 2 == 0 ? 300.0 : 90.0;
            outline.push_back({distance * std::cos(angle), distance * std::sin(angle)});
        }
        EXPECT_FALSE(proposes(resampledLoop(outline, 1.0))) << lobes;
    }
    Curve<float> leaf = closedCurve(makeOutline(planLeaf(0, 1), 900, 1300).outline);
    ASSERT_TRUE(JunctionProposal::propose(leaf));
    leaf.setOpen(true);
    EXPECT_FALSE(JunctionProposal::propose(leaf));
    leaf.setOpen(false);
    leaf[7][0] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(JunctionProposal::propose(leaf));
    for (const Curve<float>& curve :
         {Curve<float>(), curveOf<float>({{1, 1}, {1, 1}, {1, 1}}, false),
          curveOf<float>({{0, 0}, {5, 5}, {9, 9}}, false), Curve<float>::square(0, 0, 10)}) {
        EXPECT_FALSE(JunctionProposal::propose(curve));
    }
}
