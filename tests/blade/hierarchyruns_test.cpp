// The choices of a hierarchy, one after the other on the same leaves.

#include "blade/hierarchy/hierarchyarabidoprocess.h"
#include "blade/hierarchy/hierarchyiterativeprocess.h"
#include "blade/hierarchy/nohierarchyprocess.h"
#include "support/labelledleaf.h"
#include "support/stages.h"

#include <gtest/gtest.h>

using leaf::Point;
using Points = std::vector<Point>;

namespace {

/// Runs a process, and keeps what it writes on both streams.
std::string runQuietly(ModelsManager& process, LMXStack& stack, const std::string& closing)
{
    process.setStack(stack);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(leaf::run(process).back(), closing);
    testing::internal::GetCapturedStdout();
    return testing::internal::GetCapturedStderr();
}

std::size_t runRecursive(LMXStack& stack, int degrees, bool distal)
{
    HierarchyArabidoProcess process;
    process.setLimitAngle(degrees);
    process.setEnableDistalTeeth(distal);
    const std::string errors = runQuietly(process, stack, "Hierarchy process is complete");
    std::string dropped;
    for (const std::string& text : process.getDropped()) {
        dropped += text + "\n";
    }
    EXPECT_EQ(errors, dropped);
    return process.getDropped().size();
}

void runIterative(LMXStack& stack, float tolerance)
{
    HierarchyIterativeProcess process;
    process.setTolerance(tolerance);
    runQuietly(process, stack, "Hierarchy process is complete");
}

void expectPlaces(LMXStack& stack, int slice, const char* name, const Points& places)
{
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(stack, name, slice), places, 4.0))
        << name << " " << leaf::vertices(stack, name, slice).size() << " " << places.size();
}

void expectAsDrawn(LMXStack& stack, int slice, const leaf::LabelledLeaf& drawn)
{
    expectPlaces(stack, slice, "Primary Sinus", drawn.primarySinuses);
    expectPlaces(stack, slice, "Secondary Sinus", drawn.secondarySinuses);
    expectPlaces(stack, slice, "Primary Peak", drawn.primaryTips);
    expectPlaces(stack, slice, "Secondary Peak", drawn.secondaryTips);
}

/// The landmarks of all kinds on slice 0, each place once. No item is empty.
Points allPlaces(LMXStack& stack, const std::string& kind)
{
    Points places;
    for (const char* order : {"Primary ", "Primary Distal ", "Secondary "}) {
        const ModelItem* item = leaf::findItem(stack, order + kind, 0);
        EXPECT_TRUE(!item || item->getSize() > 0) << order << kind;
        for (const Point& point : leaf::vertices(stack, order + kind, 0)) {
            if (std::none_of(places.begin(), places.end(), [&](const Point& other) {
                    return leaf::distance(point, other) == 0.0;
                })) {
                places.push_back(point);
            }
        }
    }
    return places;
}

} // namespace

TEST(HierarchyArabidoProcess, TeethOnTeethAreLabelledAsDrawn)
{
    const leaf::LabelledLeaf drawn = leaf::drawTeethOnTeeth(true);
    const auto stack = leaf::stackOf({drawn.outline, drawn.outline});
    leaf::addLandmarks(*stack, 1, drawn.outline);
    leaf::mark(*stack, "Apex", 0, {drawn.outline.apex});
    EXPECT_EQ(runRecursive(*stack, 45, false), 0u);
    expectAsDrawn(*stack, 1, drawn);
    EXPECT_EQ(stack->findModel("Primary Distal Sinus"), -1);
    EXPECT_EQ(leaf::findItem(*stack, "Secondary Peak", 0), nullptr) << "no landmark, no hierarchy";
    // Above two pi no sinus is wide enough, with a limit near 0 all are.
    runRecursive(*stack, 115, false);
    EXPECT_EQ(leaf::vertices(*stack, "Primary Sinus", 1).size(), 4u);
    runRecursive(*stack, 1, false);
    expectPlaces(*stack, 1, "Primary Sinus", drawn.outline.sinuses);
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
    const auto stack = leaf::landmarkedStack({both.outline, leaf::drawCorners(half, even).outline});
    runRecursive(*stack, 30, true);
    const Points& s = both.outline.sinuses; // from the base to the tip, 0 to 3
    expectPlaces(*stack, 0, "Primary Distal Sinus", {s[2], s[3], s[4], s[5]});
    expectPlaces(*stack, 0, "Primary Sinus", {s[0], s[1], s[2], s[5], s[6], s[7]});
    const Points& t = both.outline.tips;
    expectPlaces(*stack, 0, "Primary Distal Peak", {t[2], t[3]});
    EXPECT_EQ(leaf::vertices(*stack, "Primary Peak", 0).size(), 4u);
    expectPlaces(*stack, 1, "Primary Distal Sinus", {s[2], s[3]});
    EXPECT_EQ(leaf::vertices(*stack, "Primary Distal Peak", 1).size(), 1u);
    EXPECT_EQ(leaf::vertices(*stack, "Primary Sinus", 1).size(), 7u);
    runRecursive(*stack, 30, false);
    EXPECT_EQ(stack->findModel("Primary Distal Sinus"), -1);
    expectPlaces(*stack, 0, "Primary Sinus", s);
}

