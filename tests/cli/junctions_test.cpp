#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "image/files/imagereader.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

TEST(JunctionTable, IsReadWithItsColumnsInAnyOrderAndItsNumbersRounded)
{
    LeafFolder folder;
    const std::string stack = folder.file("s.sdf");
    runs({"stack", stack, folder.addLeaf("a"), folder.addLeaf("b")});
    const std::string table =
        folder.write("t.tsv", "\xEF\xBB\xBFY2\tX2\tRemark\tSlice_Name\tY1\tX1\r\n"
                              "\r\n"
                              "12.5\t1.49e1\tfine, \"so\"\t\"b\"\t 7 \t3.2\r\n"
                              "5\t4\t\ta\t2\t1\r\n"
                              "5\t4\t\tc\t2\t1\r\n");
    const CommandResult result = runs({"junctions", stack, table}, {{"LC_ALL", "de_DE.UTF-8"}});
    EXPECT_TRUE(result.says("t.tsv: the stack has no slice for these rows: c (line 5)\n"))
        << result.err;
    EXPECT_NE(bytesOf(stack).find("MODELITEM \"Petiole\" \"b\";\nMODELITEMDATA\n 3,7 15,13;"),
              std::string::npos);
    EXPECT_NE(bytesOf(stack).find("MODELITEM \"Petiole\" \"a\";\nMODELITEMDATA\n 1,2 4,5;"),
              std::string::npos);
    // A second table replaces what a slice has and leaves the others alone.
    const std::string second = folder.write("u.tsv", "Slice_Name\tX1\tY1\tX2\tY2\na\t9\t8\t7\t6\n");
    runs({"junctions", stack, second});
    const std::string after = bytesOf(stack);
    EXPECT_NE(after.find("MODELITEM \"Petiole\" \"a\";\nMODELITEMDATA\n 9,8 7,6;"),
              std::string::npos);
    EXPECT_EQ(after.find(" 1,2 4,5;"), std::string::npos);
    EXPECT_NE(after.find(" 3,7 15,13;"), std::string::npos);
}

TEST(JunctionTable, FaultsNameFileLineAndSliceAndLeaveTheStackAlone)
{
    LeafFolder folder;
    const std::string stack = folder.makeStack({folder.addLeaf("a"), folder.addLeaf("b")});
    const std::string before = bytesOf(stack);
    const std::string header = "Slice_Name\tX1\tY1\tX2\tY2\n";

    struct Case
    {
        std::string table;
        std::string message;
    };

    const std::vector<Case> cases = {
        {"", "t.tsv: the junction table has no header line"},
        {"Slice_Name\tX1\tY1\tX2\n", "t.tsv: the junction table has no column Y2"},
        {"Slice_Name,X1,Y1,X2,Y2\n", "has no column Slice_Name"},
        {header + "a\t1\t2\t3\tfour\n", "t.tsv:2: slice a: Y2 is not a number of pixels: 'four'"},
        {header + "a\t1\t2,5\t3\t4\n", "slice a: Y1 is not a number of pixels: '2,5'"},
        {header + "a\t1\t2\t3\n", "slice a: Y2 is not a number of pixels: ''"},
        {header + "a\tnan\t2\t3\t4\n", "slice a: X1 is not a number of pixels: 'nan'"},
        {header + "a\t1e30\t2\t3\t4\n", "slice a: X1 is not a number of pixels"},
        {header + "\t1\t2\t3\t4\n", "t.tsv:2: the line names no slice"},
        {header + "a\t1\t2\t3\t4\nb\t1\t2\t3\t4\na\t1\t2\t3\t4\n",
         "t.tsv:4: slice a: stands in line 2 already"},
        {header + "b\t520\t2\t3\t4\n", "t.tsv:2: slice b: junction 1 (520, 2) lies outside"},
        {header + "b\t3\t2\t-0.6\t4\n", "slice b: junction 2 (-1, 4) lies outside the image"},
        {header + "b\t260\t720\t260.2\t719.9\n", "slice b: both junctions are the same point"},
        {header + "b\t2\t2\t9\t2\n", "slice b: junction 1 lies "},
    };
    for (const Case& given : cases) {
        const CommandResult result =
            fails({"junctions", stack, folder.write("t.tsv", given.table)}, given.message);
        EXPECT_EQ(bytesOf(stack), before) << given.table;
    }
    fails({"junctions", stack, folder.file("none.tsv")},
          "none.tsv: the junction table can't be read");
}

