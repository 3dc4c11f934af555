// The choices of a hierarchy, one after the other on the same leaves.

#include "blade/blademessages.h"
#include "blade/extractconvexpoints.h"
#include "blade/extractpeak.h"
#include "blade/hierarchyarabidoprocess.h"
#include "blade/hierarchyiterativeprocess.h"
#include "blade/nohierarchyprocess.h"
#include "interface/lmxeventserver.h"
#include "support/labelledleaf.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

using leaf::Point;

namespace {

/// Keeps what is said while it lives: messages, and both output streams.
class Quiet
{
public:
    Quiet()
        : former_(
              BladeMessages::setHandler([this](const std::string& text) { told.push_back(text); }))
        , out_(std::cout.rdbuf(output.rdbuf()))
        , err_(std::cerr.rdbuf(errors.rdbuf()))
    {}

    ~Quiet()
    {
        BladeMessages::setHandler(former_);
        std::cout.rdbuf(out_);
        std::cerr.rdbuf(err_);
    }

    std::vector<std::string> told;
    std::ostringstream output;
    std::ostringstream errors;

private:
    BladeMessages::Handler former_;
    std::streambuf* out_;
    std::streambuf* err_;
};

std::size_t runRecursive(LMXStack& stack, int degrees, bool distal)
{
    Quiet quiet;
    HierarchyArabidoProcess process;
    process.setStack(stack);
    process.setLimitAngle(degrees);
    process.setEnableDistalTeeth(distal);
    process.run();
    EXPECT_EQ(quiet.told, (std::vector<std::string>{"Hierarchy process is complete"}));
    std::string dropped;
    for (const std::string& text : process.getDropped()) {
        dropped += text + "\n";
    }
    EXPECT_EQ(quiet.errors.str(), dropped);
    return process.getDropped().size();
}

void runIterative(LMXStack& stack, float tolerance)
{
    Quiet quiet;
    HierarchyIterativeProcess process;
    process.setStack(stack);
    process.setTolerance(tolerance);
    process.run();
    EXPECT_EQ(quiet.told, (std::vector<std::string>{"Hierarchy process is complete"}));
}

void runNone(LMXStack& stack)
{
    Quiet quiet;
    NoHierarchyProcess process;
    process.setStack(stack);
    process.run();
    EXPECT_EQ(quiet.told, (std::vector<std::string>{"No Hierarchy process is complete"}));
}

/// The landmarks of all kinds on the slice, each place once.
std::vector<Point> allPlaces(LMXStack& stack, int slice, const std::vector<std::string>& names)
{
    std::vector<Point> places;
    for (const std::string& name : names) {
        for (const Point& point : leaf::vertices(stack, name, slice)) {
            bool known = false;
            for (const Point& other : places) {
                known = known || leaf::distance(point, other) == 0.0;
            }
            if (!known) {
                places.push_back(point);
            }
        }
    }
    return places;
}

const std::vector<std::string> sinusModels = {"Primary Sinus", "Primary Distal Sinus",
                                              "Secondary Sinus"};
const std::vector<std::string> tipModels = {"Primary Peak", "Primary Distal Peak",
                                            "Secondary Peak"};

void expectAllItemsHaveVertices(LMXStack& stack)
{
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        for (int k = 0; k < stack.getSlice(i).getNumItems(); ++k) {
            EXPECT_GT(stack.getSlice(i).getItem(k).getSize(), 0);
        }
    }
}

} // namespace

TEST(HierarchyArabidoProcess, TeethOnTeethAreLabelledAsDrawn)
{
    const leaf::LabelledLeaf drawn = leaf::drawTeethOnTeeth(true);
    const auto stack = leaf::stackOf({drawn.outline, drawn.outline});
    leaf::addLandmarks(*stack, 1, drawn.outline);
    leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, 0, {drawn.outline.apex});
    EXPECT_EQ(runRecursive(*stack, 45, false), 0u);
    EXPECT_TRUE(
        leaf::samePlaces(leaf::vertices(*stack, "Primary Sinus", 1), drawn.primarySinuses, 3));
    EXPECT_TRUE(
        leaf::samePlaces(leaf::vertices(*stack, "Secondary Sinus", 1), drawn.secondarySinuses, 3));
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Primary Peak", 1), drawn.primaryTips, 3));
    EXPECT_TRUE(
        leaf::samePlaces(leaf::vertices(*stack, "Secondary Peak", 1), drawn.secondaryTips, 3));
    EXPECT_EQ(stack->findModel("Primary Distal Sinus"), -1);
    EXPECT_EQ(leaf::findItem(*stack, "Secondary Peak", 0), nullptr) << "no landmark, no hierarchy";

    // Above two pi no sinus is wide enough.
    runRecursive(*stack, 115, false);
    EXPECT_EQ(leaf::vertices(*stack, "Primary Sinus", 1).size(), 4u);
    // With a limit near 0 all are.
    runRecursive(*stack, 1, false);
    EXPECT_TRUE(
        leaf::samePlaces(leaf::vertices(*stack, "Primary Sinus", 1), drawn.outline.sinuses, 4));
    expectAllItemsHaveVertices(*stack);
}

