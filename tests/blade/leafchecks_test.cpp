#include "blade/modelsmanager.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using leaf::Point;
using leaf::Probe;

namespace {

const std::string remedy = "Please check and correct your stack, save the changes.";
const std::string wrongNumber = " wrong number for Sinus and Peaks pinnate, \n ";
const std::string wrongFirst =
    " wrong position for first petiole,\n please inverse the order or \n "
    "verify that the original contour or between the two petioles, ";

/// A leaf with all its landmarks, of which a test takes some away or moves some.
struct Landmarks
{
    leaf::Outline outline;
    std::vector<Point> apex;
    std::vector<Point> sinuses;
    std::vector<Point> tips;
};

Landmarks wholeLeaf(int teethPerSide = 3)
{
    leaf::Shape shape;
    shape.teethPerSide = teethPerSide;
    const leaf::Outline outline = leaf::draw(shape);
    return {outline, {outline.apex}, outline.sinuses, outline.tips};
}

std::string check(const Landmarks& landmarks)
{
    const auto stack = leaf::stackOf({landmarks.outline});
    leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, 0, landmarks.apex);
    if (!landmarks.sinuses.empty()) {
        leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, 0, landmarks.sinuses);
    }
    if (!landmarks.tips.empty()) {
        leaf::addItem(*stack, "Primary Peak", PRIMITIVE_POLYPOINT, 0, landmarks.tips);
    }
    std::string report = "left from before";
    Probe(*stack).checkLeaves(0, report);
    return report;
}

template <class List>
List without(List list, std::size_t index)
{
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
    return list;
}

} // namespace

TEST(LeafChecks, AWholeLeafIsGoodAndTakesItsWorkingForm)
{
    for (int teeth = 1; teeth < 7; ++teeth) {
        EXPECT_EQ(check(wholeLeaf(teeth)), "") << teeth << " teeth a side";
    }
    const Landmarks whole = wholeLeaf();
    const auto stack = leaf::stackOf({whole.outline});
    leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, 0, whole.apex);
    leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, 0, whole.sinuses);
    leaf::addItem(*stack, "Primary Peak", PRIMITIVE_POLYPOINT, 0, whole.tips);
    std::string report;
    Probe probe(*stack);
    EXPECT_FALSE(probe.verifyModels());
    probe.checkLeaves(0, report);
    EXPECT_TRUE(probe.verifyModels());
    const std::vector<Point> contour = leaf::vertices(*stack, "Contour", 0);
    EXPECT_LT(leaf::distance(contour[0], whole.outline.points[0]), 4.0);
}

TEST(LeafChecks, AMissingLandmarkIsToldByItsKind)
{
    EXPECT_EQ(check([] {
                  Landmarks l = wholeLeaf();
                  l.apex.clear();
                  return l;
              }()),
              " no apex, " + remedy);
    const Landmarks whole = wholeLeaf();
    const auto stack = leaf::stackOf({whole.outline, whole.outline, whole.outline});
    std::string report;
    Probe probe(*stack);
    for (int slice = 0; slice < 3; ++slice) {
        leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, slice, whole.apex);
    }
    delete leaf::findItem(*stack, "Contour", 0);
    delete leaf::findItem(*stack, "Petiole", 1);
    leaf::addItem(*stack, "Petiole", PRIMITIVE_POLYPOINT, 2, {{1.0, 1.0}, {2.0, 2.0}, {3.0, 3.0}});
    probe.checkLeaves(0, report);
    EXPECT_EQ(report, " no blade,|n " + remedy);
    probe.checkLeaves(1, report);
    EXPECT_EQ(report, " no petiole, " + remedy);
    probe.checkLeaves(2, report);
    EXPECT_EQ(report, " Add two petiole/blade junctions per leaf,\n "
                      " Petiole/blade junctions defects in slice : \n " +
                          remedy);
}

TEST(LeafChecks, AHundredVerticesAreTheSmallestBlade)
{
    for (const int side : {24, 25}) { // squares of 96 and 100 unit steps
        const auto stack = leaf::emptyStack(1);
        const double s = side;
        leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, {{0, 0}, {s, 0}, {s, s}, {0, s}});
        leaf::addItem(*stack, "Petiole", PRIMITIVE_POLYPOINT, 0, {{10.0, s}, {14.0, s}});
        leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, 0, {{12.0, 0.0}});
        std::string report;
        Probe(*stack).checkLeaves(0, report);
        EXPECT_EQ(report, side == 24 ? " wrong blade size,\n " + remedy : "");
    }
    const auto stack = leaf::emptyStack(1);
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, {{5.0, 5.0}});
    leaf::addItem(*stack, "Petiole", PRIMITIVE_POLYPOINT, 0, {{10.0, 1.0}, {14.0, 1.0}});
    leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, 0, {{12.0, 0.0}});
    std::string report;
    Probe(*stack).checkLeaves(0, report);
    EXPECT_EQ(report, " wrong blade size,\n " + remedy);
}

