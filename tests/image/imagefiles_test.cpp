// TIFF files: what is written comes back, what can't be used is refused by name, damage is told.

#include "image/image0.h"
#include "image/image2.h"
#include "image/imagereader.h"
#include "image/imagewriter.h"
#include "image/tifffile.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"
#include "support/tiffs.h"
#include "system/progressmonitor.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <random>
#include <set>
#include <thread>

namespace {

PixelCalibration calibrated(float width, float height, int scale)
{
    PixelCalibration calibration;
    calibration.setPixelWidth(width);
    calibration.setPixelHeight(height);
    LengthUnit unit;
    unit.setScale(scale);
    calibration.setLengthUnit(unit);
    calibration.compute();
    return calibration;
}

Image0 sample(int width, int height, int depth, const PixelCalibration& calibration)
{
    Image0 image(width, height, depth);
    std::mt19937 random(static_cast<unsigned>(width * height + depth));
    std::generate_n(image.getData(), image.dataLength(),
                    [&random] { return static_cast<unsigned char>(random()); });
    ImageHeader header(image.getHeader());
    header.setPixelCalibration(calibration);
    image.setHeader(header);
    return image;
}

bool samePixels(const Image0& a, const Image0& b)
{
    return a.getWidth() == b.getWidth() && a.getHeight() == b.getHeight() &&
           a.getDepth() == b.getDepth() &&
           std::memcmp(a.getData(), b.getData(), a.dataLength()) == 0;
}

/// An image whose every byte is random; real numbers among them are made finite.
Image2 hyperstack(ValueType type, int planes, int samples, int channels, int timepoints)
{
    Image2 image(type, 5, 4, planes, samples, channels, timepoints);
    std::mt19937 random(7);
    for (int c = 0; c < channels; ++c) {
        for (int t = 0; t < timepoints; ++t) {
            std::generate_n(image.frame(c, t), image.bytesPerFrame(),
                            [&random] { return static_cast<unsigned char>(random()); });
        }
    }
    return image;
}

std::string reasonFor(const std::string& path)
{
    try {
        Image0 image;
        ImageReader().read(image, path);
    } catch (const FileFormatError& error) {
        EXPECT_EQ(error.getFilename(), path);
        return error.getWhat();
    }
    return "";
}

class CancelAtRow : public ProgressMonitor
{
public:
    explicit CancelAtRow(int row)
        : row_(row)
    {}

    using ProgressMonitor::subjectProgressed;

    void subjectProgressed(int current, int total) override
    {
        rows_ = current;
        total_ = total;
        if (current == row_) {
            currentSubject()->cancel();
        }
    }

    void subjectCanceled(const std::string&) override { ++canceled_; }

    void subjectFinished(const std::string&) override { ++finished_; }

    int rows_ = 0;
    int total_ = 0;
    int canceled_ = 0;
    int finished_ = 0;

    using ProgressMonitor::subjectCanceled;
    using ProgressMonitor::subjectFinished;

private:
    int row_;
};

} // namespace

