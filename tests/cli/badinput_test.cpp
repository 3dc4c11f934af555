#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"

#include <QImage>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

int filesIn(const std::string& folder)
{
    int files = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        files += entry.is_regular_file() ? 1 : 0;
    }
    return files;
}

} // namespace

TEST(BadInput, ImagesThatCannotBeReadAreNamedWithTheirSlice)
{
    LeafFolder folder;
    const std::string good = folder.addLeaf("good");
    const std::string table = folder.writeJunctions();
    folder.write("empty.tif", "");
    folder.write("text.png", "no image at all");
    folder.write("text.xyz", bytesOf(good));
    fs::create_directory(folder.file("folder.tif"));
    // Damage that shows only in the pixels.
    folder.write("cut.tif", bytesOf(good).substr(0, bytesOf(good).size() * 9 / 10));
    const Words bad = {"empty.tif", "text.png",   "text.xyz",  "folder.tif",
                       "cut.tif",   "absent.tif", "absent.jpg"};
    Words run = {"run", "--as-is", "--out", folder.file("out"), "--junctions", table};
    for (const std::string& name : bad) {
        run.push_back(folder.file(name));
    }
    run.push_back(good);
    const CommandResult result = fails(run, "good has no pixel size");
    const std::string record = bytesOf(folder.file("out/out_run.json"));
    for (const std::string& name : bad) {
        const std::string slice = fs::path(name).stem();
        EXPECT_TRUE(result.says(folder.file(name) + ": slice " + slice + ": ")) << result.err;
        EXPECT_NE(record.find("\"slice\": \"" + slice + "\""), std::string::npos) << name;
    }
    runs({"run", "--as-is", "--out", folder.file("only"), "--junctions", table, good});
    EXPECT_EQ(bytesOf(folder.file("out/out_LeafMeasures.data")),
              bytesOf(folder.file("only/only_LeafMeasures.data")));
}

TEST(BadInput, DamagedPhotographsNeverGiveHalfALeafSilently)
{
    LeafFolder folder;
    const std::string good = folder.addLeaf("good");
    const std::string stack = folder.makeStack({good});
    const std::string before = bytesOf(stack);
    const std::string whole = bytesOf(good);
    for (std::size_t cut = 0; cut < whole.size(); cut += whole.size() / 17 + 1) {
        folder.write("good.tif", whole.substr(0, cut));
        fails({"contour", stack}, "good.tif: slice good: ");
        EXPECT_EQ(bytesOf(stack), before) << cut;
    }
    QImage picture(300, 200, QImage::Format_RGB32);
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 300; ++x) {
            picture.setPixelColor(x, y, QColor((x * y) % 256, (x + y) % 256, x % 256));
        }
    }
    for (const std::string name : {"p.png", "p.jpg"}) {
        ASSERT_TRUE(picture.save(QString::fromStdString(folder.file(name))));
        const std::string bytes = folder.read(name);
        for (std::size_t cut = 0; cut + 16 < bytes.size(); cut += bytes.size() / 11 + 1) {
            folder.write(name, bytes.substr(0, cut));
            fails({"stack", folder.file("n.sdf"), folder.file(name)}, name + ": slice p: ");
        }
    }
    EXPECT_FALSE(fs::exists(folder.file("n.sdf")));
}

TEST(BadInput, AMissingImageCostsOnlyTheStagesThatNeedIt)
{
    LeafFolder folder;
    const std::string gone = folder.addLeaf("gone");
    const std::string stack = folder.makeStack({folder.addLeaf("a"), gone});
    fs::remove(gone);
    const std::string before = bytesOf(stack);
    fails({"contour", stack}, gone + ": slice gone: ");
    EXPECT_EQ(bytesOf(stack), before);
    runs({"sinus", stack});
    runs({"measure", stack});
    EXPECT_EQ(tableOf(folder.file("s_LeafMeasures.data")).size(), 3u);
    fails({"picture", stack, "--out", folder.file("p")}, gone + ": slice gone: ");
    EXPECT_TRUE(fs::exists(folder.file("p/a_landmarks.png")));
}

