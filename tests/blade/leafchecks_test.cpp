#include "blade/process/modelsmanager.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

using leaf::Outline;
using leaf::Point;
using leaf::Probe;
using Points = std::vector<Point>;

namespace {

const std::string remedy = "Please check and correct your stack, save the changes.";
const std::string wrongNumber = " wrong number for Sinus and Peaks pinnate, \n ";

std::string check(LMXStack& stack, int slice = 0)
{
    std::string report = "left from before";
    Probe(stack).checkLeaves(slice, report);
    return report;
}

std::string check(const Outline& outline)
{
    return check(*leaf::landmarkedStack({outline}));
}

/// A leaf of which a test takes some landmarks away or moves some.
Outline wholeLeaf(int teethPerSide = 3)
{
    return leaf::draw(teethPerSide, 24.0);
}

Point between(Point a, Point b)
{
    return {(a.x + b.x) / 2.0, (a.y + b.y) / 2.0};
}

} // namespace

TEST(LeafChecks, AWholeLeafIsGoodAndTakesItsWorkingForm)
{
    for (int teeth = 1; teeth < 7; ++teeth) {
        const Outline whole = wholeLeaf(teeth);
        const auto stack = leaf::landmarkedStack({whole});
        Probe probe(*stack);
        EXPECT_FALSE(probe.verifyModels());
        std::string report;
        probe.checkLeaves(0, report);
        EXPECT_EQ(report, "") << teeth << " teeth a side";
        EXPECT_TRUE(probe.verifyModels());
        EXPECT_LT(leaf::distance(leaf::vertices(*stack, "Contour", 0)[0], whole.points[0]), 4.0);
    }
    Outline noTips = wholeLeaf();
    noTips.tips.clear();
    EXPECT_EQ(check(noTips), "");
}

TEST(LeafChecks, AMissingLandmarkIsToldByItsKind)
{
    const Outline whole = wholeLeaf();
    const auto stack = leaf::landmarkedStack({whole, whole, whole, whole});
    delete leaf::findItem(*stack, "Contour", 0);
    delete leaf::findItem(*stack, "Petiole", 1);
    leaf::mark(*stack, "Petiole", 2, {{1.0, 1.0}, {2.0, 2.0}, {3.0, 3.0}});
    leaf::remark(*stack, "Apex", 3, {});
    EXPECT_EQ(check(*stack, 0), " no blade,|n " + remedy);
    EXPECT_EQ(check(*stack, 1), " no petiole, " + remedy);
    EXPECT_EQ(check(*stack, 2), " Add two petiole/blade junctions per leaf,\n "
                                " Petiole/blade junctions defects in slice : \n " +
                                    remedy);
    EXPECT_EQ(check(*stack, 3), " no apex, " + remedy);
}

TEST(LeafChecks, AHundredVerticesAreTheSmallestBlade)
{
    for (const double s : {0.0, 24.0, 25.0}) { // one point, and squares of 96 and 100 unit steps
        const auto stack = leaf::emptyStack(1);
        leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0,
                      s > 0.0 ? Points{{0, 0}, {s, 0}, {s, s}, {0, s}} : Points{{5, 5}});
        leaf::mark(*stack, "Petiole", 0, {{10.0, s}, {14.0, s}});
        leaf::mark(*stack, "Apex", 0, {{12.0, 0.0}});
        EXPECT_EQ(check(*stack), s < 25.0 ? " wrong blade size,\n " + remedy : "");
    }
}

TEST(LeafChecks, OneTipTooFewOrTooManyIsAWrongNumber)
{
    const Outline whole = wholeLeaf();
    for (std::size_t k = 0; k < whole.tips.size(); ++k) {
        Outline fewer = whole;
        fewer.tips.erase(fewer.tips.begin() + static_cast<std::ptrdiff_t>(k));
        EXPECT_EQ(check(fewer), wrongNumber + remedy);
    }
    Outline more = whole;
    more.tips.push_back(whole.apex);
    EXPECT_EQ(check(more), wrongNumber + remedy);
    // Two sinuses need one tip wherever they lie.
    Outline two = wholeLeaf(1);
    const Points sinuses = two.sinuses;
    two.tips = {two.tips[0]};
    two.sinuses = {sinuses[0], sinuses[1]};
    EXPECT_EQ(check(two), "");
    // Numbers fit with a sinus on each half, but from a sinus the way must lead to a tip first.
    two.sinuses = {sinuses[0], sinuses[2]};
    EXPECT_EQ(check(two).find(wrongNumber), std::string::npos);
}

TEST(LeafChecks, ATipOnTheWrongSideOfItsSinusIsAWrongOrder)
{
    const Outline whole = wholeLeaf();
    Outline lower = whole;
    // The first tip moves behind the next sinus, beside the second tip.
    lower.tips[0] = between(whole.sinuses[1], whole.tips[1]);
    EXPECT_EQ(check(lower),
              " wrong landmark, add peak, \n  wrong landmark add sinus, \n " + remedy);
    Outline upper = whole;
    upper.tips[5] = between(whole.sinuses[6], whole.tips[4]);
    EXPECT_EQ(check(upper),
              " wrong landmark1 add sinus, \n wrong landmark1, add peak, \n" + remedy);
}

TEST(LeafChecks, AnApexAmongThePetioleIsAWrongPositionOfTheJunctions)
{
    Outline late = wholeLeaf();
    // Apex behind both junctions: the walk meets the second junction before it.
    late.apex = late.points[late.points.size() - 40];
    late.tips.clear();
    late.sinuses.clear();
    const std::string inverse = " petiole,\n please inverse the order or \n verify that the "
                                "original contour or between the two petioles, ";
    EXPECT_EQ(check(late), " wrong landmark, \n  wrong position for second" + inverse + remedy);
    // A sinus on the petiole in front of the first junction is told once for each step.
    Outline early = wholeLeaf(1);
    early.tips.clear();
    early.sinuses = {early.points[60], early.sinuses[0]};
    const std::string first = " wrong position for first" + inverse;
    EXPECT_EQ(check(early), first + first + remedy);
}

TEST(LeafChecks, AContourThatCrossesItselfIsReported)
{
    const auto stack = leaf::emptyStack(3);
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, {{0, 0}, {40, 0}, {40, 40}, {0, 40}});
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 1, {{0, 0}, {41, 37}, {40, 0}, {0, 90}});
    for (int slice = 0; slice < 3; ++slice) {
        std::string report;
        Probe(*stack).checkBlades(slice, report);
        EXPECT_EQ(report, slice == 1 ? "intersection trouvée\n " + remedy : "");
    }
}