TEST(ImageWriter, PlainImagesComeBackWithTheirCalibration)
{
    const TemporaryFolder folder;
    for (const int depth : {8, 24, 32}) {
        for (const int scale : {-9, -6, -3, -2, 0}) {
            const std::string path = folder.file("leaf \"1\"; \xC3\xA9t\xC3\xA9.tif");
            const Image0 image = sample(7, 3, depth, calibrated(0.25F, 0.5F, scale));
            ImageWriter().write(image, path, true);
            Image0 back;
            ImageReader().read(back, path);
            EXPECT_TRUE(samePixels(image, back)) << depth;
            const PixelCalibration& calibration = back.getHeader().getPixelCalibration();
            EXPECT_FLOAT_EQ(calibration.getPixelWidth(), 0.25F);
            EXPECT_FLOAT_EQ(calibration.getPixelHeight(), 0.5F);
            EXPECT_EQ(calibration.getLengthUnit().getScale(), scale);
            EXPECT_EQ(back.getHeader().getImageFormat(), ImageFormat::Tiff);
            EXPECT_EQ(back.getHeader().getPlanes(), 1);
        }
    }
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(ImageWriter, ColormapsComeBackAndStaleOnesGo)
{
    const TemporaryFolder folder;
    Image0 image = sample(6, 5, 8, PixelCalibration());
    image.setColormap(Colormap::fire());
    image.writeFile("fire.tif", folder.path().string(), false);
    Image0 back("fire.tif", folder.path().string() + "/");
    ASSERT_TRUE(back.isIndexed());
    EXPECT_EQ(*back.getColormap(), Colormap::fire());
    EXPECT_TRUE(samePixels(image, back));
    image.setGrayscale(0);
    ImageWriter().write(image, folder.file("plain.tif"), false);
    ImageReader().read(back, folder.file("plain.tif"));
    EXPECT_FALSE(back.isIndexed());
}

TEST(ImageWriter, SixteenBitsAreWrittenAsTwoSamplesThatTheReaderRefuses)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("deep.tif");
    ImageWriter().write(sample(3, 2, 16, PixelCalibration()), path, false);
    EXPECT_EQ(reasonFor(path), "Cannot read TIFF with 2 samples per pixel");
}

TEST(ImageWriter, AFileIsReplacedWholeOrNotAtAll)
{
    const TemporaryFolder folder;
    const Image0 image = sample(200, 100, 24, PixelCalibration());
    const std::string path = folder.write("old.tif", "old");
    expectError<FileWriteError>([&] { ImageWriter().write(image, path, false); },
                                "void ImageWriter::write(...)", "File already exists");
    expectError<FileWriteError>(
        [&] { ImageWriter().write(image, folder.file("no/such/folder.tif"), true); },
        "void ImageWriter::write(...)", "Cannot open file for writing");
    EXPECT_THROW(ImageWriter().write(Image0(), path, true), FileWriteError);

    // A limit on the length of files stands for a full disk.
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{10000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    std::string filename;
    std::string what;
    testing::internal::CaptureStderr();
    try {
        ImageWriter().write(image, path, true);
    } catch (const FileWriteError& error) {
        filename = error.getFilename();
        what = error.getWhat();
    }
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(filename, path);
    EXPECT_EQ(what.find("Cannot write TIFF: "), 0U) << what;
    EXPECT_EQ(folder.read("old.tif"), "old");
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(ImageWriter, HyperstacksComeBackForEveryTypeAndShape)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("stack.tif");
    for (int type = 0; type < 7; ++type) {
        for (const int samples : {1, 3, 4, 6}) {
            for (const auto [planes, channels, timepoints] :
                 {std::array{1, 1, 1}, std::array{3, 1, 1}, std::array{1, 2, 1},
                  std::array{2, 2, 3}}) {
                Image2 image =
                    hyperstack(static_cast<ValueType>(type), planes, samples, channels, timepoints);
                SpatialCalibration calibration;
                calibration.setSize(0.5F, 0.25F, planes > 1 ? 2.0F : 1.0F);
                LengthUnit unit;
                unit.setScale(-6);
                calibration.setLengthUnit(unit);
                Vector<float> position(3);
                position.setSequence(1.5F, -1.0F);
                calibration.setPosition(position);
                image.setSpatialCalibration(calibration);
                image.saveAsTiff(path, samples == 3, true);
                const Image2 back(path);
                ASSERT_TRUE(back == image) << type << ' ' << samples << ' ' << planes;
                const SpatialCalibration& read = back.getSpatialCalibration();
                EXPECT_EQ(read.getSize(), calibration.getSize());
                EXPECT_EQ(read.getLengthUnit().getScale(), -6);
                EXPECT_EQ(read.getPosition(), position);
                EXPECT_EQ(back.fileCompression(), samples == 3 ? "lzw" : "");
            }
        }
    }
}

TEST(ImageWriter, TheDescriptionIsThatOfImageJ)
{
    const TemporaryFolder folder;
    const auto description = [&](const Image2& image) {
        ImageWriter().write(image, folder.file("a.tif"), false, true);
        const TiffFile file(folder.file("a.tif"), "r");
        char* text = nullptr;
        TIFFGetField(file.get(), TIFFTAG_IMAGEDESCRIPTION, &text);
        float* position = nullptr;
        EXPECT_FALSE(TIFFGetField(file.get(), AbstractImageIO::ImagePosition3D, &position));
        return std::string(text);
    };
    EXPECT_EQ(description(Image2(ValueType::Float, 2, 2, 1, 1, 1, 1)),
              "ImageJ=1.51s\nmode=grayscale\nunit=m\n");
    EXPECT_EQ(description(Image2(ValueType::Float, 2, 2, 1, 3, 2, 1)),
              "ImageJ=1.51s\nimages=2\nchannels=2\nunit=m\n");
    Image2 image(ValueType::UnsignedChar, 2, 2, 3, 1, 2, 2);
    SpatialCalibration calibration;
    calibration.setSize3(0.1F);
    LengthUnit unit;
    unit.setScale(-6);
    calibration.setLengthUnit(unit);
    image.setSpatialCalibration(calibration);
    EXPECT_EQ(description(image),
              "ImageJ=1.51s\nimages=12\nchannels=2\nslices=3\nframes=2\nhyperstack=true\n"
              "mode=grayscale\nunit=micron\nspacing=0.100000\nloop=false");
}

TEST(ImageReader, PagesGoChannelThenPlaneThenTimepoint)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("pages.tif");
    {
        TiffMaker maker(path);
        for (int page = 0; page < 12; ++page) {
            maker.tags(2, 1, 8, 1, PHOTOMETRIC_MINISBLACK);
            TIFFSetField(maker.get(), TIFFTAG_IMAGEDESCRIPTION, "ImageJ\nchannels=2\nframes=3\n");
            maker.rows(1, [page](int, int) { return static_cast<unsigned char>(page); });
        }
    }
    const Image2 image(path);
    EXPECT_EQ(image.getSize3(), 2);
    ASSERT_EQ(image.getNumChannels(), 2);
    ASSERT_EQ(image.getNumTimepoints(), 3);
    EXPECT_EQ(image.frame(1, 1)[2], 7);
    for (int page = 0; page < 12; ++page) {
        EXPECT_EQ(image.frame(page % 2, page / 4)[2 * (page / 2 % 2)], page);
    }
}

