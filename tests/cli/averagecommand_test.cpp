#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "shape/curve.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

/// A stack of leaves whose blades get longer from one to the next.
class GrowingLeaves
{
public:
    explicit GrowingLeaves(int number)
    {
        std::vector<std::string> photographs;
        for (int i = 0; i < number; ++i) {
            photographs.push_back(folder.addLeaf("leaf" + std::to_string(i), 3 + i % 2));
        }
        stack = folder.makeStack(photographs);
        EXPECT_EQ(crenara({"sinus", stack}).status, 0);
        EXPECT_EQ(crenara({"tips", stack}).status, 0);
    }

    CommandResult average(const std::vector<std::string>& options, const std::string& out) const
    {
        std::vector<std::string> arguments = {"average", stack};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(), {"--out", folder.file(out)});
        return crenara(arguments);
    }

    int filesIn(const std::string& out) const
    {
        return fs::exists(folder.file(out))
                   ? static_cast<int>(std::distance(fs::directory_iterator(folder.file(out)), {}))
                   : 0;
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
        leaves.average({"bins", "--number", "1", "--sinuses", "--peaks"}, "a b/bins");
    EXPECT_EQ(bins.status, 0) << bins.err;
    EXPECT_TRUE(bins.says("crenara: Averaging is complete\n")) << bins.err;
    EXPECT_EQ(leaves.filesIn("a b/bins"), 4);
    const std::string out = leaves.folder.file("out");
    const std::string trajectory = leaves.folder.file("a b/bins/s-trajectory.sdf");
    ASSERT_EQ(crenara({"measure", trajectory, "--out", out, "--prefix", "t"}).status, 0);
    ASSERT_EQ(crenara({"measure", leaves.stack, "--out", out, "--prefix", "s"}).status, 0);
    EXPECT_EQ(crenara({"picture", trajectory, "--out", out}).status, 0);
    EXPECT_TRUE(fs::exists(out + "/s-trajectory-ho-0.png"));

    const auto average = tableOf(out + "/t_LeafMeasures.data");
    const auto all = tableOf(out + "/s_LeafMeasures.data");
    const auto column = std::find(all[0].begin(), all[0].end(), "Blade_Length") - all[0].begin();
    float sum = 0.0f;
    for (std::size_t i = 1; i < all.size(); ++i) {
        sum += std::stof(all[i][static_cast<std::size_t>(column)]);
    }
    const float mean = sum / static_cast<float>(all.size() - 1);
    EXPECT_NEAR(std::stof(average[1][static_cast<std::size_t>(column)]), mean, 0.02f * mean);
}

TEST(Average, TheSheetShowsAllAveragesAtOneScale)
{
    const GrowingLeaves leaves(4);
    const std::string targets = leaves.folder.write("t.txt", "1000\n1300\n1600\n");
    ASSERT_EQ(leaves.average({"sliding", "--targets", targets, "--align", "axis"}, "out").status,
              0);
    const std::string trajectory = leaves.folder.file("out/s-trajectory.sdf");
    const std::string picture = leaves.folder.file("new/sheet.png");
    const CommandResult result = crenara({"picture", trajectory, "--sheet", picture});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const std::vector<int> widths = pageWidths(QImage(QString::fromStdString(picture)));
    ASSERT_EQ(widths.size(), 3u);

    // A page is as wide as the leaf is long, with its margins.
    ASSERT_EQ(crenara({"measure", trajectory, "--prefix", "t"}).status, 0);
    const auto rows = tableOf(leaves.folder.file("out/t_LeafMeasures.data"));
    const auto column = std::find(rows[0].begin(), rows[0].end(), "Blade_Length") - rows[0].begin();
    const auto length = [&](std::size_t i) {
        return std::stod(rows[i + 1][static_cast<std::size_t>(column)]);
    };
    for (std::size_t i = 1; i < 3; ++i) {
        EXPECT_NEAR(widths[i] / double(widths[0]), length(i) / length(0), 0.01) << i;
    }

    // Curve files likewise; what is no curve, or no picture, is told.
    const std::string curve = leaves.folder.file("out/s-trajectory-sa-1000µ0.cv");
    EXPECT_EQ(crenara({"picture", curve, curve, "--sheet", leaves.folder.file("c.png")}).status, 0);
    EXPECT_GT(QImage(QString::fromStdString(leaves.folder.file("c.png"))).width(), 900);
    EXPECT_EQ(crenara({"picture", curve}).status, 2);
    EXPECT_EQ(crenara({"picture", trajectory, "--sheet", curve}).status, 2);
    const std::string noCurve = leaves.folder.write("x.cv", "no curve");
    const CommandResult bad = crenara({"picture", noCurve, "--sheet", picture});
    EXPECT_EQ(bad.status, 1);
    EXPECT_TRUE(bad.says(noCurve)) << bad.err;
}

