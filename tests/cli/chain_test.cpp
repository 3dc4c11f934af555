#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "image/files/imagereader.h"
#include "image/pixels/image0.h"
#include "interface/qimageconversion.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

std::string measures(const LeafFolder& folder, const std::string& out, const std::string& table)
{
    return bytesOf(folder.file(out + "/" + out + "_" + table + ".data"));
}

QImage asQImage(const std::string& tiff)
{
    Image0 image;
    ImageReader().read(image, tiff);
    return toQImage(image);
}

} // namespace

TEST(Chain, RunFindsWhatWasDrawn)
{
    LeafFolder folder;
    const int teeth[] = {3, 5, 4};
    for (const int perSide : teeth) {
        folder.addLeaf("leaf" + std::to_string(perSide), perSide);
    }
    const CommandResult result =
        runs(joined({"run", "--as-is", "--out", folder.file("out"), "--junctions",
                     folder.writeJunctions(), "--pixel-width", "0.5", "--unit", "mm"},
                    folder.photographs()));
    EXPECT_EQ(result.out, "");
    const std::string table = folder.file("out/out_LeafMeasures.data");
    ASSERT_EQ(columnOf(table, "Calibration"), Words(3, "0.500000"));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(columnOf(table, "Total_Peak_Number")[i], std::to_string(2 * teeth[i]));
        const leaf::Outline& drawn = folder.outline(i);
        const leaf::Point base = {(drawn.junctions[0].x + drawn.junctions[1].x) / 2.0,
                                  (drawn.junctions[0].y + drawn.junctions[1].y) / 2.0};
        EXPECT_NEAR(std::stod(columnOf(table, "Blade_Length")[i]),
                    0.5 * leaf::distance(base, drawn.apex), 4.0);
    }
}

TEST(Chain, RunLeavesWhatTheSubcommandsLeaveByteForByte)
{
    LeafFolder folder;
    folder.addLeaf("one", 3);
    folder.addLeaf("two", 4);
    const std::string table = folder.writeJunctions();
    runs(joined({"run", "--as-is", "--out", folder.file("x"), "--junctions", table, "--angle",
                 "150", "--method", "symmetry", "--venation", "palmate"},
                folder.photographs()));
    const std::string stack = folder.file("y/x.sdf");
    const std::vector<Words> steps = {
        joined({"stack", stack}, folder.photographs()),
        {"contour", stack},
        {"junctions", stack, table},
        {"sinus", stack, "--angle", "150"},
        {"tips", stack, "--method", "symmetry", "--venation", "palmate"},
        {"measure", stack, "--venation", "palmate", "--prefix", "y"}};
    for (const Words& step : steps) {
        const CommandResult result = runs(step);
        EXPECT_FALSE(result.says("QCommandLineParser")) << step[0] << ": " << result.err;
    }
    EXPECT_EQ(bytesOf(folder.file("x/x.sdf")), bytesOf(stack));
    EXPECT_EQ(measures(folder, "x", "LeafMeasures"), measures(folder, "y", "LeafMeasures"));
    EXPECT_EQ(measures(folder, "x", "PeakMeasures"), measures(folder, "y", "PeakMeasures"));
    EXPECT_GT(tableOf(folder.file("x/x_PeakMeasures.data")).size(), 8u);
}

TEST(Chain, PhotographsOfAllKindsGiveTheSameMeasures)
{
    LeafFolder folder;
    const std::string tiff = folder.addLeaf("leaf");
    const std::string table = folder.writeJunctions();
    const QImage picture = asQImage(tiff);
    fs::create_directory(folder.file("in"));
    ASSERT_TRUE(picture.save(QString::fromStdString(folder.file("in/leaf.png"))));
    ASSERT_TRUE(picture.save(QString::fromStdString(folder.file("in/leaf.JPG")), "JPEG", 95));
    std::string tables[3];
    const Words photographs = {tiff, folder.file("in/leaf.png"), folder.file("in/leaf.JPG")};
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string out = "o" + std::to_string(i);
        runs({"run", "--as-is", "--out", folder.file(out), "--junctions", table, "--pixel-width",
              "2", photographs[i]});
        tables[i] = measures(folder, out, "LeafMeasures");
    }
    EXPECT_EQ(tables[0], tables[1]);
    EXPECT_TRUE(fs::exists(folder.file("o1/leaf.png.tif")));
    EXPECT_TRUE(fs::exists(folder.file("o2/leaf.JPG.tif")));
    const std::string jpeg = folder.file("o2/o2_LeafMeasures.data");
    const std::string exact = folder.file("o0/o0_LeafMeasures.data");
    EXPECT_EQ(cellOf(jpeg, "leaf", "Total_Peak_Number"),
              cellOf(exact, "leaf", "Total_Peak_Number"));
    const double area = std::stod(cellOf(exact, "leaf", "Blade_Area"));
    EXPECT_NEAR(std::stod(cellOf(jpeg, "leaf", "Blade_Area")), area, 0.01 * area);
}

