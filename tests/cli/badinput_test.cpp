#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "image/image0.h"
#include "image/imagewriter.h"
#include "support/tiffs.h"

#include <QImage>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

namespace {

namespace fs = std::filesystem;

/// The command ended by itself, and said so if it did not do its work.
void expectClean(const CommandResult& result, const std::string& about)
{
    EXPECT_TRUE(result.status == 0 || result.status == 1) << about << ": " << result.status;
    EXPECT_TRUE(result.status == 0 || result.says("crenara: ")) << about;
}

} // namespace

TEST(BadInput, ImagesThatCannotBeReadAreNamedWithTheirSlice)
{
    LeafFolder folder;
    const std::string good = folder.addLeaf("good");
    const std::string table = folder.writeJunctions();
    const std::string whole = bytesOf(good);
    {
        TiffMaker maker(folder.file("cmyk.tif"));
        maker.tags(32, 16, 8, 4, PHOTOMETRIC_SEPARATED);
        maker.rows(16, [](int, int) { return static_cast<unsigned char>(7); });
    }
    {
        TiffMaker maker(folder.file("planes.tif"));
        maker.tags(32, 16, 8, 3, PHOTOMETRIC_RGB);
        TIFFSetField(maker.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
        maker.rows(
            16, [](int, int) { return static_cast<unsigned char>(7); }, 3);
    }
    folder.write("empty.tif", "");
    folder.write("text.tif", "no image at all");
    folder.write("text.png", "no image at all");
    folder.write("text.xyz", whole);
    fs::create_directory(folder.file("folder.tif"));
    for (const char* name : {"cmyk.tif", "planes.tif", "empty.tif", "text.tif", "text.png",
                             "text.xyz", "folder.tif", "absent.tif", "absent.jpg"}) {
        const std::string out = folder.file("out");
        const CommandResult result =
            crenara({"run", "--out", out, "--junctions", table, good, folder.file(name)});
        const std::string slice = fs::path(name).stem();
        EXPECT_EQ(result.status, 1) << name;
        EXPECT_TRUE(result.says(folder.file(name) + ": slice " + slice + ": "))
            << name << ": " << result.err;
        EXPECT_FALSE(fs::exists(out + "/out.sdf")) << name;
        EXPECT_FALSE(fs::exists(out + "/out_LeafMeasures.data")) << name;
    }
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
        const CommandResult result = crenara({"contour", stack});
        EXPECT_EQ(result.status, 1) << cut;
        EXPECT_TRUE(result.says("good.tif: slice good: ")) << cut << ": " << result.err;
        EXPECT_EQ(bytesOf(stack), before) << cut;
    }
    folder.write("good.tif", whole);
    QImage picture(300, 200, QImage::Format_RGB32);
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 300; ++x) {
            picture.setPixelColor(x, y, QColor((x * y) % 256, (x + y) % 256, x % 256));
        }
    }
    for (const char* format : {"png", "jpg"}) {
        const std::string name = std::string("p.") + format;
        ASSERT_TRUE(picture.save(QString::fromStdString(folder.file(name)), format));
        const std::string bytes = folder.read(name);
        for (std::size_t cut = 0; cut + 16 < bytes.size(); cut += bytes.size() / 11 + 1) {
            folder.write(name, bytes.substr(0, cut));
            const CommandResult result =
                crenara({"stack", folder.file("n.sdf"), folder.file(name)});
            EXPECT_EQ(result.status, 1) << name << cut;
            EXPECT_TRUE(result.says(name + ": slice p: ")) << name << cut << result.err;
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
    const CommandResult contour = crenara({"contour", stack});
    EXPECT_EQ(contour.status, 1);
    EXPECT_TRUE(contour.says(gone + ": slice gone: ")) << contour.err;
    EXPECT_EQ(bytesOf(stack), before);
    EXPECT_EQ(crenara({"sinus", stack}).status, 0);
    EXPECT_EQ(crenara({"measure", stack}).status, 0);
    EXPECT_EQ(tableOf(folder.file("s_LeafMeasures.data")).size(), 3u);
    const CommandResult pictures = crenara({"picture", stack, "--out", folder.file("p")});
    EXPECT_EQ(pictures.status, 1);
    EXPECT_TRUE(pictures.says(gone + ": slice gone: ")) << pictures.err;
    EXPECT_TRUE(fs::exists(folder.file("p/a.png")));
}

TEST(BadInput, AStackFileCutAnywhereIsEitherReadOrRefusedAndNeverChanged)
{
    LeafFolder folder;
    const std::string stack = folder.makeStack({folder.addLeaf("a"), folder.addLeaf("b")});
    const std::string whole = bytesOf(stack);
    const std::size_t step = whole.size() / 41 + 1;
    int refused = 0;
    for (std::size_t cut = 0; cut < whole.size(); cut += step) {
        folder.write("s.sdf", whole.substr(0, cut));
        const CommandResult result = crenara({"sinus", stack});
        expectClean(result, std::to_string(cut));
        // A cut stack lacks the junctions, which stand last.
        EXPECT_EQ(result.status, 1) << cut;
        EXPECT_TRUE(result.says(stack)) << cut << result.err;
        EXPECT_EQ(bytesOf(stack), whole.substr(0, cut)) << cut;
        refused += result.says("can't be read") ? 1 : 0;
    }
    EXPECT_GT(refused, 20);
    EXPECT_EQ(crenara({"contour", folder.file("none.sdf")}).status, 1);
}

TEST(BadInput, ALeafThatTouchesTheFrameEndsCleanly)
{
    LeafFolder folder;
    leaf::Shape shape;
    shape.middle = {100.0, 300.0};
    const leaf::Outline drawn = leaf::draw(shape);
    ImageWriter().write(leaf::toImage(leaf::photograph(drawn, 500, 300, 200.0f, 30.0f, 5.0f)),
                        folder.file("edge.tif"), true);
    for (const char* kind : {"dark", "light"}) {
        const std::string stack = folder.file("s.sdf");
        ASSERT_EQ(crenara({"stack", stack, folder.file("edge.tif")}).status, 0);
        expectClean(crenara({"contour", stack, "--background", kind}), kind);
    }
}

TEST(BadInput, AFolderThatCannotBeMadeIsNamedBeforeTheWork)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    const std::string table = folder.writeJunctions();
    const std::string stack = folder.makeStack({photograph});
    ASSERT_EQ(crenara({"sinus", stack}).status, 0);
    const std::string before = bytesOf(stack);
    const std::string blocked = folder.write("file", "mine") + "/sub";
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"run", "--out", blocked, "--junctions", table, photograph},
             {"measure", stack, "--out", blocked},
             {"picture", stack, "--out", blocked},
             {"stack", blocked + "/s.sdf", photograph},
             {"project", blocked + "/p.crp"},
             {"contour", stack, "-o", blocked + "/s.sdf"}}) {
        const CommandResult result = crenara(arguments);
        EXPECT_EQ(result.status, 1) << arguments[0];
        EXPECT_TRUE(result.says(blocked)) << arguments[0] << result.err;
    }
    EXPECT_EQ(bytesOf(stack), before);
    EXPECT_EQ(folder.read("file"), "mine");
}