TEST(ImageReader, CalibrationFollowsUnitTagAndDescription)
{
    struct Case
    {
        int unit;
        const char* description;
        int scale;
        int headerScale;
        float size;
    };

    const Case cases[] = {{RESUNIT_INCH, nullptr, -2, -2, 0.0254F},
                          {RESUNIT_CENTIMETER, "unit=nm", -2, -2, 0.01F},
                          {RESUNIT_NONE, nullptr, 0, 0, 0.01F},
                          {RESUNIT_NONE, "ImageJ\nunit=micron\n", -6, -6, 0.01F},
                          {RESUNIT_NONE, "unit=\\u00B5m\n", -6, 0, 0.01F},
                          {RESUNIT_NONE, "unit=\xC2\xB5m", -6, -6, 0.01F},
                          {RESUNIT_NONE, "unit=um", -6, -6, 0.01F},
                          {RESUNIT_NONE, "unit=mm unit=cm", -3, -3, 0.01F},
                          {RESUNIT_NONE, "unit=nm", -9, -9, 0.01F}};
    const TemporaryFolder folder;
    const std::string path = folder.file("a.tif");
    for (const Case& c : cases) {
        {
            TiffMaker maker(path);
            maker.tags(2, 2, 8, 1, PHOTOMETRIC_MINISBLACK);
            TIFFSetField(maker.get(), TIFFTAG_RESOLUTIONUNIT, c.unit);
            TIFFSetField(maker.get(), TIFFTAG_XRESOLUTION, 100.0);
            TIFFSetField(maker.get(), TIFFTAG_YRESOLUTION, 50.0);
            if (c.description != nullptr) {
                TIFFSetField(maker.get(), TIFFTAG_IMAGEDESCRIPTION, c.description);
            }
            maker.rows(2, [](int, int) { return 0; });
        }
        const Image2 image(path);
        EXPECT_EQ(image.getSpatialCalibration().getLengthUnit().getScale(), c.scale);
        EXPECT_FLOAT_EQ(image.getSpatialCalibration().getSize2(), c.size);
        EXPECT_FLOAT_EQ(image.getSpatialCalibration().getSize1(), 2 * c.size);
        ImageHeader header;
        ImageReader().read(header, path);
        const PixelCalibration& pixel = header.getPixelCalibration();
        EXPECT_EQ(pixel.getLengthUnit().getScale(), c.headerScale);
        EXPECT_FLOAT_EQ(pixel.getPixelWidth(), c.size);
        EXPECT_FLOAT_EQ(pixel.getAspectRatio(), 2.0F);
    }
}