TEST(Chain, NamesWithBlanksQuotesSemicolonsAndLettersOfOtherLanguagesWorkInAnyLocale)
{
    for (const char* locale : {"C", "C.UTF-8", "de_DE.UTF-8"}) {
        LeafFolder folder;
        const std::string name = "Blatt ü; l'été #1 __SC__";
        const std::string photograph = folder.addLeaf(name);
        QImage picture = asQImage(photograph);
        ASSERT_TRUE(picture.save(QString::fromStdString(folder.file("Ж%1 'x'.png"))));
        folder.addJunctions("Ж%1 'x'", {"253", "720", "267", "720"});
        const std::string out = folder.file("Ordner; ä 'o'");
        runs({"run", "--as-is", "--out", out, "--name", "Näme; 1", "--junctions",
              folder.writeJunctions("Täbelle;.tsv"), photograph, folder.file("Ж%1 'x'.png")},
             {{"LC_ALL", locale}});
        const auto table = tableOf(out + "/Näme; 1_LeafMeasures.data");
        ASSERT_EQ(table.size(), 3u);
        EXPECT_EQ(table[1][0], name);
        EXPECT_NE(table[1][2].find('.'), std::string::npos) << table[1][2];
        runs({"picture", out + "/Näme; 1.sdf", "--out", out}, {{"LC_ALL", locale}});
        EXPECT_TRUE(fs::exists(out + "/" + name + "_landmarks.png"));
    }
}

TEST(Chain, SlicesThatCannotBeWorkedOnAreLeftOutAndTold)
{
    LeafFolder folder;
    folder.addLeaf("good");
    const std::string goodTable = folder.writeJunctions("good.tsv");
    runs({"run", "--as-is", "--out", folder.file("only"), "--junctions", goodTable,
          folder.photographs()[0]});
    folder.addBlank("blank");
    folder.addLeaf("far");
    folder.addLeaf("same");
    folder.addLeaf("norow");
    const std::string table =
        folder.write("t.tsv", bytesOf(goodTable) +
                                  "blank\t1\t1\t9\t9\nfar\t5\t5\t15\t5\nsame\t260\t720\t260\t720\n"
                                  "stranger\t1\t2\t3\t4\n");
    // The good leaf stands last, so that its row does not have its slice's number.
    Words photographs = folder.photographs();
    std::rotate(photographs.begin(), photographs.begin() + 1, photographs.end());
    const CommandResult result = fails(
        joined({"run", "--as-is", "--out", folder.file("out"), "--junctions", table}, photographs),
        "blank.tif: slice blank: no outline of a leaf was found");
    EXPECT_TRUE(result.says("t.tsv:4: slice far: junction 1 lies ")) << result.err;
    EXPECT_TRUE(result.says("t.tsv:5: slice same: both junctions are the same point"));
    EXPECT_TRUE(result.says("slice norow: the junction table has no row for it"));
    EXPECT_TRUE(result.says("t.tsv: the stack has no slice for these rows: stranger (line 6)\n"));
    for (const char* kind : {"LeafMeasures", "PeakMeasures"}) {
        EXPECT_EQ(measures(folder, "out", kind), measures(folder, "only", kind));
    }
    const std::string record = bytesOf(folder.file("out/out_run.json"));
    const std::string stack = bytesOf(folder.file("out/out.sdf"));
    for (const char* name : {"blank", "far", "same", "norow"}) {
        EXPECT_NE(record.find("\"slice\": \"" + std::string(name) + "\""), std::string::npos);
        EXPECT_NE(stack.find("SLICE \"" + std::string(name) + "\""), std::string::npos);
    }
    EXPECT_EQ(record.find("\"slice\": \"good\""), std::string::npos);
}

TEST(Chain, GatesOfTheStagesAreToldWithTheirTexts)
{
    LeafFolder folder;
    const std::string stack = folder.file("s.sdf");
    runs({"stack", stack, folder.addLeaf("a"), folder.addLeaf("b")});
    const std::string fresh = bytesOf(stack);
    EXPECT_FALSE(fails({"sinus", stack}, "Extract Sinus: After Extract Contour, don't forget draw "
                                         "the blade-petiole junctions")
                     .says("Missing"));
    fails({"tips", stack}, "Extract Peaks: Please run Extract Sinus before Extract Tips");
    fails({"measure", stack, "--out", folder.file("m")},
          "Analysis: Please run Extract Sinus before Analysis");
    EXPECT_FALSE(fs::exists(folder.file("m")));
    EXPECT_EQ(bytesOf(stack), fresh);
    // An output option leaves the stack that is read as it is.
    const std::string other = folder.file("other.sdf");
    runs({"contour", stack, "-o", other});
    EXPECT_EQ(bytesOf(stack), fresh);
    fails({"sinus", other}, other + ": Missing Petiole in slice number :a\n");
}

TEST(Chain, PicturesShowTheLandmarksInTheirColours)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    runs({"run", "--as-is", "--out", folder.file("o"), "--junctions", folder.writeJunctions(),
          photograph});
    runs({"picture", folder.file("o/o.sdf"), "--out", folder.file("p")});
    const QImage picture(QString::fromStdString(folder.file("p/a_landmarks.png")));
    const QImage plain = asQImage(photograph);
    ASSERT_EQ(picture.size(), plain.size());
    const auto showsNear = [&](leaf::Point at, QColor colour) {
        for (int y = -9; y <= 9; ++y) {
            for (int x = -9; x <= 9; ++x) {
                const QPoint place(static_cast<int>(at.x) + x, static_cast<int>(at.y) + y);
                if (picture.valid(place) && picture.pixelColor(place) == colour) {
                    return true;
                }
            }
        }
        return false;
    };
    const leaf::Outline& drawn = folder.outline(0);
    EXPECT_TRUE(showsNear(drawn.apex, QColor(0, 0, 255)));
    EXPECT_TRUE(showsNear(drawn.junctions[0], QColor(100, 100, 255)));
    EXPECT_TRUE(showsNear(drawn.sinuses[1], QColor(0, 255, 0)));
    EXPECT_TRUE(showsNear(drawn.tips[1], QColor(255, 0, 0)));
    EXPECT_EQ(picture.pixelColor(260, 400), plain.pixelColor(260, 400));
}