TEST(Average, MethodsWithFilesOfTheUsersOwnTakeTheirValues)
{
    const GrowingLeaves leaves(5);
    const std::string limits = leaves.folder.write("limits.txt", "1\n1e6\n");
    const CommandResult bins = leaves.average({"bins", "--limits", limits}, "bins");
    EXPECT_EQ(bins.status, 0) << bins.err;
    EXPECT_EQ(leaves.filesIn("bins"), 4);
    const std::string targets = leaves.folder.write("targets.txt", "500\n620\n");
    const CommandResult sliding =
        leaves.average({"sliding", "--targets", targets, "--align", "axis"}, "sliding");
    EXPECT_EQ(sliding.status, 0) << sliding.err;
    EXPECT_EQ(leaves.filesIn("sliding"), 9);

    leaves.folder.write("targets.txt", "500\nx\n");
    const CommandResult bad = leaves.average({"sliding", "--targets", targets}, "bad");
    EXPECT_EQ(bad.status, 1);
    EXPECT_TRUE(bad.says(targets + ": Line 2: 'x'")) << bad.err;
    EXPECT_EQ(leaves.filesIn("bad"), 0);
}

TEST(Average, WhatCantBeDoneIsToldAndNothingIsWritten)
{
    const GrowingLeaves leaves(3);
    EXPECT_EQ(leaves.average({"mean"}, "out").status, 2);
    EXPECT_EQ(leaves.average({"bins", "--targets", "t"}, "out").status, 2);
    EXPECT_EQ(leaves.average({"sliding", "--limits", "t"}, "out").status, 2);
    EXPECT_EQ(leaves.average({"bins", "--align", "sine"}, "out").status, 2);
    EXPECT_EQ(crenara({"average", leaves.stack, "bins"}).status, 2) << "no folder";

    const CommandResult few = leaves.average({"sliding"}, "out");
    EXPECT_EQ(few.status, 1);
    EXPECT_TRUE(few.says("insufficient number of leaves")) << few.err;
    const CommandResult range = leaves.average({"bins", "--begin", "9e5", "--end", "9e5"}, "out");
    EXPECT_EQ(range.status, 1);
    EXPECT_TRUE(range.says("begin")) << range.err;
    const CommandResult ages =
        leaves.average({"bins", "--kinetic", "--strength", "2.5", "--scaling", "2"}, "out");
    EXPECT_EQ(ages.status, 1);
    EXPECT_TRUE(ages.says("no age")) << ages.err;
    EXPECT_EQ(leaves.filesIn("out"), 0);

    // A full disk: no piece of a file stays.
    fs::create_directory(leaves.folder.file("full"));
    const CommandResult full = crenara(
        {"average", leaves.stack, "bins", "--number", "1", "--out", leaves.folder.file("full")}, {},
        5000);
    EXPECT_EQ(full.status, 1);
    EXPECT_TRUE(full.says(leaves.folder.file("full/s-trajectory-ho-0.cv"))) << full.err;
    EXPECT_EQ(leaves.filesIn("full"), 0);

    const std::string blocked = leaves.folder.write("file", "mine");
    EXPECT_EQ(leaves.average({"bins", "--number", "1"}, "file/below").status, 1);
    EXPECT_EQ(leaves.folder.read("file"), "mine");
}