TEST(ImageReader, SixteenBitGrayOfEitherByteOrderReads)
{
    const TemporaryFolder folder;
    for (const char* mode : {"wl", "wb"}) {
        const std::string path = folder.file(std::string(mode) + ".tif");
        {
            TiffMaker maker(path, mode);
            maker.tags(2, 1, 16, 1, PHOTOMETRIC_MINISBLACK);
            maker.rows(1, [](int, int b) { return static_cast<unsigned char>(b + 1); });
        }
        Image0 image;
        ImageReader().read(image, path);
        ASSERT_EQ(image.getDepth(), 16);
        EXPECT_EQ(image.getData()[0], 1);
        EXPECT_EQ(image.getData()[3], 4);
        EXPECT_EQ(ImageReader().readImageFileFormat(path), ImageFormat::Tiff);
    }
}

TEST(ImageReader, FeaturesThatAreNotReadAreNamed)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("odd.tif");
    const auto make = [&](int bits, int samples, int photometric, auto change) {
        TiffMaker maker(path);
        maker.tags(16, 16, bits, samples, photometric);
        change(maker.get());
        std::uint16_t planar = PLANARCONFIG_CONTIG;
        TIFFGetField(maker.get(), TIFFTAG_PLANARCONFIG, &planar);
        maker.rows(
            16, [](int, int) { return 0; }, planar == PLANARCONFIG_SEPARATE ? samples : 1);
    };
    const auto nothing = [](TIFF*) {};
    const auto separate = [](TIFF* tif) {
        TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
    };
    const auto jpeg = [](TIFF* tif) { TIFFSetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_JPEG); };
    make(16, 3, PHOTOMETRIC_RGB, nothing);
    EXPECT_EQ(reasonFor(path), "Cannot read TIFF with 16 bits per sample and 3 samples per pixel");
    make(32, 1, PHOTOMETRIC_MINISBLACK, nothing);
    EXPECT_EQ(reasonFor(path), "Cannot read TIFF with 32 bits per sample");
    make(1, 1, PHOTOMETRIC_MINISBLACK, nothing);
    EXPECT_EQ(reasonFor(path), "Cannot read TIFF with 1 bits per sample");
    EXPECT_THROW(Image2{path}, FileFormatError);
    make(8, 4, PHOTOMETRIC_SEPARATED, nothing);
    EXPECT_EQ(reasonFor(path), "Cannot read TIFF with CMYK colours");
    EXPECT_THROW(Image2{path}, FileFormatError);
    make(8, 3, PHOTOMETRIC_CIELAB, nothing);
    EXPECT_EQ(reasonFor(path), "Cannot read TIFF with photometric interpretation 8");
    make(8, 1, PHOTOMETRIC_MINISBLACK, jpeg);
    EXPECT_EQ(reasonFor(path), "Cannot read TIFF with JPEG compression");
    Image2 header;
    ImageReader().read(header, path, false);
    EXPECT_EQ(header.fileCompression(), "jpg");
    make(8, 3, PHOTOMETRIC_RGB, separate);
    EXPECT_EQ(reasonFor(path), "Cannot read TIFF with separate planes");
    EXPECT_THROW(Image2{path}, FileFormatError);
    EXPECT_EQ(reasonFor(folder.write("empty.tif", "")), "Unrecognized image file format");
    EXPECT_EQ(reasonFor(folder.write("text.tif", "II is no TIFF")),
              "Unrecognized image file format");
    expectError<FileReadError>([&] { Image0("missing.tif", folder.path().string() + "/"); },
                               "void ImageReader::readHeader(ImageHeader&,const string&) const",
                               "Cannot open file for reading");
    expectError<FileReadError>(
        [&] { ImageReader().readImageFileFormat(folder.file("missing.tif")); },
        "void ImageReader::readImageFileFormat(const string&)",
        "Cannot open file for reading: No such file or directory");
}