TEST(HierarchyArabidoProcess, ASmallToothBesideTheTipIsDistal)
{
    using leaf::Mark;
    const std::vector<leaf::Corner> half = {
        {60, 100, Mark::Sinus}, {120, 190, Mark::Tip},   {200, 110, Mark::Sinus},
        {290, 200, Mark::Tip},  {380, 105, Mark::Sinus}, {410, 130, Mark::Tip},
        {440, 90, Mark::Sinus},
    };
    std::vector<leaf::Corner> even = half;
    even[3] = {290, 120, Mark::Tip};
    even[5] = {400, 260, Mark::Tip}; // the upper half then has no distal tooth
    const leaf::LabelledLeaf both = leaf::drawCorners(half, half);
    const leaf::LabelledLeaf one = leaf::drawCorners(half, even);
    const auto stack = leaf::stackOf({both.outline, one.outline});
    leaf::addLandmarks(*stack, 0, both.outline);
    leaf::addLandmarks(*stack, 1, one.outline);
    runRecursive(*stack, 30, true);

    const std::vector<Point>& sinuses = both.outline.sinuses; // from the base to the tip, 0 to 3
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Primary Distal Sinus", 0),
                                 {sinuses[2], sinuses[3], sinuses[4], sinuses[5]}, 3));
    EXPECT_TRUE(leaf::samePlaces(
        leaf::vertices(*stack, "Primary Sinus", 0),
        {sinuses[0], sinuses[1], sinuses[2], sinuses[5], sinuses[6], sinuses[7]}, 3));
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Primary Distal Peak", 0),
                                 {both.outline.tips[2], both.outline.tips[3]}, 3));
    EXPECT_EQ(leaf::vertices(*stack, "Primary Peak", 0).size(), 4u);
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Primary Distal Sinus", 1),
                                 {sinuses[2], sinuses[3]}, 3));
    EXPECT_EQ(leaf::vertices(*stack, "Primary Distal Peak", 1).size(), 1u);
    EXPECT_EQ(leaf::vertices(*stack, "Primary Sinus", 1).size(), 7u);

    runRecursive(*stack, 30, false);
    EXPECT_EQ(stack->findModel("Primary Distal Sinus"), -1);
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Primary Sinus", 0), sinuses, 3));
}

TEST(HierarchyIterativeProcess, TeethOnTeethAreLabelledAsDrawn)
{
    const leaf::LabelledLeaf drawn = leaf::drawTeethOnTeeth(false);
    const auto stack = leaf::stackOf({drawn.outline});
    leaf::addLandmarks(*stack, 0, drawn.outline);
    runIterative(*stack, 0.2f);
    const auto expectPlaces = [&](const char* name, const std::vector<Point>& places) {
        EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, name, 0), places, 3)) << name;
    };
    expectPlaces("Primary Sinus", drawn.primarySinuses);
    expectPlaces("Secondary Sinus", drawn.secondarySinuses);
    expectPlaces("Primary Peak", drawn.primaryTips);
    expectPlaces("Secondary Peak", drawn.secondaryTips);
    // At a stringency of 1 nothing falls, and all labels are folded back.
    runIterative(*stack, 1.0f);
    expectPlaces("Primary Sinus", drawn.outline.sinuses);
    expectPlaces("Primary Peak", drawn.outline.tips);
}

TEST(Hierarchy, NoLandmarkIsLostInAnyOrderOfRuns)
{
    std::vector<leaf::Outline> outlines;
    for (unsigned seed = 1; seed <= 30; ++seed) {
        outlines.push_back(leaf::drawRandomTeeth(seed).outline);
    }
    std::mt19937 random(5);
    std::size_t dropped = 0;
    for (const leaf::Outline& outline : outlines) {
        const auto stack = leaf::stackOf({outline});
        leaf::addLandmarks(*stack, 0, outline);
        for (int round = 0; round < 6 && dropped == 0; ++round) {
            SCOPED_TRACE(round);
            const unsigned choice = random() % 4u;
            if (choice == 0) {
                runIterative(*stack, 0.05f + 0.002f * static_cast<float>(random() % 200u));
            } else if (choice == 1) {
                runNone(*stack);
                EXPECT_EQ(stack->findModel("Secondary Sinus"), -1);
                EXPECT_EQ(stack->findModel("Primary Distal Peak"), -1);
            } else {
                dropped =
                    runRecursive(*stack, 1 + static_cast<int>(random() % 179u), random() % 2u == 0);
            }
            const std::vector<Point> sinuses = allPlaces(*stack, 0, sinusModels);
            const std::vector<Point> tips = allPlaces(*stack, 0, tipModels);
            EXPECT_EQ(sinuses.size() + tips.size() + dropped,
                      outline.sinuses.size() + outline.tips.size());
            if (dropped == 0) {
                EXPECT_TRUE(leaf::samePlaces(sinuses, outline.sinuses, 6.0));
                EXPECT_TRUE(leaf::samePlaces(tips, outline.tips, 6.0));
            }
            expectAllItemsHaveVertices(*stack);
        }
        dropped = 0;
    }
}