TEST(BadInput, AStackFileCutAnywhereIsRefusedAndNeverChanged)
{
    LeafFolder folder;
    const std::string stack = folder.makeStack({folder.addLeaf("a"), folder.addLeaf("b")});
    const std::string whole = bytesOf(stack);
    int refused = 0;
    for (std::size_t cut = 0; cut < whole.size(); cut += whole.size() / 41 + 1) {
        folder.write("s.sdf", whole.substr(0, cut));
        // Where it can be read, it lacks the junctions, which stand last.
        refused += fails({"sinus", stack}, stack).says("can't be read") ? 1 : 0;
        EXPECT_EQ(bytesOf(stack), whole.substr(0, cut)) << cut;
    }
    EXPECT_GT(refused, 20);
    fails({"contour", folder.file("none.sdf")}, "");
}

TEST(BadInput, AFolderThatCannotBeMadeIsNamedBeforeTheWork)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    const std::string stack = folder.makeLandmarks({photograph}, false);
    const std::string before = bytesOf(stack);
    const std::string blocked = folder.write("file", "mine") + "/sub";
    for (const Words& arguments :
         std::vector<Words>{{"run", "--as-is", "--out", blocked, "--junctions",
                             folder.writeJunctions(), photograph},
                            {"measure", stack, "--out", blocked},
                            {"picture", stack, "--out", blocked},
                            {"stack", blocked + "/s.sdf", photograph},
                            {"project", blocked + "/p.crp"},
                            {"contour", stack, "-o", blocked + "/s.sdf"}}) {
        fails(arguments, blocked);
    }
    EXPECT_EQ(bytesOf(stack), before);
    EXPECT_EQ(folder.read("file"), "mine");
}

TEST(BadInput, AFullDiskLeavesTheOldFilesWhole)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    const Words run = {
        "run",     "--as-is", "--out", folder.file("o"), "--junctions", folder.writeJunctions(),
        photograph};
    const std::string stack = folder.file("o/o.sdf");
    const Words picture = {"picture", stack, "--out", folder.file("o")};
    runs(run);
    runs(picture);
    const auto contents = [&] {
        return Words{bytesOf(stack), folder.read("o/o_LeafMeasures.data"),
                     folder.read("o/a_landmarks.png")};
    };
    const Words before = contents();
    const int files = filesIn(folder.file("o"));
    for (const Words& arguments :
         std::vector<Words>{run, {"contour", stack}, {"measure", stack}, picture}) {
        fails(arguments, folder.file("o/"), 1, 300);
        EXPECT_TRUE(contents() == before) << arguments[0];
    }
    EXPECT_EQ(filesIn(folder.file("o")), files) << "temporary files are left";
}

TEST(BadInput, NamesThatCannotBeStoredOrStandTwiceAreRefused)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    for (const char* name : {"other/a.tiff", "dir\"x/b.tif", "say \"a\".tif"}) {
        const std::string copy = folder.file(name);
        fs::create_directories(fs::path(copy).parent_path());
        fs::copy_file(photograph, copy);
        fails({"stack", folder.file("s.sdf"), photograph, copy},
              copy.find('"') == std::string::npos ? "has a slice \"a\" already" : "double quote");
        EXPECT_FALSE(fs::exists(folder.file("s.sdf")));
    }
}

TEST(BadInput, SlicesWithoutPixelSizeAreTold)
{
    LeafFolder folder;
    folder.addLeaf("plain");
    const std::string sized = folder.addLeaf("sized");
    Image0 image(sized, "");
    ImageHeader header = image.getHeader();
    PixelCalibration calibration;
    LengthUnit centimetre;
    centimetre.setScale(-2);
    calibration.setLengthUnit(centimetre);
    calibration.setPixelWidth(0.01f);
    calibration.compute();
    header.setPixelCalibration(calibration);
    image.setHeader(header);
    ImageWriter().write(image, sized, true);
    const CommandResult result = runs(joined(
        {"run", "--as-is", "--out", folder.file("o"), "--junctions", folder.writeJunctions()},
        folder.photographs()));
    EXPECT_TRUE(result.says("slice plain has no pixel size; its lengths are in pixels"));
    EXPECT_FALSE(result.says("slice sized has no pixel size"));
    EXPECT_TRUE(result.says("the stack mixes slices with and without pixel size")) << result.err;
    EXPECT_EQ(columnOf(folder.file("o/o_LeafMeasures.data"), "Calibration"),
              (Words{"1.00000", "100.000"}));
    const std::string record = bytesOf(folder.file("o/o_run.json"));
    EXPECT_NE(record.find("\"unit\": \"µm²\""), std::string::npos);
    EXPECT_NE(record.find("\"slices in pixels\": [\n        \"plain\"\n    ]"), std::string::npos)
        << record;
}
