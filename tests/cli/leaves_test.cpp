#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "samples/scanfiles.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

TEST(Leaves, OfAScanAreFoundInReadingOrderAndNothingElseIs)
{
    const TemporaryFolder folder;
    for (const int count : {1, 5}) {
        ScanOptions options;
        options.leaves = count;
        options.resolution = 100.0;
        options.ruler = RulerUnit::Centimetre;
        const std::string scans = folder.file("scans" + std::to_string(count));
        writeScans(scans, 1, 3, options);
        const std::string out = folder.file("out" + std::to_string(count));
        const CommandResult result = crenara({"run", "--out", out, scans + "/scan-01.tif"});
        EXPECT_NE(result.status, 2) << result.err;
        const std::string found = out + "/out" + std::to_string(count) + "_leaves.tsv";
        const std::string drawn = scans + "/leaves.tsv";
        const std::vector<std::string> names = columnOf(found, "Slice_Name");
        const std::vector<std::vector<std::string>> truth = tableOf(drawn);
        ASSERT_EQ(names.size() + 1, truth.size()) << result.err;
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string place = count == 1 ? "" : "-" + std::to_string(i + 1);
            EXPECT_EQ(names[i], "scan-01" + place);
            const auto valueOf = [&](const char* column) {
                return std::stod(columnOf(found, column)[i]);
            };
            const auto drawnAt = [&](const char* column) {
                return std::stod(columnOf(drawn, column)[i]);
            };
            // The middle of the box that was drawn lies in the slice of the leaf.
            const double x = drawnAt("X") + drawnAt("Width") / 2.0;
            const double y = drawnAt("Y") + drawnAt("Height") / 2.0;
            EXPECT_LT(std::fabs(valueOf("X") + valueOf("Width") / 2.0 - x), valueOf("Width") / 4.0);
            EXPECT_LT(std::fabs(valueOf("Y") + valueOf("Height") / 2.0 - y),
                      valueOf("Height") / 4.0);
            EXPECT_GT(valueOf("Overlap"), 0.95);
        }
    }
}

TEST(Leaves, APhotographWithoutOneIsNamedAndTheOthersAreMeasured)
{
    LeafFolder folder;
    const std::string leaf = folder.addLeaf("leaf");
    const std::string blank = folder.addBlank("blank");
    const CommandResult result = crenara({"run", "--out", folder.file("o"), blank, leaf});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.says(blank + ": no leaf was found on it")) << result.err;
    EXPECT_EQ(columnOf(folder.file("o/o_LeafMeasures.data"), "Slice_Name"), Words{"leaf"});
    const CommandResult none = crenara({"leaves", folder.file("n.sdf"), blank});
    EXPECT_EQ(none.status, 1);
    EXPECT_FALSE(fs::exists(folder.file("n.sdf")));
}

TEST(Leaves, HaveTheScaleOfTheMarkerAndNoneWhereItIsNotFound)
{
    const TemporaryFolder folder;
    ScanOptions options;
    options.leaves = 1;
    options.resolution = 100.0;
    options.marker = {MarkerKind::Disc, 25.0};
    options.ruler = RulerUnit::None;
    writeScans(folder.file("scans"), 1, 5, options);
    const std::string scan = folder.file("scans/scan-01.tif");
    const auto leavesBy = [&](const std::string& name, const std::vector<std::string>& choice) {
        std::vector<std::string> words = {"leaves", folder.file(name + ".sdf"), scan};
        words.insert(words.end(), choice.begin(), choice.end());
        return crenara(words);
    };
    leavesBy("disc", {"--marker", "disc:25mm"});
    EXPECT_EQ(columnOf(folder.file("disc_leaves.tsv"), "Scale_Source"), Words{"marker disc 25 mm"});
    const double width = std::stod(columnOf(folder.file("disc_leaves.tsv"), "Pixel_Width").at(0));
    EXPECT_NEAR(width, 254.0, 0.005 * 254.0);
    // The file's own resolution is no stand-in for a marker.
    const CommandResult result = leavesBy("none", {"--ruler", "mm"});
    EXPECT_TRUE(result.says("ruler mm not found (no ruler)")) << result.err;
    EXPECT_EQ(columnOf(folder.file("none_leaves.tsv"), "Scale_Source"), Words{"none"});
    EXPECT_EQ(leavesBy("wrong", {"--marker", "ring:2mm"}).status, 2);
    EXPECT_EQ(leavesBy("both", {"--marker", "disc:25mm", "--ruler", "mm"}).status, 2);
}

TEST(Leaves, TheTableThatAUserEditedIsNotWrittenOver)
{
    LeafFolder folder;
    const Words run = {"run", "--out", folder.file("o"), folder.addLeaf("leaf")};
    ASSERT_EQ(crenara(run).status, 0);
    ASSERT_EQ(crenara(run).status, 0) << "what the command wrote it replaces";
    const std::string table = folder.file("o/o_leaves.tsv");
    std::ofstream(table, std::ios::app) << "# a remark\n";
    const std::string edited = bytesOf(table);
    const CommandResult refused = crenara(run);
    EXPECT_EQ(refused.status, 2);
    EXPECT_TRUE(refused.says(table)) << refused.err;
    EXPECT_EQ(bytesOf(table), edited);
    EXPECT_EQ(crenara(joined(run, {"--replace"})).status, 0);
    EXPECT_NE(bytesOf(table), edited);

    folder.write("o/o_overview/leaf.tif.jpg", "a picture of the user's");
    EXPECT_EQ(crenara(run).status, 2);
    EXPECT_EQ(bytesOf(folder.file("o/o_overview/leaf.tif.jpg")), "a picture of the user's");
}