TEST(ImageReader, TilesGiveThePixelsThatStripsGive)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("tiles.tif");

    struct Case
    {
        int width, height, bits, samples, compression;
    };

    for (const Case& c :
         {Case{40, 70, 8, 1, COMPRESSION_NONE}, Case{33, 15, 8, 3, COMPRESSION_LZW},
          Case{16, 48, 16, 1, COMPRESSION_ADOBE_DEFLATE}, Case{5, 3, 32, 1, COMPRESSION_NONE}}) {
        const int pixel = c.samples * c.bits / 8;
        const auto byte = [&](int row, int b) {
            return static_cast<unsigned char>(7 * row + 3 * b);
        };
        {
            constexpr int tileWidth = 32;
            constexpr int tileHeight = 16;
            TiffMaker maker(path);
            maker.tags(c.width, c.height, c.bits, c.samples,
                       c.samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
            TIFFSetField(maker.get(), TIFFTAG_COMPRESSION, c.compression);
            TIFFSetField(maker.get(), TIFFTAG_TILEWIDTH, tileWidth);
            TIFFSetField(maker.get(), TIFFTAG_TILELENGTH, tileHeight);
            std::vector<unsigned char> tile(static_cast<std::size_t>(TIFFTileSize(maker.get())));
            for (int y = 0; y < c.height; y += tileHeight) {
                for (int x = 0; x < c.width; x += tileWidth) {
                    for (int i = 0; i < tileHeight * tileWidth * pixel; ++i) {
                        tile[static_cast<std::size_t>(i)] =
                            byte(y + i / (tileWidth * pixel), x * pixel + i % (tileWidth * pixel));
                    }
                    TIFFWriteTile(maker.get(), tile.data(), static_cast<std::uint32_t>(x),
                                  static_cast<std::uint32_t>(y), 0, 0);
                }
            }
        }
        const Image2 image(path);
        ASSERT_EQ(image.bytesPerLine(), static_cast<std::size_t>(c.width * pixel));
        const unsigned char* read = image.frame(0, 0);
        for (int row = 0; row < c.height; ++row) {
            for (int b = 0; b < c.width * pixel; ++b) {
                ASSERT_EQ(*read++, byte(row, b)) << c.width << " at " << row << ' ' << b;
            }
        }
        if (c.bits < 32) {
            Image0 plane;
            ImageReader().read(plane, path);
            EXPECT_EQ(std::memcmp(plane.getData(), image.frame(0, 0), image.bytes()), 0);
        }
    }
}

TEST(ImageReader, SizesBeyondTheFileAreRefusedBeforeMemoryIsTaken)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("huge.tif");
    for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
        {
            TiffMaker maker(path);
            maker.tags(4, 4, 8, 1, PHOTOMETRIC_MINISBLACK);
            TIFFSetField(maker.get(), TIFFTAG_COMPRESSION, compression);
            maker.rows(4, [](int, int) { return 1; });
        }
        // The directory of a small file: rewrite width and length in their twelve-byte entries.
        std::string bytes = folder.read("huge.tif");
        for (const char tag : {'\x00', '\x01'}) {
            const std::size_t entry = bytes.find(std::string{tag, '\x01', '\x03', '\x00', '\x01'});
            ASSERT_NE(entry, std::string::npos);
            bytes[entry + 2] = 4;
            bytes.replace(entry + 8, 4, std::string("\xFF\xFF\xFF\x00", 4));
        }
        folder.write("huge.tif", bytes);
        ImageHeader header;
        ImageReader().read(header, path);
        EXPECT_EQ(header.getWidth(), 0xFFFFFF);
        const std::string what = "The file is too short for the image that it describes";
        EXPECT_EQ(reasonFor(path), what) << compression;
        EXPECT_THROW(Image2{path}, FileFormatError);
    }
    {
        TiffMaker maker(path);
        for (int page = 0; page < 2; ++page) {
            maker.tags(4, 4, 8, 1, PHOTOMETRIC_MINISBLACK);
            TIFFSetField(maker.get(), TIFFTAG_IMAGEDESCRIPTION, "channels=1000000\nframes=1000000");
            maker.rows(4, [](int, int) { return 1; });
        }
    }
    EXPECT_THROW(Image2{path}, FileFormatError);
}

