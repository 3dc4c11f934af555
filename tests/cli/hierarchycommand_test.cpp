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

// Contours were resampled each time, and leaves grew by one to two per cent.
TEST(StageNotes, AStageThatIsRunAgainChangesNoMeasure)
{
    LeafFolder folder;
    const std::string stack = folder.makeStack({folder.addLeaf("a", 5), folder.addLeaf("b", 3)});
    folder.write("s.sdf", [&] {
        std::string text = folder.read("s.sdf");
        const std::size_t place = text.find(";\n", text.find("SliceSize2")) + 2;
        return text.insert(place, "Annotation \"mine__NL__too\";\n");
    }());
    int number = 0;
    const auto tables = [&] {
        const std::string prefix = "t" + std::to_string(++number);
        runs({"measure", stack, "--prefix", prefix});
        return folder.read(prefix + "_LeafMeasures.data") +
               folder.read(prefix + "_PeakMeasures.data");
    };
    const auto run = [&](const Words& stages) {
        for (const std::string& stage : stages) {
            runs(stage == "none" ? Words{"hierarchy", stack, stage} : Words{stage, stack});
        }
        return tables();
    };
    runs({"sinus", stack, "-o", folder.file("first.sdf"), "--resample", "always"});
    const std::string first = run({"sinus", "tips"});
    EXPECT_EQ(leaf::vertices(*open(folder.file("first.sdf")), "Contour", 0).size(),
              leaf::vertices(*open(stack), "Contour", 0).size());
    EXPECT_EQ(run({"tips"}), first);
    EXPECT_EQ(run({"sinus", "tips", "sinus", "tips"}), first);
    const auto perimeter = [&](const char* table) {
        return std::stod(cellOf(folder.file(table), "a", "Blade_Perimeter"));
    };
    const std::string sorted = run({"none"});
    EXPECT_EQ(run({"none", "none"}), sorted);
    // A hierarchy puts the junctions on the contour, once, and the blade may begin a pixel further on.
    EXPECT_NEAR(perimeter("t5_LeafMeasures.data"), perimeter("t1_LeafMeasures.data"), 3.0);
    EXPECT_EQ(run({"tips"}), first);
    EXPECT_EQ(run({"none", "sinus", "tips"}), first);
    EXPECT_EQ(open(stack)->getSlice(0).getAnnotation().compare(0, 9, "mine\ntoo\n"), 0);

    // What was changed by hand is what counts, and so is what is asked for.
    const auto edited = open(stack);
    leaf::findItem(*edited, "Contour", 0)->translate(40, 0);
    leaf::findItem(*edited, "Petiole", 0)->translate(40, 0);
    EXPECT_TRUE(edited->write(stack));
    run({"sinus", "tips"});
    EXPECT_NEAR(leaf::vertices(*open(stack), "Apex", 0)[0].x,
                leaf::vertices(*edited, "Apex", 0)[0].x + 40.0, 2.0);
    runs({"sinus", stack, "--resample", "always"});
    EXPECT_EQ(open(stack)->getSlice(0).getAnnotation(), "mine\ntoo");
}

TEST(StackFile, AFileThatIsCutOffBetweenStatementsIsTold)
{
    LeafFolder folder;
    folder.addLeaf("a");
    runs({"run", "--out", folder.file("r"), "--junctions", folder.writeJunctions(),
          folder.photographs()[0]});
    const std::string whole = folder.read("r/r.sdf");
    const std::string stack = folder.file("r/r.sdf");
    EXPECT_FALSE(runs({"tips", stack, "-o", folder.file("1.sdf")}).says("cut off"));
    const std::size_t cut = whole.rfind("\n\nMODELITEM \"Primary Sinus\"");
    ASSERT_NE(cut, std::string::npos);
    folder.write("r/r.sdf", whole.substr(0, cut));
    EXPECT_TRUE(runs({"measure", stack, "--prefix", "cut"}).says("does not end in a line feed"));
    folder.write("r/r.sdf", whole.substr(0, cut + 1)); // with the line feed of the statement
    EXPECT_TRUE(runs({"measure", stack, "--prefix", "cut"}).says("r_run.json tells of"));
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
