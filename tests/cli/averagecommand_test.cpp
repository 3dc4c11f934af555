#include "cli/commandrunner.h"
#include "cli/leaffolder.h"

#include <QImage>

#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>

namespace {

namespace fs = std::filesystem;

/// A stack of leaves with their landmarks.
class GrowingLeaves
{
public:
    explicit GrowingLeaves(int number)
    {
        for (int i = 0; i < number; ++i) {
            folder.addLeaf("leaf" + std::to_string(i), 3 + i % 2);
        }
        stack = folder.makeLandmarks(folder.photographs());
    }

    Words average(const Words& options, const std::string& out) const
    {
        return joined(joined({"average", stack}, options), {"--out", folder.file(out)});
    }

    int filesIn(const std::string& out) const
    {
        const fs::path path = folder.file(out);
        // Without the note of the stack's checksum.
        const int notes = fs::exists(path / ".s-trajectory.sdf.sha256") ? 1 : 0;
        return fs::exists(path)
                   ? static_cast<int>(std::distance(fs::directory_iterator(path), {})) - notes
                   : 0;
    }

    /// Measures a stack and gives the lengths of its blades.
    std::vector<double> lengths(const std::string& measured, const std::string& prefix) const
    {
        runs({"measure", measured, "--prefix", prefix, "--out", folder.file("m")});
        std::vector<double> result;
        for (const std::string& cell :
             columnOf(folder.file("m/" + prefix + "_LeafMeasures.data"), "Blade_Length")) {
            result.push_back(std::stod(cell));
        }
        return result;
    }

    LeafFolder folder;
    std::string stack;
};

/// The widths of the black pages, from left to right, on a sheet of one row.
std::vector<int> pageWidths(const QImage& sheet)
{
    std::vector<int> widths = {0};
    for (int x = 0; x < sheet.width(); ++x) {
        int black = 0;
        for (int y = 0; y < sheet.height(); ++y) {
            black += sheet.pixelColor(x, y) == QColor(0, 0, 0) ? 1 : 0;
        }
        if (black > 20) {
            ++widths.back();
        } else if (widths.back() > 0) {
            widths.push_back(0);
        }
    }
    widths.pop_back();
    return widths;
}

} // namespace

TEST(Average, TheNewStackIsMeasuredAndDrawnLikeAnyOther)
{
    const GrowingLeaves leaves(4);
    const CommandResult bins =
        runs(leaves.average({"bins", "--number", "1", "--sinuses", "--peaks"}, "a b/bins"));
    EXPECT_TRUE(bins.says("crenara: Averaging is complete\n")) << bins.err;
    EXPECT_EQ(leaves.filesIn("a b/bins"), 4);
    const std::string trajectory = leaves.folder.file("a b/bins/s-trajectory.sdf");
    runs({"picture", trajectory, "--out", leaves.folder.file("m")});
    EXPECT_TRUE(fs::exists(leaves.folder.file("m/s-trajectory-ho-0_landmarks.png")));
    const std::vector<double> all = leaves.lengths(leaves.stack, "s");
    const double mean = std::accumulate(all.begin(), all.end(), 0.0) / 4.0;
    EXPECT_NEAR(leaves.lengths(trajectory, "t").at(0), mean, 0.02 * mean);
    // Limits of a user's own.
    const std::string limits = leaves.folder.write("limits.txt", "1\n1e6\n");
    runs(leaves.average({"bins", "--limits", limits}, "limits"));
    EXPECT_EQ(leaves.filesIn("limits"), 4);
}

TEST(Average, TheSheetShowsAllAveragesAtOneScale)
{
    const GrowingLeaves leaves(4);
    const std::string targets = leaves.folder.write("t.txt", "1000\n1300\n1600\n");
    runs(leaves.average({"sliding", "--targets", targets, "--align", "axis"}, "out"));
    EXPECT_EQ(leaves.filesIn("out"), 12);
    const std::string trajectory = leaves.folder.file("out/s-trajectory.sdf");
    const std::string picture = leaves.folder.file("new/sheet.png");
    EXPECT_EQ(runs({"picture", trajectory, "--sheet", picture}).err, "");
    const std::vector<int> widths = pageWidths(QImage(QString::fromStdString(picture)));
    const std::vector<double> lengths = leaves.lengths(trajectory, "t");
    ASSERT_TRUE(widths.size() == 3u && lengths.size() == 3u);
    // A page is as wide as the leaf is long, with its margins.
    for (std::size_t i = 1; i < 3; ++i) {
        EXPECT_NEAR(widths[i] / double(widths[0]), lengths[i] / lengths[0], 0.01) << i;
    }
    // Curve files likewise; what is no curve, or no picture, is told.
    const std::string curve = leaves.folder.file("out/s-trajectory-sa-1000µ0.cv");
    runs({"picture", curve, curve, "--sheet", leaves.folder.file("c.png")});
    EXPECT_GT(QImage(QString::fromStdString(leaves.folder.file("c.png"))).width(), 900);
    fails({"picture", curve}, "", 2);
    fails({"picture", trajectory, "--sheet", curve}, "", 2);
    const std::string noCurve = leaves.folder.write("x.cv", "no curve");
    fails({"picture", noCurve, "--sheet", picture}, noCurve);
}

TEST(Average, WhatCantBeDoneIsToldAndNothingIsWritten)
{
    const GrowingLeaves leaves(3);
    fails(leaves.average({"mean"}, "out"), "", 2);
    fails(leaves.average({"bins", "--targets", "t"}, "out"), "", 2);
    fails(leaves.average({"sliding", "--limits", "t"}, "out"), "", 2);
    fails(leaves.average({"bins", "--align", "sine"}, "out"), "", 2);
    fails({"average", leaves.stack, "bins"}, "", 2);
    fails(leaves.average({"sliding"}, "out"), "insufficient number of leaves");
    fails(leaves.average({"bins", "--begin", "9e5", "--end", "9e5"}, "out"), "begin");
    fails(leaves.average({"bins", "--kinetic", "--strength", "2.5", "--scaling", "2"}, "out"),
          "no age");
    const std::string limits = leaves.folder.write("limits.txt", "500\nx\n");
    fails(leaves.average({"bins", "--limits", limits}, "out"), limits + ": Line 2: 'x'");
    EXPECT_EQ(leaves.filesIn("out"), 0);
    // A full disk: no piece of a file stays.
    fs::create_directory(leaves.folder.file("full"));
    fails(leaves.average({"bins", "--number", "1"}, "full"),
          leaves.folder.file("full/s-trajectory-ho-0.cv"), 1, 5000);
    EXPECT_EQ(leaves.filesIn("full"), 0);
    leaves.folder.write("file", "mine");
    fails(leaves.average({"bins", "--number", "1"}, "file/below"), "");
    EXPECT_EQ(leaves.folder.read("file"), "mine");
}
