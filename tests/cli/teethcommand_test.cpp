#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "shape/curve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

/// The stack of `photographs` behind its sinus stage.
std::string stackWithSinuses(const LeafFolder& folder, const std::vector<std::string>& photographs)
{
    const std::string stack = folder.makeStack(photographs);
    const CommandResult result = crenara({"sinus", stack});
    EXPECT_EQ(result.status, 0) << result.err;
    return stack;
}

} // namespace

TEST(Teeth, TheFilesAreTheTeethOfTheMeasures)
{
    LeafFolder folder;
    const std::string stack =
        stackWithSinuses(folder, {folder.addLeaf("a", 3), folder.addLeaf("b", 5)});
    ASSERT_EQ(crenara({"tips", stack}).status, 0);
    ASSERT_EQ(crenara({"measure", stack, "--prefix", "m"}).status, 0);
    const std::string out = folder.file("new/fol der");
    const CommandResult result = crenara({"teeth", stack, "--out", out, "--quiet"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.says("crenara: Export is complete\n")) << result.err;

    const auto rows = tableOf(folder.file("m_PeakMeasures.data"));
    EXPECT_TRUE(result.says(std::to_string(rows.size() - 1) + " teeth in")) << result.err;
    const auto column = [&](const std::string& name) {
        return std::find(rows[0].begin(), rows[0].end(), name) - rows[0].begin();
    };
    for (std::size_t i = 1; i < rows.size(); ++i) {
        const auto cell = [&](const std::string& name) {
            return rows[i][static_cast<std::size_t>(column(name))];
        };
        const int rank = std::stoi(cell("Tooth_Position"));
        const std::string path = out + "/teeth/l/" + std::to_string(rank) + "/" +
                                 cell("Slice_Name") +
                                 (cell("Side") == "upper" ? "_up.cv" : "_down.cv");
        const Curve<float> tooth(path);
        const float width = (tooth[0] - tooth[tooth.getSize() - 1]).norm();
        EXPECT_NEAR(width / std::stof(cell("Tooth_Width")), 1.0f, 1e-3f) << path;
    }
    std::size_t files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(out)) {
        files += entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(files, rows.size() - 1);
}

TEST(Teeth, WhatStandsInTheWayIsToldAndNothingIsWritten)
{
    LeafFolder folder;
    const std::string bare = folder.makeStack({folder.addLeaf("a")});
    const std::string out = folder.file("out");
    EXPECT_EQ(crenara({"teeth", bare}).status, 2);
    const CommandResult early = crenara({"teeth", bare, "--out", out});
    EXPECT_EQ(early.status, 1);
    EXPECT_TRUE(early.says(bare + ": there are no sinuses")) << early.err;
    EXPECT_FALSE(fs::exists(out));

    ASSERT_EQ(crenara({"sinus", bare}).status, 0);
    folder.write("teeth", "mine");
    const CommandResult blocked = crenara({"teeth", bare, "--out", folder.path().string()});
    EXPECT_EQ(blocked.status, 1);
    EXPECT_TRUE(blocked.says(folder.file("teeth"))) << blocked.err;
    EXPECT_EQ(folder.read("teeth"), "mine");

    // A full disk: the folders may stand, but no piece of a file.
    const CommandResult full = crenara({"teeth", bare, "--out", out}, {}, 200);
    EXPECT_EQ(full.status, 1);
    EXPECT_TRUE(full.says("a_up.cv: Cannot write the vertices")) << full.err;
    for (const auto& entry : fs::recursive_directory_iterator(out)) {
        EXPECT_TRUE(entry.is_directory()) << entry.path();
    }
}
