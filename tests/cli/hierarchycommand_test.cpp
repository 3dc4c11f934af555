#include "blade/blademessages.h"
#include "blade/hierarchyarabidoprocess.h"
#include "blade/hierarchyiterativeprocess.h"
#include "blade/nohierarchyprocess.h"
#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "stack/stackreader.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace {

std::string stackWithTips(const LeafFolder& folder, const std::vector<std::string>& photographs)
{
    const std::string stack = folder.makeStack(photographs);
    EXPECT_EQ(crenara({"sinus", stack}).status, 0);
    EXPECT_EQ(crenara({"tips", stack}).status, 0);
    return stack;
}

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
        stackWithTips(folder, {folder.addLeaf("a", 3), folder.addLeaf("b", 5)});
    std::string former = stack;
    const auto expectSame = [&](const std::vector<std::string>& options, ModelsManager& process) {
        const std::string commands = folder.file("command.sdf");
        const CommandResult result =
            crenara(joined({"hierarchy", former, "-o", commands, "--quiet"}, options));
        EXPECT_EQ(result.status, 0) << result.err;
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

TEST(Hierarchy, MeasuresUseThePrimaryStructuresAlone)
{
    LeafFolder folder;
    const std::string stack = stackWithTips(folder, {folder.addLeaf("a", 5)});
    ASSERT_EQ(crenara({"hierarchy", stack, "recursive", "--limit-angle", "120"}).status, 0);
    const std::size_t primary = points(stack, "Primary Peak", 0);
    EXPECT_LT(primary, 10u);
    ASSERT_EQ(crenara({"measure", stack, "--prefix", "m"}).status, 0);
    EXPECT_EQ(cellOf(folder.file("m_LeafMeasures.data"), "a", "Total_Peak_Number"),
              std::to_string(primary));
}

TEST(Hierarchy, TheTableOfLandmarksHoldsAllPoints)
{
    LeafFolder folder;
    const std::string stack =
        stackWithTips(folder, {folder.addLeaf("a", 5), folder.addLeaf("b", 3)});
    ASSERT_EQ(crenara({"hierarchy", stack, "recursive", "--limit-angle", "120"}).status, 0);
    const std::string table = folder.file("t.tsv");
    ASSERT_EQ(crenara({"landmarks", stack, table}).status, 0);
    const auto rows = tableOf(table);
    EXPECT_EQ(rows[0], (std::vector<std::string>{"Slice_Name", "Model", "X", "Y"}));
    const auto live = open(stack);
    std::size_t all = 0;
    for (const char* model : {"Petiole", "Apex", "Primary Sinus", "Secondary Sinus", "Primary Peak",
                              "Secondary Peak"}) {
        for (int slice = 0; slice < 2; ++slice) {
            std::size_t place = 0;
            const auto expected = leaf::vertices(*live, model, slice);
            for (const auto& row : rows) {
                if (row[0] == (slice == 0 ? "a" : "b") && row[1] == model) {
                    ASSERT_LT(place, expected.size());
                    EXPECT_EQ(std::stod(row[2]), expected[place].x);
                    EXPECT_EQ(std::stod(row[3]), expected[place].y);
                    ++place;
                }
            }
            EXPECT_EQ(place, expected.size()) << model;
            all += place;
        }
    }
    EXPECT_EQ(rows.size(), all + 1);
    EXPECT_EQ(crenara({"landmarks", stack, stack}).status, 2);
    EXPECT_EQ(crenara({"landmarks", stack, folder.file("none/t.tsv")}).status, 1);
}

TEST(Hierarchy, WhatStandsInTheWayIsToldAndTheStackStays)
{
    LeafFolder folder;
    const std::string stack = folder.makeStack({folder.addLeaf("a"), folder.addLeaf("b")});
    const CommandResult early = crenara({"hierarchy", stack, "none"});
    EXPECT_EQ(early.status, 1);
    EXPECT_TRUE(early.says("Please run Extract Sinus and/or Extract Tips before Hierarchy"))
        << early.err;

    ASSERT_EQ(crenara({"sinus", stack}).status, 0);
    ASSERT_EQ(crenara({"tips", stack}).status, 0);
    {
        const auto live = open(stack);
        ModelItem* tips = leaf::findItem(*live, "Primary Peak", 1);
        ASSERT_NE(tips, nullptr);
        tips->removeVertex(0);
        EXPECT_TRUE(live->write(stack));
    }
    const std::string before = bytesOf(stack);
    for (const char* method : {"recursive", "iterative", "none"}) {
        const CommandResult result = crenara({"hierarchy", stack, method});
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(result.says("b:  wrong number for Sinus and Peaks pinnate")) << result.err;
        EXPECT_FALSE(result.says("crenara: a: ")) << result.err;
        EXPECT_EQ(bytesOf(stack), before);
    }
}
