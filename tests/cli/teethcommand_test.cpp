#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "shape/curves/curve.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;

TEST(Teeth, TheFilesAreTheTeethOfTheMeasures)
{
    LeafFolder folder;
    const std::string stack =
        folder.makeLandmarks({folder.addLeaf("a", 3), folder.addLeaf("b", 5)});
    runs({"measure", stack, "--prefix", "m"});
    const std::string out = folder.file("new/fol der");
    const CommandResult result = runs({"teeth", stack, "--out", out, "--quiet"});
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.says("crenara: Export is complete\n")) << result.err;

    const std::string table = folder.file("m_PeakMeasures.data");
    const Words ranks = columnOf(table, "Tooth_Position");
    EXPECT_TRUE(result.says(std::to_string(ranks.size()) + " teeth in")) << result.err;
    for (std::size_t i = 0; i < ranks.size(); ++i) {
        const std::string path = out + "/teeth/l/" + std::to_string(std::stoi(ranks[i])) + "/" +
                                 columnOf(table, "Slice_Name")[i] +
                                 (columnOf(table, "Side")[i] == "upper" ? "_up.cv" : "_down.cv");
        const Curve<float> tooth(path);
        const float width = (tooth[0] - tooth[tooth.getSize() - 1]).norm();
        EXPECT_NEAR(width / std::stof(columnOf(table, "Tooth_Width")[i]), 1.0f, 1e-3f) << path;
    }
    std::size_t files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(out)) {
        files += entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(files, ranks.size());
}

TEST(Teeth, WhatStandsInTheWayIsToldAndNothingIsWritten)
{
    LeafFolder folder;
    const std::string bare = folder.makeStack({folder.addLeaf("a")});
    const std::string out = folder.file("out");
    fails({"teeth", bare}, "", 2);
    fails({"teeth", bare, "--out", out}, bare + ": there are no sinuses");
    EXPECT_FALSE(fs::exists(out));

    runs({"sinus", bare});
    folder.write("teeth", "mine");
    fails({"teeth", bare, "--out", folder.path().string()}, folder.file("teeth"));
    EXPECT_EQ(folder.read("teeth"), "mine");

    // A full disk: the folders may stand, but no piece of a file.
    fails({"teeth", bare, "--out", out}, "a_up.cv: Cannot write the vertices", 1, 200);
    for (const auto& entry : fs::recursive_directory_iterator(out)) {
        EXPECT_TRUE(entry.is_directory()) << entry.path();
    }
}
