#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "stack/stackreader.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::unique_ptr<LMXStack> open(const std::string& path)
{
    auto stack = std::make_unique<LMXStack>();
    EXPECT_TRUE(StackReader().read(*stack, path));
    return stack;
}

} // namespace

TEST(Hierarchy, TheTableOfLandmarksHoldsAllPointsAndMeasuresUseThePrimaryOnesAlone)
{
    LeafFolder folder;
    const std::string stack =
        folder.makeLandmarks({folder.addLeaf("a", 5), folder.addLeaf("b", 3)});
    runs({"hierarchy", stack, "recursive", "--limit-angle", "120"});
    const std::string table = folder.file("t.tsv");
    runs({"landmarks", stack, table});
    const auto live = open(stack);
    std::vector<Words> expected = {{"Slice_Name", "Model", "X", "Y"}};
    for (int slice = 0; slice < 2; ++slice) {
        for (const char* model :
             {"Petiole", "Apex", "Primary Sinus", "Primary Distal Sinus", "Secondary Sinus",
              "Primary Peak", "Primary Distal Peak", "Secondary Peak"}) {
            for (const leaf::Point& point : leaf::vertices(*live, model, slice)) {
                expected.push_back({slice == 0 ? "a" : "b", model, std::to_string(int(point.x)),
                                    std::to_string(int(point.y))});
            }
        }
    }
    std::vector<Words> rows = tableOf(table);
    EXPECT_EQ(rows[0], expected[0]);
    std::sort(rows.begin(), rows.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(rows, expected);
    fails({"landmarks", stack, stack}, "", 2);
    fails({"landmarks", stack, folder.file("none/t.tsv")}, "");

    const std::size_t primary = leaf::vertices(*live, "Primary Peak", 0).size();
    EXPECT_LT(primary, 10u);
    runs({"measure", stack, "--prefix", "m"});
    EXPECT_EQ(cellOf(folder.file("m_LeafMeasures.data"), "a", "Total_Peak_Number"),
              std::to_string(primary));
}

TEST(Hierarchy, WhatStandsInTheWayIsToldAndTheStackStays)
{
    LeafFolder folder;
    const std::string stack = folder.makeStack({folder.addLeaf("a"), folder.addLeaf("b")});
    fails({"hierarchy", stack, "none"},
          "Please run Extract Sinus and/or Extract Tips before Hierarchy");

    runs({"sinus", stack});
    runs({"tips", stack});
    {
        const auto live = open(stack);
        ModelItem* tips = leaf::findItem(*live, "Primary Peak", 1);
        ASSERT_NE(tips, nullptr);
        tips->removeVertex(0);
        EXPECT_TRUE(live->write(stack));
    }
    const std::string before = bytesOf(stack);
    for (const char* method : {"recursive", "iterative", "none"}) {
        const CommandResult result =
            fails({"hierarchy", stack, method}, "b:  wrong number for Sinus and Peaks pinnate");
        EXPECT_FALSE(result.says("crenara: a: ")) << result.err;
        EXPECT_EQ(bytesOf(stack), before);
    }
}