TEST(ImageReader, BigTiffIsReadIntoAnImage2Alone)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("big.tif");
    {
        TiffMaker maker(path, "w8");
        maker.tags(3, 2, 32, 1, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(maker.get(), TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_INT);
        maker.rows(2, [](int i, int b) { return static_cast<unsigned char>(12 * i + b); });
    }
    EXPECT_EQ(ImageReader().readImageFileFormat(path), ImageFormat::BigTiff);
    const Image2 image(path);
    EXPECT_EQ(image.getValueType(), ValueType::Int);
    EXPECT_EQ(image.frame(0, 0)[17], 17);
    EXPECT_EQ(reasonFor(path), "Unrecognized image file format");
}

TEST(ImageReader, ACancelledReadKeepsTheRowsReadSoFar)
{
    const TemporaryFolder folder;
    const Image0 image = sample(4, 6, 8, PixelCalibration());
    ImageWriter().write(image, folder.file("a.tif"), true);
    CancelAtRow monitor(2);
    ImageReader reader;
    reader.addMonitor(monitor);
    Image0 back(4, 6, 8);
    back.clear();
    reader.read(back, folder.file("a.tif"));
    EXPECT_TRUE(reader.isCanceled());
    EXPECT_EQ(monitor.rows_, 2);
    EXPECT_EQ(monitor.total_, 6);
    EXPECT_EQ(monitor.canceled_, 1);
    EXPECT_EQ(monitor.finished_, 0);
    EXPECT_EQ(std::memcmp(back.getData(), image.getData(), 8), 0);
    EXPECT_EQ(back.getData()[8], 0);
}

TEST(TiffMessages, HandlersOfTheProcessComeBack)
{
    static int calls = 0;
    const TIFFErrorHandler mine = [](const char*, const char*, va_list) { ++calls; };
    const TIFFErrorHandler before = TIFFSetErrorHandler(mine);
    {
        const TiffMessages messages;
        TIFFError("module", "row %d.", 7);
        TIFFError("module", "another");
        EXPECT_EQ(TiffMessages::withReason("No"), "No: row 7");
    }
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(TIFFSetErrorHandler(before), mine);
}

TEST(TiffMessages, ThreadsThatReadAtOnceHearTheirOwnErrorsOnly)
{
    const TemporaryFolder folder;
    const Image0 image = sample(40, 30, 8, PixelCalibration());
    ImageWriter().write(image, folder.file("whole.tif"), false);
    folder.write("cut.tif", folder.read("whole.tif").substr(0, 600));
    std::string expected;
    const auto errorOf = [&](const char* name) {
        try {
            Image0 read;
            ImageReader().read(read, folder.file(name));
            return std::string();
        } catch (const FileError& error) {
            return error.getWhat();
        }
    };
    expected = errorOf("cut.tif");
    ASSERT_FALSE(expected.empty());
    const TIFFErrorHandler before = TIFFSetErrorHandler(nullptr);
    int wrong[4] = {};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                const bool cut = (i + t) % 2 == 0;
                wrong[t] += errorOf(cut ? "cut.tif" : "whole.tif") != (cut ? expected : "");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const int count : wrong) {
        EXPECT_EQ(count, 0);
    }
    EXPECT_EQ(TIFFSetErrorHandler(before), nullptr) << "the last guard brought the handler back";
}