TEST(JunctionsCommand, ProposesWhereJunctionsAreMissingAndPrintsATableOfThem)
{
    LeafFolder folder;
    const std::string stack = folder.makeStack({folder.addLeaf("a"), folder.addLeaf("b")});
    const std::string drawn = bytesOf(stack);
    EXPECT_EQ(crenara({"junctions", stack, "--propose"}).out,
              "Slice_Name\tX1\tY1\tX2\tY2\tConfidence\n");
    EXPECT_EQ(bytesOf(stack), drawn);

    const CommandResult replaced = runs({"junctions", stack, "--propose", "--replace"});
    const auto rows = tableOf(folder.write("p.tsv", replaced.out));
    ASSERT_EQ(rows.size(), 3u);
    const leaf::Outline& outline = folder.outline(1);
    for (std::size_t k = 0; k < 2; ++k) {
        const leaf::Point point{std::stod(rows[2][1 + 2 * k]), std::stod(rows[2][2 + 2 * k])};
        EXPECT_LE(leaf::distance(point, outline.junctions[k]), 12.0) << replaced.out;
    }
    EXPECT_GE(std::stod(rows[2][5]), 0.5);
    const std::string noted = "junctions proposed: " + rows[2][5] + " " + rows[2][1] + " ";
    EXPECT_NE(bytesOf(stack).find(noted), std::string::npos);
    // What was printed can be given back as a table, and then is no proposal any more.
    runs({"landmarks", stack, folder.file("before.tsv")});
    runs({"junctions", stack, folder.writeJunctions()});
    runs({"junctions", stack, folder.file("p.tsv")});
    runs({"landmarks", stack, folder.file("after.tsv")});
    EXPECT_EQ(bytesOf(folder.file("after.tsv")), bytesOf(folder.file("before.tsv")));
    EXPECT_EQ(bytesOf(stack).find("junctions proposed"), std::string::npos);
}

// A slice shows square pixels; a table counts those of the file.
TEST(JunctionsCommand, ScalesTheTableWithAPictureWhosePixelsAreNotSquare)
{
    LeafFolder folder;
    Image0 drawn;
    ImageReader().read(drawn, folder.addLeaf("a"));
    Image0 tall(drawn.getWidth(), 2 * drawn.getHeight(), drawn.getDepth());
    for (int i = 0; i < tall.getHeight(); ++i) {
        std::copy_n(drawn.getPixels()[i / 2], drawn.bytesPerLine(), tall.getPixels()[i]);
    }
    ImageHeader header = tall.getHeader();
    PixelCalibration calibration;
    calibration.setPixelWidth(1.0F);
    calibration.setPixelHeight(0.5F);
    calibration.compute();
    header.setPixelCalibration(calibration);
    tall.setHeader(header);
    std::filesystem::create_directory(folder.file("tall"));
    ImageWriter().write(tall, folder.file("tall/a.tif"), true);
    std::vector<std::string> row = tableOf(folder.writeJunctions())[1];
    std::string table = "Slice_Name\tX1\tY1\tX2\tY2\na";
    for (std::size_t k = 1; k < 5; ++k) {
        table += "\t" + std::to_string((k % 2 == 0 ? 2 : 1) * std::lround(std::stod(row[k])));
    }
    const auto measuresOf = [&](const std::string& name, const std::string& photograph,
                                const std::string& junctions) {
        const CommandResult result = runs({"run", "--out", folder.file(name), "--pixel-width", "3",
                                           "--name", "s", "--junctions", junctions, photograph});
        EXPECT_EQ(result.says("photographs whose pixels are not square"), name == "tall-out");
        return bytesOf(folder.file(name + "/s_LeafMeasures.data"));
    };
    EXPECT_EQ(
        measuresOf("tall-out", folder.file("tall/a.tif"), folder.write("tall.tsv", table + "\n")),
        measuresOf("out", folder.file("a.tif"), folder.file("junctions.tsv")));
}

TEST(JunctionsCommand, TellsTheSlicesForWhichNothingIsProposed)
{
    LeafFolder folder;
    const std::string leaf = folder.addLeaf("a");
    const std::string blank = folder.addBlank("b");
    const CommandResult result =
        fails({"run", "--as-is", "--out", folder.file("o"), "--propose-junctions", leaf, blank},
              "a.tif: slice a: its junctions are proposed");
    EXPECT_TRUE(result.says("b.tif: slice b: no outline of a leaf was found")) << result.err;
    EXPECT_EQ(tableOf(folder.file("o/o_LeafMeasures.data")).size(), 2u);

    const CommandResult again =
        crenara({"junctions", folder.file("o/o.sdf"), "--propose", "--replace"});
    EXPECT_EQ(again.status, 1);
    EXPECT_NE(again.out.find("b\tnone\n"), std::string::npos) << again.out;
    EXPECT_TRUE(again.says("slice b: it has no contour")) << again.err;
    fails({"junctions", folder.file("o/o.sdf")}, "", 2);
    fails({"junctions", folder.file("o/o.sdf"), "t.tsv", "--replace"}, "", 2);
}
