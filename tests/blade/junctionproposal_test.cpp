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

/// Of what is proposed; -1 if that is nothing.
double confidence(const Polyline& points)
{
    const auto pair = JunctionProposal::propose(closedCurve(points));
    return pair ? pair->confidence : -1.0;
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

/// A leaf with its tip up whose blade begins at the origin, with the shape of its margin from base to
/// tip: `baseExponent` below 1 is a round base, `tipExponent` above 1 a drawn-out tip.
struct PlainLeaf
{
    const char* name;
    double length;
    double halfWidth;
    double baseExponent;
    double tipExponent;
    double stalkLength;
    double stalkHalfWidth;
};

Polyline outlineOf(const PlainLeaf& leaf)
{
    const auto shape = [&](double u) {
        return std::pow(u, leaf.baseExponent) * std::pow(1.0 - u, leaf.tipExponent);
    };
    const double widest = shape(leaf.baseExponent / (leaf.baseExponent + leaf.tipExponent));
    Polyline corners = {{0.0, leaf.stalkLength}, {-leaf.stalkHalfWidth, leaf.stalkLength}};
    for (int i = 0; i < 1000; ++i) {
        const double u = i / 1000.0;
        corners.push_back(
            {-std::max(leaf.stalkHalfWidth * (1.0 - u), leaf.halfWidth * shape(u) / widest),
             -u * leaf.length});
    }
    corners.push_back({0.0, -leaf.length});
    for (std::size_t i = corners.size() - 2; i > 0; --i) {
        corners.push_back({-corners[i].x, corners[i].y});
    }
    return smoothedLoop(resampledLoop(corners, 1.0), 1.0);
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

TEST(JunctionProposal, OfDrawnLeavesLiesWithinTwoPercentAndIsUnsureWithoutTheStalk)
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
        EXPECT_GE(pair->confidence, ProposedJunctions::low) << plan.name;

        const Curve<float> blade = closedCurve(bladeOf(leaf));
        const auto bare = JunctionProposal::propose(blade);
        ASSERT_TRUE(bare) << plan.name;
        EXPECT_LT(bare->confidence, ProposedJunctions::low) << plan.name;
        if (plan.kind == LeafKind::Plain) {
            EXPECT_LE(miss(blade, *bare, leaf.leftJunction, leaf.rightJunction),
                      0.04 * plan.bladeLength)
                << plan.name << ": teeth tell the base";
        }
    }
}

TEST(JunctionProposal, FindsShortStalksAndIsNotDeceivedByPointedTips)
{
    const PlainLeaf leaves[] = {
        {"as long as wide", 600, 150, 0.7, 1.1, 24, 12}, {"a point", 600, 180, 0.6, 1.1, 16, 6},
        {"wide base", 500, 200, 0.3, 1.0, 40, 14},       {"willow", 800, 60, 0.9, 1.6, 30, 5},
        {"drawn-out tip", 500, 150, 0.6, 2.5, 25, 8},    {"bamboo", 900, 45, 0.5, 2.0, 14, 4},
    };
    for (const PlainLeaf& leaf : leaves) {
        for (const double degrees : {0.0, 77.0, 180.0, 290.0}) {
            const double angle = degrees * M_PI / 180.0;
            const auto turned = [&](const Point& p) {
                return Point{p.x * std::cos(angle) - p.y * std::sin(angle),
                             p.x * std::sin(angle) + p.y * std::cos(angle)};
            };
            Polyline outline = outlineOf(leaf);
            std::transform(outline.begin(), outline.end(), outline.begin(), turned);
            const Curve<float> contour = closedCurve(outline);
            const auto pair = JunctionProposal::propose(contour);
            ASSERT_TRUE(pair) << leaf.name;
            EXPECT_LE(miss(contour, *pair, turned({-leaf.stalkHalfWidth, 0.0}),
                           turned({leaf.stalkHalfWidth, 0.0})),
                      0.02 * leaf.length)
                << leaf.name << " " << degrees << " " << pair->confidence;
        }
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
        EXPECT_NEAR(pair->confidence, expected->confidence, 0.1) << round;
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
    EXPECT_LT(confidence(obliqueLeaf(200.0)), 0.7) << "the stalk has no end on its right";
}

TEST(JunctionProposal, IsUnsureOfShapesWithoutAStalkAndNothingWithoutAnOutline)
{
    std::mt19937 engine(2);
    int sure = 0;
    for (int round = 0; round < 60; ++round) {
        Polyline blob;
        const Curve<double> star = randomStar<double>(3 + round % 12, 300.0, engine);
        for (int i = 0; i < star.getSize(); ++i) {
            blob.push_back({star[i][0], star[i][1]});
        }
        sure += confidence(smoothedLoop(resampledLoop(blob, 1.0), 25.0)) >= ProposedJunctions::low;
    }
    EXPECT_LE(sure, 2) << "of 60 blobs, some of which have a lobe like a stalk";
    // Lobes that narrow to a point, as narrow as 9 degrees to either side of their axis.
    for (int lobes = 5; lobes <= 8; ++lobes) {
        Polyline outline;
        for (int i = 0; i < 2 * lobes; ++i) {
            const double angle = M_PI * i / lobes;
            const double distance = i % 2 == 0 ? 300.0 : 90.0;
            outline.push_back({distance * std::cos(angle), distance * std::sin(angle)});
        }
        EXPECT_LT(confidence(resampledLoop(outline, 1.0)), ProposedJunctions::low) << lobes;
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
          curveOf<float>({{0, 0}, {5, 5}, {9, 9}}, false)}) {
        EXPECT_FALSE(JunctionProposal::propose(curve));
    }
}