TEST(Hierarchy, ASinusInThePlaceOfTheApexOrOfATipStays)
{
    using leaf::Mark;
    for (const leaf::Corner& corner :
         {leaf::Corner{600.0, 0.0, Mark::Sinus}, leaf::Corner{350.0, 190.0, Mark::Sinus}}) {
        const leaf::LabelledLeaf drawn =
            leaf::drawCorners({}, {{60.0, 100.0, Mark::Sinus}, {350.0, 190.0, Mark::Tip}, corner});
        const auto stack = leaf::stackOf({drawn.outline});
        leaf::addLandmarks(*stack, 0, drawn.outline);
        leaf::Probe(*stack).createModelsForHierarchy();
        Quiet quiet;
        HierarchyArabidoProcess process;
        process.setStack(*stack);
        process.setLimitAngle(45);
        process.createModelSecondarySinus();
        process.createModelSecondaryPeaks();
        process.process(0);
        EXPECT_TRUE(
            leaf::samePlaces(leaf::vertices(*stack, "Primary Sinus", 0), drawn.outline.sinuses, 3));
        EXPECT_EQ(leaf::vertices(*stack, "Primary Peak", 0).size(), 1u);
    }
}

TEST(Hierarchy, AFaultyLeafStopsTheRunBeforeAnyLabelChanges)
{
    const leaf::LabelledLeaf drawn = leaf::drawTeethOnTeeth(true);
    const auto stack = leaf::stackOf({drawn.outline, drawn.outline});
    leaf::addLandmarks(*stack, 0, drawn.outline);
    leaf::Outline faulty = drawn.outline;
    faulty.tips.pop_back();
    leaf::addLandmarks(*stack, 1, faulty);
    const std::vector<Point> before = leaf::vertices(*stack, "Primary Sinus", 0);
    const auto expectStopped = [&](ModelsManager& process, const char* closing) {
        Quiet quiet;
        process.setStack(*stack);
        process.run();
        ASSERT_EQ(quiet.told.size(), 2u);
        EXPECT_EQ(quiet.told[0],
                  "leaf1:  wrong number for Sinus and Peaks pinnate, \n Please check "
                  "and correct your stack, save the changes.\n");
        EXPECT_EQ(quiet.told[0], process.getLeafFaults());
        EXPECT_EQ(quiet.told[1], closing);
        EXPECT_EQ(stack->findModel("Secondary Sinus"), -1);
        EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Primary Sinus", 0), before, 0.0));
    };
    HierarchyArabidoProcess recursive;
    recursive.setLimitAngle(45);
    expectStopped(recursive, "Hierarchy process is complete");
    HierarchyIterativeProcess iterative;
    expectStopped(iterative, "Hierarchy process is complete");
    NoHierarchyProcess none;
    expectStopped(none, "No Hierarchy process is complete");
}

TEST(Hierarchy, DetectingSinusesOrTipsAgainDeletesTheSecondaryLandmarks)
{
    const leaf::LabelledLeaf drawn = leaf::drawTeethOnTeeth(true);
    const auto stack = leaf::stackOf({drawn.outline});
    leaf::addLandmarks(*stack, 0, drawn.outline);
    runRecursive(*stack, 45, false);
    EXPECT_GE(stack->findModel("Secondary Peak"), 0);
    ExtractPeak tips;
    tips.setStack(*stack);
    tips.createModels();
    EXPECT_EQ(stack->findModel("Secondary Sinus"), -1);
    EXPECT_EQ(stack->findModel("Secondary Peak"), -1);

    runRecursive(*stack, 45, false);
    EXPECT_GE(stack->findModel("Secondary Sinus"), 0);
    ExtractConvexPoints sinuses;
    sinuses.setStack(*stack);
    sinuses.createModels();
    EXPECT_EQ(stack->findModel("Secondary Sinus"), -1);
    EXPECT_EQ(stack->findModel("Secondary Peak"), -1);
}
