#include "blade/blademessages.h"
#include "blade/hierarchyarabidoprocess.h"
#include "blade/hierarchyiterativeprocess.h"
#include "blade/nohierarchyprocess.h"
#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "stack/stackreader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <sstream>

namespace {

std::unique_ptr<LMXStack> open(const std::string& path)
{
    auto stack = std::make_unique<LMXStack>();
    EXPECT_TRUE(StackReader().read(*stack, path));
    return stack;
}

std::size_t points(const std::string& path, const std::string& model, int slice)
{
    const auto stack = open(path);
    return leaf::vertices(*stack, model, slice).size();
}

} // namespace

TEST(Hierarchy, TheStackIsThatOfTheProcessesByteForByte)
{
    LeafFolder folder;
    const std::string stack =
        folder.makeLandmarks({folder.addLeaf("a", 3), folder.addLeaf("b", 5)});
    std::string former = stack;
    const auto expectSame = [&](const Words& options, ModelsManager& process) {
        const std::string commands = folder.file("command.sdf");
        const CommandResult result =
            runs(joined({"hierarchy", former, "-o", commands, "--quiet"}, options));
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.says("ierarchy process is complete")) << result.err;

        const auto ours = open(former);
        std::ostringstream said;
        std::streambuf* const out = std::cout.rdbuf(said.rdbuf());
        const auto handler = BladeMessages::setHandler([](const std::string&) {});
        process.setStack(*ours);
        process.run();
        BladeMessages::setHandler(handler);
        std::cout.rdbuf(out);
        EXPECT_TRUE(ours->write(folder.file("process.sdf")));
        EXPECT_EQ(folder.read("command.sdf"), folder.read("process.sdf"));
        EXPECT_EQ(result.err.find("pointe secondaire") != std::string::npos, !said.str().empty());
        // The next one starts from what this one left.
        former = folder.file("former.sdf");
        folder.write("former.sdf", folder.read("command.sdf"));
    };

    HierarchyArabidoProcess recursive;
    recursive.setLimitAngle(50);
    recursive.setEnableDistalTeeth(true);
    expectSame({"recursive", "--limit-angle", "50", "--distal"}, recursive);
    HierarchyIterativeProcess iterative;
    iterative.setTolerance(0.05f);
    expectSame({"iterative", "--tolerance", "0.05"}, iterative);
    HierarchyArabidoProcess wide;
    wide.setLimitAngle(120);
    expectSame({"recursive", "--limit-angle", "120"}, wide);
    EXPECT_GT(points(former, "Secondary Sinus", 1), 0u);
    NoHierarchyProcess none;
    expectSame({"none"}, none);
    EXPECT_EQ(points(former, "Secondary Sinus", 1), 0u);
}

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