TEST(LeafChecks, OneTipTooFewOrTooManyIsAWrongNumber)
{
    const Landmarks whole = wholeLeaf();
    for (std::size_t k = 0; k < whole.tips.size(); ++k) {
        Landmarks fewer = whole;
        fewer.tips = without(whole.tips, k);
        EXPECT_EQ(check(fewer), wrongNumber + remedy);
    }
    Landmarks more = whole;
    more.tips.push_back(whole.apex[0]);
    EXPECT_EQ(check(more), wrongNumber + remedy);
}

TEST(LeafChecks, TwoSinusesNeedOneTipWhereverTheyLie)
{
    const leaf::Outline outline = wholeLeaf(1).outline;
    Landmarks oneHalf = {outline, {outline.apex}, {outline.sinuses[0], outline.sinuses[1]}, {}};
    oneHalf.tips = {outline.tips[0]};
    EXPECT_EQ(check(oneHalf), "");
    // Numbers fit with a sinus on each half, but from a sinus the way must lead to a tip first.
    Landmarks bothHalves = {outline, {outline.apex}, {outline.sinuses[0], outline.sinuses[2]}, {}};
    bothHalves.tips = {outline.tips[0]};
    EXPECT_EQ(check(bothHalves).find(wrongNumber), std::string::npos);
}

TEST(LeafChecks, ATipOnTheWrongSideOfItsSinusIsAWrongOrder)
{
    const Landmarks whole = wholeLeaf();
    Landmarks lower = whole;
    // The first tip moves behind the next sinus, beside the second tip.
    lower.tips[0] = {(whole.sinuses[1].x + whole.tips[1].x) / 2.0,
                     (whole.sinuses[1].y + whole.tips[1].y) / 2.0};
    EXPECT_EQ(check(lower),
              " wrong landmark, add peak, \n  wrong landmark add sinus, \n " + remedy);
    Landmarks upper = whole;
    upper.tips[5] = {(whole.sinuses[6].x + whole.tips[4].x) / 2.0,
                     (whole.sinuses[6].y + whole.tips[4].y) / 2.0};
    EXPECT_EQ(check(upper),
              " wrong landmark1 add sinus, \n  wrong landmark1, add peak, \n" + remedy);
}

TEST(LeafChecks, SinusesWithoutTipsStandInTheOrderAsSinuses)
{
    Landmarks landmarks = wholeLeaf();
    landmarks.tips.clear();
    EXPECT_EQ(check(landmarks), "");
}

TEST(LeafChecks, AnApexAmongThePetioleIsAWrongPositionOfTheJunctions)
{
    Landmarks landmarks = wholeLeaf();
    const Point left = landmarks.outline.points[landmarks.outline.points.size() - 40];
    landmarks.apex = {left};
    landmarks.tips.clear();
    landmarks.sinuses.clear();
    // Apex behind both junctions: the walk meets the second junction before it.
    EXPECT_EQ(
        check(landmarks),
        " wrong landmark, \n "
        " wrong position for second petiole,\n please inverse the order or \n verify that the "
        "original contour or between the two petioles, " +
            remedy);
    // A sinus on the petiole in front of the first junction is told once for each step.
    Landmarks early = wholeLeaf(1);
    early.tips.clear();
    early.sinuses = {early.outline.points[60], early.sinuses[0]};
    const std::string report = check(early);
    EXPECT_EQ(report, wrongFirst + wrongFirst + remedy);
}

TEST(LeafChecks, AContourThatCrossesItselfIsReported)
{
    const auto stack = leaf::emptyStack(3);
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, {{0, 0}, {40, 0}, {40, 40}, {0, 40}});
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 1, {{0, 0}, {41, 37}, {40, 0}, {0, 90}});
    std::string report;
    Probe probe(*stack);
    probe.checkBlades(0, report);
    EXPECT_EQ(report, "");
    probe.checkBlades(1, report);
    EXPECT_EQ(report, "intersection trouvée\n " + remedy);
    probe.checkBlades(2, report);
    EXPECT_EQ(report, "");
}
