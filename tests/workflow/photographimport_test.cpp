#include "image/files/imagereader.h"
#include "image/files/imagewriter.h"
#include "image/files/tifforigin.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesourcefile.h"
#include "interface/lmxstack.h"
#include "interface/photographimport.h"
#include "interface/photographrecord.h"
#include "interface/stackbuilder.h"
#include "support/temporaryfolder.h"
#include "support/tiffs.h"
#include "system/exception.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <chrono>

namespace {

namespace fs = std::filesystem;

/// Left half red, right half blue, the upper left corner white.
QImage markedPicture(int width, int height)
{
    QImage picture(width, height, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.fillRect(0, 0, width / 2, height, QColor(255, 0, 0));
    painter.fillRect(width / 2, 0, width, height, QColor(0, 0, 255));
    painter.fillRect(0, 0, width / 4, height / 4, Qt::white);
    return picture;
}

std::string save(const TemporaryFolder& folder, const std::string& name, const QImage& picture)
{
    EXPECT_TRUE(picture.save(QString::fromStdString(folder.file(name)), nullptr, 100));
    return folder.file(name);
}

/// Puts an EXIF record with this orientation behind the first marker of a JPEG file.
std::string
withOrientation(const TemporaryFolder& folder, const std::string& name, char orientation)
{
    std::string bytes = folder.read(name);
    const std::string tiff("II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 18);
    const std::string exif =
        std::string("Exif\0\0", 6) + tiff + orientation + std::string("\0\0\0\0\0\0\0", 7);
    const auto length = static_cast<char>(exif.size() + 2);
    bytes.insert(2, std::string("\xFF\xE1\0", 3) + length + exif);
    return folder.write(name, bytes);
}

Image0 converted(const TemporaryFolder& folder, const std::string& photograph)
{
    std::string note;
    const std::string path = PhotographImport::convert(photograph, folder.path().string(), note);
    EXPECT_EQ(path, photograph + ".tif");
    EXPECT_EQ(note, "");
    Image0 image;
    ImageReader().read(image, path);
    return image;
}

/// The slice of a photograph has no pixel size.
bool uncalibratedSlice(const TemporaryFolder& folder, const std::string& photograph)
{
    LMXStack stack;
    StackBuilder builder;
    builder.setFolder(folder.path().string());
    builder.build(stack, {photograph});
    return !StackBuilder::hasPixelSize(stack.getSlice(0));
}

} // namespace

TEST(PhotographImport, TellsTiffFilesByTheirSuffix)
{
    for (const char* name : {"a.tif", "a.TIF", "d.png/a.tiff", "a.Tiff"}) {
        EXPECT_TRUE(PhotographImport::isTiff(name)) << name;
    }
    for (const char* name : {"a.png", "a.tif.jpg", "tif", "a.tif/b", ""}) {
        EXPECT_FALSE(PhotographImport::isTiff(name)) << name;
    }
}

TEST(PhotographImport, TurnsPhotographsUprightAsTheirExifRecordSays)
{
    const TemporaryFolder folder;
    save(folder, "p.jpg", markedPicture(64, 32));
    // Its right side is the top: to be turned clockwise.
    const Image0 image = converted(folder, withOrientation(folder, "p.jpg", 6));
    ASSERT_EQ(image.getWidth(), 32);
    ASSERT_EQ(image.getHeight(), 64);
    const auto sample = [&](int x, int y, int c) { return int(image.getPixels()[y][3 * x + c]); };
    // The corner has gone to the upper right, the blue half to the bottom.
    EXPECT_GT(sample(29, 3, 1), 200);
    EXPECT_LT(sample(3, 3, 1), 60);
    EXPECT_GT(sample(16, 60, 2), 200);
    EXPECT_LT(sample(16, 60, 0), 60);
}

TEST(PhotographImport, KeepsAResolutionThatTheFileStates)
{
    const TemporaryFolder folder;
    QImage picture = markedPicture(40, 20);
    // A PNG file written by Qt always states one; without its record there is none.
    picture.setDotsPerMeterX(11811);
    picture.setDotsPerMeterY(5906);
    for (const char* name : {"p.png", "p.jpg"}) {
        const std::string path = save(folder, name, picture);
        converted(folder, path);
        const PixelCalibration calibration = ImageSourceFile(path + ".tif").getPixelCalibration();
        EXPECT_EQ(calibration.getLengthUnit().getScale(), -2) << name;
        EXPECT_NEAR(calibration.getPixelWidth(), 2.54 / 300.0, 2e-5) << name;
        EXPECT_NEAR(calibration.getPixelHeight(), 2.54 / 150.0, 4e-5) << name;
    }
    std::string bytes = folder.read("p.png");
    const std::size_t record = bytes.find("pHYs");
    ASSERT_NE(record, std::string::npos);
    bytes.erase(record - 4, 21); // length, name, nine bytes, checksum
    const std::string plain = folder.write("q.png", bytes);
    converted(folder, plain);
    EXPECT_EQ(ImageSourceFile(plain + ".tif").getPixelCalibration().getLengthUnit().getScale(), 0);
}

TEST(PhotographRecord, TakesNoScaleFromScreensAndCameras)
{
    const TemporaryFolder folder;
    const auto doubt = [&](const std::string& path) { return PhotographRecord(path).doubt(); };
    QImage picture = markedPicture(40, 20);
    for (const char* name : {"p.png", "p.jpg"}) {
        for (const double dots : {72.0, 96.0, 150.0, 300.0}) {
            picture.setDotsPerMeterX(qRound(dots / 0.0254));
            picture.setDotsPerMeterY(qRound(dots / 0.0254));
            const std::string path = save(folder, name, picture);
            EXPECT_NEAR(PhotographRecord(path).dotsPerInch(), dots, 1.0) << name;
            EXPECT_EQ(doubt(path).empty(), dots > 100.0) << name << dots;
            EXPECT_EQ(uncalibratedSlice(folder, path), dots < 100.0) << name << dots;
        }
    }
    // A camera's name, in a JPEG file's and in a PNG file's record.
    const std::string tiff("II*\0\x08\0\0\0\x01\0\x0F\x01\x02\0\x06\0\0\0\x1A\0\0\0\0\0\0\0Canon\0",
                           32);
    std::string jpeg = folder.read("p.jpg");
    jpeg.insert(2, std::string("\xFF\xE1\0\x28", 4) + std::string("Exif\0\0", 6) + tiff);
    std::string png = folder.read("p.png");
    png.insert(png.find("pHYs") - 4, std::string("\0\0\0\x20", 4) + "eXIf" + tiff + "sums");
    for (const std::string& path : {folder.write("c.jpg", jpeg), folder.write("c.png", png)}) {
        EXPECT_EQ(PhotographRecord(path).make(), "Canon");
        EXPECT_NE(doubt(path).find("Canon"), std::string::npos);
    }
    EXPECT_TRUE(uncalibratedSlice(folder, folder.file("c.jpg")));
    // A TIFF file of 72 dots says so by intent; with a camera's name it doesn't.
    for (const bool camera : {false, true}) {
        const std::string path = folder.file(camera ? "camera.tif" : "plain.tif");
        {
            TiffMaker maker(path);
            maker.tags(8, 4, 8, 1, PHOTOMETRIC_MINISBLACK);
            TIFFSetField(maker.get(), TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
            TIFFSetField(maker.get(), TIFFTAG_XRESOLUTION, 72.0);
            TIFFSetField(maker.get(), TIFFTAG_YRESOLUTION, 72.0);
            if (camera) {
                TIFFSetField(maker.get(), TIFFTAG_MAKE, "Nikon");
            }
            maker.rows(4, [](int, int) { return 7; });
        }
        EXPECT_EQ(uncalibratedSlice(folder, path), camera);
    }
    // Cut off or damaged anywhere, a record says something or nothing.
    for (const std::string& whole : {jpeg.substr(0, 80), png.substr(0, 120), tiff}) {
        for (std::size_t at = 0; at < whole.size(); ++at) {
            PhotographRecord(folder.write("cut", whole.substr(0, at))).doubt();
            std::string broken = whole;
            broken[at] = '\xFF';
            PhotographRecord(folder.write("broken", broken)).doubt();
        }
    }
}

TEST(StackBuilder, TellsOnceOfResolutionsThatAreNoScale)
{
    const TemporaryFolder folder;
    QImage picture = markedPicture(40, 20);
    picture.setDotsPerMeterX(2835);
    picture.setDotsPerMeterY(2835);
    LMXStack stack;
    StackBuilder builder;
    builder.setFolder(folder.path().string());
    builder.build(stack, {save(folder, "a.png", picture), save(folder, "b.jpg", picture)});
    ASSERT_EQ(builder.getNotes().size(), 1U);
    EXPECT_NE(builder.getNotes()[0].find("a.png states 72 dots per inch"), std::string::npos);
    builder.build(stack, {save(folder, "c.png", picture)});
    EXPECT_TRUE(builder.getNotes().empty());
}

TEST(PhotographImport, KnowsAConversionByWhatItWasMadeFrom)
{
    const TemporaryFolder folder;
    fs::create_directories(folder.path() / "other");
    const std::string path = save(folder, "p.png", markedPicture(20, 20));
    const std::string other = save(folder, "other/p.png", markedPicture(30, 20));
    const fs::path tiff = path + ".tif";
    const Image0 first = converted(folder, path);
    // Used again whatever its age, and never by a photograph of the same name.
    const auto earlier = fs::last_write_time(path) - std::chrono::hours(1);
    fs::last_write_time(tiff, earlier);
    converted(folder, path);
    EXPECT_EQ(fs::last_write_time(tiff), earlier) << "written again without need";
    std::string note;
    const std::string second = PhotographImport::convert(other, folder.path().string(), note);
    EXPECT_EQ(second, folder.file("p.png-2.tif"));
    EXPECT_NE(note.find("another picture has the name"), std::string::npos) << note;
    EXPECT_EQ(Image0(second, "").getWidth(), 30);
    EXPECT_EQ(Image0(tiff.string(), "").getWidth(), 20);

    // One that was changed is neither used nor lost.
    Image0 retouched = first;
    retouched.clear();
    ImageWriter writer;
    writer.setOrigin(tiffOrigin(tiff.string()));
    writer.write(retouched, tiff.string(), true);
    EXPECT_EQ(PhotographImport::convert(path, folder.path().string(), note),
              folder.file("p.png-3.tif"));
    EXPECT_EQ(Image0(tiff.string(), "").getData()[0], 0);
}

TEST(PhotographImport, RefusesWhatIsNoPhotograph)
{
    const TemporaryFolder folder;
    std::string note;
    const auto convert = [&](const std::string& name) {
        PhotographImport::convert(folder.file(name), folder.path().string(), note);
    };
    EXPECT_THROW(convert("none.png"), FileReadError);
    folder.write("text.jpg", "this is text");
    EXPECT_THROW(convert("text.jpg"), FileFormatError);
    save(folder, "p.bmp", markedPicture(8, 8));
    EXPECT_THROW(convert("p.bmp"), FileFormatError);
    save(folder, "p.png", markedPicture(8, 8));
    EXPECT_THROW(PhotographImport::convert(folder.file("p.png"), folder.file("none"), note),
                 FileWriteError);
}