TEST(BadInput, AFullDiskLeavesTheOldFilesWhole)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    const std::string table = folder.writeJunctions();
    const std::vector<std::string> run = {"run",         "--out", folder.file("o"),
                                          "--junctions", table,   photograph};
    ASSERT_EQ(crenara(run).status, 0);
    ASSERT_EQ(crenara({"picture", folder.file("o/o.sdf"), "--out", folder.file("o")}).status, 0);
    const std::string stack = bytesOf(folder.file("o/o.sdf"));
    const std::string leaves = bytesOf(folder.file("o/o_LeafMeasures.data"));
    const std::string picture = bytesOf(folder.file("o/a.png"));
    int files = 0;
    for (const auto& entry : fs::directory_iterator(folder.file("o"))) {
        files += entry.is_regular_file() ? 1 : 0;
    }
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             run,
             {"contour", folder.file("o/o.sdf")},
             {"measure", folder.file("o/o.sdf")},
             {"picture", folder.file("o/o.sdf"), "--out", folder.file("o")}}) {
        const CommandResult result = crenara(arguments, {}, 300);
        EXPECT_EQ(result.status, 1) << arguments[0];
        EXPECT_TRUE(result.says(folder.file("o/"))) << arguments[0] << ": " << result.err;
        EXPECT_EQ(bytesOf(folder.file("o/o.sdf")), stack) << arguments[0];
        EXPECT_EQ(bytesOf(folder.file("o/o_LeafMeasures.data")), leaves) << arguments[0];
        EXPECT_EQ(bytesOf(folder.file("o/a.png")), picture) << arguments[0];
    }
    for (const auto& entry : fs::directory_iterator(folder.file("o"))) {
        files -= entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(files, 0) << "temporary files are left";
}

TEST(BadInput, NamesThatCannotBeStoredOrStandTwiceAreRefused)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    fs::create_directory(folder.file("other"));
    fs::copy_file(photograph, folder.file("other/a.tiff"));
    fs::copy_file(photograph, folder.file("say \"a\".tif"));
    fs::create_directory(folder.file("dir\"x"));
    fs::copy_file(photograph, folder.file("dir\"x/b.tif"));
    const std::string stack = folder.file("s.sdf");

    struct Case
    {
        std::string photograph;
        std::string message;
    };

    const std::vector<Case> cases = {{folder.file("other/a.tiff"), "has a slice \"a\" already"},
                                     {folder.file("say \"a\".tif"), "double quote"},
                                     {folder.file("dir\"x/b.tif"), "double quote"}};
    for (const Case& given : cases) {
        const CommandResult result = crenara({"stack", stack, photograph, given.photograph});
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(result.says(given.message)) << result.err;
        EXPECT_FALSE(fs::exists(stack));
    }
}

TEST(BadInput, SlicesWithoutPixelSizeAreTold)
{
    LeafFolder folder;
    const std::string plain = folder.addLeaf("plain");
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
    const CommandResult result =
        crenara(joined({"run", "--out", folder.file("o"), "--junctions", folder.writeJunctions()},
                       folder.photographs()));
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(result.says("slice plain has no pixel size; its lengths are in pixels"));
    EXPECT_FALSE(result.says("slice sized has no pixel size"));
    EXPECT_TRUE(result.says("the stack mixes slices with and without pixel size")) << result.err;
    EXPECT_EQ(cellOf(folder.file("o/o_LeafMeasures.data"), "sized", "Calibration"), "100.000");
    EXPECT_EQ(cellOf(folder.file("o/o_LeafMeasures.data"), "plain", "Calibration"), "1.00000");
    const std::string record = bytesOf(folder.file("o/o_run.json"));
    EXPECT_NE(record.find("\"unit\": \"µm²\""), std::string::npos);
    EXPECT_NE(record.find("\"slices in pixels\": [\n        \"plain\"\n    ]"), std::string::npos)
        << record;
}