TEST(Hierarchy, NoLandmarkIsLostInAnyOrderOfRuns)
{
    std::mt19937 random(5);
    for (unsigned seed = 1; seed <= 30; ++seed) {
        const leaf::Outline outline = leaf::drawRandomTeeth(seed).outline;
        const auto stack = leaf::landmarkedStack({outline});
        std::size_t dropped = 0;
        for (int round = 0; round < 6 && dropped == 0; ++round) {
            SCOPED_TRACE(round);
            const unsigned choice = random() % 4u;
            if (choice == 0) {
                runIterative(*stack, 0.05f + 0.002f * static_cast<float>(random() % 200u));
            } else if (choice == 1) {
                NoHierarchyProcess none;
                runQuietly(none, *stack, "No Hierarchy process is complete");
                EXPECT_EQ(stack->findModel("Secondary Sinus"), -1);
                EXPECT_EQ(stack->findModel("Primary Distal Peak"), -1);
            } else {
                dropped =
                    runRecursive(*stack, 1 + static_cast<int>(random() % 179u), random() % 2u == 0);
            }
            const Points sinuses = allPlaces(*stack, "Sinus");
            const Points tips = allPlaces(*stack, "Peak");
            EXPECT_EQ(sinuses.size() + tips.size() + dropped,
                      outline.sinuses.size() + outline.tips.size());
            if (dropped == 0) {
                EXPECT_TRUE(leaf::samePlaces(sinuses, outline.sinuses, 6.0));
                EXPECT_TRUE(leaf::samePlaces(tips, outline.tips, 6.0));
            }
        }
    }
}

TEST(Hierarchy, ASinusInThePlaceOfTheApexOrOfATipStays)
{
    using leaf::Mark;
    for (const leaf::Corner& corner :
         {leaf::Corner{600.0, 0.0, Mark::Sinus}, leaf::Corner{350.0, 190.0, Mark::Sinus}}) {
        const leaf::LabelledLeaf drawn =
            leaf::drawCorners({}, {{60.0, 100.0, Mark::Sinus}, {350.0, 190.0, Mark::Tip}, corner});
        const auto stack = leaf::landmarkedStack({drawn.outline});
        leaf::Probe(*stack).createModelsForHierarchy();
        HierarchyArabidoProcess process;
        process.setStack(*stack);
        process.setLimitAngle(45);
        process.createModelSecondarySinus();
        process.createModelSecondaryPeaks();
        process.process(0);
        expectPlaces(*stack, 0, "Primary Sinus", drawn.outline.sinuses);
        EXPECT_EQ(leaf::vertices(*stack, "Primary Peak", 0).size(), 1u);
    }
}

TEST(Hierarchy, AFaultyLeafStopsTheRunBeforeAnyLabelChanges)
{
    const leaf::LabelledLeaf drawn = leaf::drawTeethOnTeeth(true);
    leaf::Outline faulty = drawn.outline;
    faulty.tips.pop_back();
    const auto stack = leaf::landmarkedStack({drawn.outline, faulty});
    const Points before = leaf::vertices(*stack, "Primary Sinus", 0);
    HierarchyArabidoProcess recursive;
    HierarchyIterativeProcess iterative;
    NoHierarchyProcess none;
    for (ModelsManager* process :
         std::initializer_list<ModelsManager*>{&recursive, &iterative, &none}) {
        process->setStack(*stack);
        const auto told = leaf::run(*process);
        ASSERT_EQ(told.size(), 2u);
        EXPECT_EQ(told[0], "leaf1:  wrong number for Sinus and Peaks pinnate, \n Please check "
                           "and correct your stack, save the changes.\n");
        EXPECT_EQ(told[0], process->getLeafFaults());
        EXPECT_EQ(told[1],
                  std::string(process == &none ? "No " : "") + "Hierarchy process is complete");
        EXPECT_EQ(stack->findModel("Secondary Sinus"), -1);
        EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Primary Sinus", 0), before, 0.0));
    }
}

// Tips found again once deleted what a hierarchy had made of the sinuses, and sinuses found again left
// the distal landmarks to be mixed in by the next fold.
TEST(Hierarchy, DetectingSinusesOrTipsAgainLosesNoSinusAndLeavesNoLabel)
{
    const leaf::Outline outline = leaf::drawTeethOnTeeth(true).outline;
    const auto stack = leaf::landmarkedStack({outline});
    const auto sort = [&] {
        runRecursive(*stack, 45, false);
        // Labels that a leaf may have and this one lacks: a sinus of two labels, and one of its own.
        leaf::mark(*stack, "Primary Distal Sinus", 0,
                   {leaf::vertices(*stack, "Primary Sinus", 0)[0], {20.0, 30.0}});
        leaf::mark(*stack, "Primary Distal Peak", 0, {outline.tips[0]});
    };
    const auto expectNoLabels = [&] {
        for (const char* name :
             {"Secondary Sinus", "Secondary Peak", "Primary Distal Sinus", "Primary Distal Peak"}) {
            EXPECT_EQ(stack->findModel(name), -1) << name;
        }
    };
    sort();
    leaf::findTips(*stack, PINNATE);
    EXPECT_EQ(leaf::vertices(*stack, "Primary Sinus", 0).size(), outline.sinuses.size() + 1);
    expectNoLabels();
    sort();
    leaf::findSinuses(*stack);
    expectNoLabels();
}
