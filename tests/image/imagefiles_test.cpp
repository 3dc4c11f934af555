// TIFF files: what is written comes back, what can't be used is refused by name, damage is told.

#include "image/files/imagereader.h"
#include "image/files/imagewriter.h"
#include "image/files/tifffile.h"
#include "image/pixels/image2.h"
#include "support/errors.h"
#include "support/filesizelimit.h"
#include "support/images.h"
#include "support/listener.h"
#include "support/temporaryfolder.h"
#include "support/tiffs.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <thread>

namespace {

Image0 sample(int width, int height, int depth)
{
    return randomImage0(width, height, depth, static_cast<unsigned int>(width * height + depth));
}

/// An image whose every byte is random.
Image2 hyperstack(ValueType type, int planes, int samples, int channels, int timepoints)
{
    Image2 image(type, 5, 4, planes, samples, channels, timepoints);
    for (int f = 0; f < channels * timepoints; ++f) {
        const std::size_t bytes = image.bytesPerFrame();
        const Image0 random =
            randomImage0(static_cast<int>(bytes), 1, 8, static_cast<unsigned int>(f));
        std::memcpy(image.frame(f % channels, f / channels), random.getData(), bytes);
    }
    return image;
}

/// Writes a plain page and returns its path; `change` may set more tags.
std::string makePage(
    const TemporaryFolder& folder,
    int width,
    int height,
    int bits,
    int samples,
    int photometric,
    const std::function<void(TIFF*)>& change = [](TIFF*) {},
    const char* mode = "w",
    int pages = 1)
{
    TiffMaker maker(folder.file("page.tif"), mode);
    for (int page = 0; page < pages; ++page) {
        maker.tags(width, height, bits, samples, photometric);
        change(maker.get());
        std::uint16_t planar = PLANARCONFIG_CONTIG;
        TIFFGetField(maker.get(), TIFFTAG_PLANARCONFIG, &planar);
        maker.rows(
            height, [=](int i, int b) { return static_cast<unsigned char>(page + 12 * i + b); },
            planar == PLANARCONFIG_SEPARATE ? samples : 1);
    }
    return folder.file("page.tif");
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

} // namespace

TEST(ImageWriter, ImagesComeBackWithCalibrationAndColormap)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("leaf \"1\"; \xC3\xA9t\xC3\xA9.tif");
    Image0 back;
    for (const int depth : {8, 24, 32}) {
        for (const int scale : {-9, -6, -3, -2, 0}) {
            Image0 image = sample(7, 3, depth);
            PixelCalibration calibration;
            calibration.setPixelWidth(0.25F);
            calibration.setPixelHeight(0.5F);
            calibration.setLengthUnit(unitOf(scale));
            calibration.compute();
            ImageHeader header(image.getHeader());
            header.setPixelCalibration(calibration);
            image.setHeader(header);
            if (depth == 8 && scale != 0) {
                image.setColormap(Colormap::fire());
            }
            ImageWriter().write(image, path, true);
            ImageReader().read(back, path);
            EXPECT_EQ(bytesOf(back), bytesOf(image)) << depth;
            EXPECT_EQ(back.getSize(), image.getSize());
            EXPECT_EQ(back.getDepth(), depth);
            ASSERT_EQ(back.isIndexed(), image.isIndexed());
            EXPECT_TRUE(!back.isIndexed() || *back.getColormap() == Colormap::fire());
            EXPECT_EQ(back.getHeader().getPixelCalibration(), calibration);
            EXPECT_EQ(back.getHeader().getPixelCalibration().getLengthUnit().getScale(), scale);
            EXPECT_EQ(back.getHeader().getImageFormat(), ImageFormat::Tiff);
            EXPECT_EQ(back.getHeader().getPlanes(), 1);
        }
    }
    EXPECT_EQ(folder.fileCount(), 1);
    const Image0 deep = sample(3, 2, 16);
    deep.writeFile("deep.tif", folder.path().string(), false);
    EXPECT_EQ(reasonFor(folder.file("deep.tif")), "Cannot read TIFF with 2 samples per pixel");
}

TEST(ImageWriter, AFileIsReplacedWholeOrNotAtAll)
{
    const TemporaryFolder folder;
    const Image0 image = sample(200, 100, 24);
    const std::string path = folder.write("old.tif", "old");
    EXPECT_RAISES(FileWriteError, "void ImageWriter::write(...)", "File already exists",
                  ImageWriter().write(image, path, false));
    EXPECT_RAISES(FileWriteError, "void ImageWriter::write(...)", "Cannot open file for writing",
                  ImageWriter().write(image, folder.file("no/such/folder.tif"), true));
    EXPECT_THROW(ImageWriter().write(Image0(), path, true), FileWriteError);

    std::string what;
    testing::internal::CaptureStderr();
    try {
        const FileSizeLimit fullDisk(10000);
        ImageWriter().write(image, path, true);
    } catch (const FileWriteError& error) {
        EXPECT_EQ(error.getFilename(), path);
        what = error.getWhat();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(what.find("Cannot write TIFF: "), 0U) << what;
    EXPECT_EQ(folder.read("old.tif"), "old");
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(ImageWriter, HyperstacksComeBackForEveryTypeAndShape)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("stack.tif");
    for (int n = 0; n < 7 * 4 * 4; ++n) {
        const int samples = std::array{1, 3, 4, 6}[static_cast<std::size_t>(n / 7 % 4)];
        const auto [planes, channels, timepoints] =
            std::array{std::array{1, 1, 1}, std::array{3, 1, 1}, std::array{1, 2, 1},
                       std::array{2, 2, 3}}[static_cast<std::size_t>(n / 28)];
        Image2 image =
            hyperstack(static_cast<ValueType>(n % 7), planes, samples, channels, timepoints);
        SpatialCalibration calibration = calibrationOf(-6, 0.5F, 0.25F, planes > 1 ? 2.0F : 1.0F);
        calibration.setPosition(vectorOf<float>({1.5F, 0.5F, -0.5F}));
        image.setSpatialCalibration(calibration);
        image.saveAsTiff(path, samples == 3, true);
        const Image2 back(path);
        ASSERT_TRUE(back == image) << n;
        const SpatialCalibration& read = back.getSpatialCalibration();
        EXPECT_EQ(read.getSize(), calibration.getSize());
        EXPECT_EQ(read.getLengthUnit().getScale(), -6);
        EXPECT_EQ(read.getPosition(), calibration.getPosition());
        EXPECT_EQ(back.fileCompression(), samples == 3 ? "lzw" : "");
    }
}

TEST(ImageWriter, TheDescriptionIsThatOfImageJ)
{
    const TemporaryFolder folder;
    const auto expectDescription = [&](const Image2& image, const std::string& text) {
        ImageWriter().write(image, folder.file("a.tif"), false, true);
        EXPECT_NE(folder.read("a.tif").find(text + '\0'), std::string::npos) << text;
        const TiffFile file(folder.file("a.tif"), "r");
        float* position = nullptr;
        EXPECT_FALSE(TIFFGetField(file.get(), AbstractImageIO::ImagePosition3D, &position));
    };
    expectDescription(Image2(ValueType::Float, 2, 2, 1, 1, 1, 1),
                      "ImageJ=1.51s\nmode=grayscale\nunit=m\n");
    expectDescription(Image2(ValueType::Float, 2, 2, 1, 3, 2, 1),
                      "ImageJ=1.51s\nimages=2\nchannels=2\nunit=m\n");
    Image2 image(ValueType::UnsignedChar, 2, 2, 3, 1, 2, 2);
    image.setSpatialCalibration(calibrationOf(-6, 1, 1, 0.1F));
    expectDescription(image, "ImageJ=1.51s\nimages=12\nchannels=2\nslices=3\nframes=2\n"
                             "hyperstack=true\nmode=grayscale\nunit=micron\nspacing=0.100000\n"
                             "loop=false");
}

TEST(ImageReader, PagesGoChannelThenPlaneThenTimepoint)
{
    const TemporaryFolder folder;
    const Image2 image(makePage(
        folder, 2, 1, 8, 1, PHOTOMETRIC_MINISBLACK,
        [](TIFF* tif) {
            TIFFSetField(tif, TIFFTAG_IMAGEDESCRIPTION, "ImageJ\nchannels=2\nframes=3\n");
        },
        "w", 12));
    EXPECT_EQ(image.getSize3(), 2);
    ASSERT_EQ(image.getNumChannels(), 2);
    ASSERT_EQ(image.getNumTimepoints(), 3);
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
        int scale, headerScale;
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
    for (const Case& c : cases) {
        const std::string path =
            makePage(folder, 2, 2, 8, 1, PHOTOMETRIC_MINISBLACK, [&](TIFF* tif) {
                TIFFSetField(tif, TIFFTAG_RESOLUTIONUNIT, c.unit);
                TIFFSetField(tif, TIFFTAG_XRESOLUTION, 100.0);
                TIFFSetField(tif, TIFFTAG_YRESOLUTION, 50.0);
                if (c.description != nullptr) {
                    TIFFSetField(tif, TIFFTAG_IMAGEDESCRIPTION, c.description);
                }
            });
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

TEST(ImageReader, ByteOrdersAndBigTiffAreRead)
{
    const TemporaryFolder folder;
    for (const char* mode : {"wl", "wb"}) {
        const std::string path = makePage(
            folder, 2, 1, 16, 1, PHOTOMETRIC_MINISBLACK, [](TIFF*) {}, mode);
        Image0 image;
        ImageReader().read(image, path);
        ASSERT_EQ(image.getDepth(), 16);
        EXPECT_EQ(bytesOf(image), (std::vector<int>{0, 1, 2, 3}));
        EXPECT_EQ(ImageReader().readImageFileFormat(path), ImageFormat::Tiff);
    }
    const auto integers = [](TIFF* tif) {
        TIFFSetField(tif, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_INT);
    };
    const std::string path = makePage(folder, 3, 2, 32, 1, PHOTOMETRIC_MINISBLACK, integers, "w8");
    EXPECT_EQ(ImageReader().readImageFileFormat(path), ImageFormat::BigTiff);
    const Image2 image(path);
    EXPECT_EQ(image.getValueType(), ValueType::Int);
    EXPECT_EQ(image.frame(0, 0)[17], 17);
    EXPECT_EQ(reasonFor(path), "Unrecognized image file format");
}

TEST(ImageReader, FeaturesThatAreNotReadAreNamed)
{
    const TemporaryFolder folder;

    struct Case
    {
        int bits, samples, photometric;
        std::pair<int, int> tag;
        const char* reason;
        bool isReadAsImage2;
    };

    const std::pair<int, int> none(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    const Case cases[] = {
        {16, 3, PHOTOMETRIC_RGB, none, "16 bits per sample and 3 samples per pixel", true},
        {32, 1, PHOTOMETRIC_MINISBLACK, none, "32 bits per sample", true},
        {1, 1, PHOTOMETRIC_MINISBLACK, none, "1 bits per sample", false},
        {8, 4, PHOTOMETRIC_SEPARATED, none, "CMYK colours", false},
        {8, 3, PHOTOMETRIC_CIELAB, none, "photometric interpretation 8", true},
        {8, 3, PHOTOMETRIC_YCBCR, none, "YCbCr colours", false},
        {8,
         3,
         PHOTOMETRIC_RGB,
         {TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE},
         "separate planes",
         false}};
    for (const Case& c : cases) {
        const std::string path =
            makePage(folder, 16, 16, c.bits, c.samples, c.photometric, [&](TIFF* tif) {
                TIFFSetField(tif, static_cast<std::uint32_t>(c.tag.first), c.tag.second);
            });
        EXPECT_EQ(reasonFor(path), std::string("Cannot read TIFF with ") + c.reason);
        if (!c.isReadAsImage2) {
            EXPECT_THROW(Image2{path}, FileFormatError) << c.reason;
        }
    }
    for (const char* const bytes : {"", "II is no TIFF"}) {
        EXPECT_EQ(reasonFor(folder.write("text.tif", bytes)), "Unrecognized image file format");
    }
    EXPECT_RAISES(FileReadError, "void ImageReader::readHeader(ImageHeader&,const string&) const",
                  "Cannot open file for reading",
                  Image0("missing.tif", folder.path().string() + "/"));
    EXPECT_RAISES(FileReadError, "void ImageReader::readImageFileFormat(const string&)",
                  "Cannot open file for reading: No such file or directory",
                  ImageReader().readImageFileFormat(folder.file("missing.tif")));
}

TEST(ImageReader, JpegCompressionIsReadAndItsDamageTold)
{
    const TemporaryFolder folder;
    for (const int samples : {1, 3}) {
        const std::string path = folder.file("jpeg.tif");
        {
            TiffMaker maker(path);
            maker.tags(32, 16, 8, samples,
                       samples == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_YCBCR);
            TIFFSetField(maker.get(), TIFFTAG_COMPRESSION, COMPRESSION_JPEG);
            TIFFSetField(maker.get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
            TIFFSetField(maker.get(), TIFFTAG_ROWSPERSTRIP, 16);
            // A leaf's green, which the decoder must bring back from luminance and two differences.
            maker.rows(16, [=](int, int b) {
                return static_cast<unsigned char>(samples == 1 ? 90 : b % 3 == 1 ? 140 : 40);
            });
        }
        Image0 image;
        ImageReader().read(image, path);
        ASSERT_EQ(image.getDepth(), 8 * samples);
        const Image2 same(path);
        EXPECT_EQ(same.fileCompression(), "jpg");
        for (int b = 0; b < 32 * samples; ++b) {
            EXPECT_NEAR(image.getPixels()[7][b], samples == 1 ? 90 : b % 3 == 1 ? 140 : 40, 4);
            EXPECT_EQ(same.frame(0, 0)[7 * 32 * samples + b], image.getPixels()[7][b]);
        }
        // The decoder ends what is cut off with grey, and only warns.
        std::string bytes = folder.read("jpeg.tif");
        const std::size_t scan = bytes.find("\xFF\xDA");
        ASSERT_NE(scan, std::string::npos);
        bytes.replace(scan + 14, 2, "\xFF\xD9");
        folder.write("jpeg.tif", bytes);
        EXPECT_THROW(ImageReader().read(image, path), FileReadError);
    }
}

TEST(ImageReader, APointerThatLeadsNowhereEndsThePages)
{
    const TemporaryFolder folder;
    const std::string path = makePage(folder, 3, 2, 8, 1, PHOTOMETRIC_MINISBLACK);
    std::string bytes = folder.read("page.tif");
    std::uint32_t directory = 0;
    std::uint16_t entries = 0;
    std::memcpy(&directory, bytes.data() + 4, sizeof(directory));
    std::memcpy(&entries, bytes.data() + directory, sizeof(entries));
    bytes.replace(directory + 2 + 12U * entries, 4, "\xFF\xFF\xFF\x7F");
    folder.write("page.tif", bytes);
    EXPECT_EQ(reasonFor(path), "");
    EXPECT_EQ(Image2(path).getSize3(), 1);
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
            constexpr int tileHeight = 16;
            const int tileBytes = 32 * pixel;
            TiffMaker maker(path);
            maker.tags(c.width, c.height, c.bits, c.samples,
                       c.samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
            TIFFSetField(maker.get(), TIFFTAG_COMPRESSION, c.compression);
            TIFFSetField(maker.get(), TIFFTAG_TILEWIDTH, 32);
            TIFFSetField(maker.get(), TIFFTAG_TILELENGTH, tileHeight);
            for (int y = 0; y < c.height; y += tileHeight) {
                for (int x = 0; x < c.width; x += 32) {
                    std::vector<unsigned char> tile;
                    for (int i = 0; i < tileHeight * tileBytes; ++i) {
                        tile.push_back(byte(y + i / tileBytes, x * pixel + i % tileBytes));
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
    for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
        const std::string path =
            makePage(folder, 4, 4, 8, 1, PHOTOMETRIC_MINISBLACK,
                     [=](TIFF* tif) { TIFFSetField(tif, TIFFTAG_COMPRESSION, compression); });
        // The directory of a small file: rewrite width and length in their twelve-byte entries.
        std::string bytes = folder.read("page.tif");
        for (const char tag : {'\x00', '\x01'}) {
            const std::size_t entry = bytes.find(std::string{tag, '\x01', '\x03', '\x00', '\x01'});
            ASSERT_NE(entry, std::string::npos);
            bytes[entry + 2] = 4;
            bytes.replace(entry + 8, 4, std::string("\xFF\xFF\xFF\x00", 4));
        }
        folder.write("page.tif", bytes);
        ImageHeader header;
        ImageReader().read(header, path);
        EXPECT_EQ(header.getWidth(), 0xFFFFFF);
        const std::string what = "The file is too short for the image that it describes";
        EXPECT_EQ(reasonFor(path), what) << compression;
        EXPECT_THROW(Image2{path}, FileFormatError);
    }
    const auto claim = [](TIFF* tif) {
        TIFFSetField(tif, TIFFTAG_IMAGEDESCRIPTION, "channels=1000000\nframes=1000000");
    };
    EXPECT_THROW(Image2{makePage(folder, 4, 4, 8, 1, PHOTOMETRIC_MINISBLACK, claim, "w", 2)},
                 FileFormatError);
}

TEST(ImageReader, ACancelledReadKeepsTheRowsReadSoFar)
{
    const TemporaryFolder folder;
    const Image0 image = sample(4, 6, 8);
    ImageWriter().write(image, folder.file("a.tif"), true);
    Listener monitor;
    ImageReader reader;
    reader.addMonitor(monitor);
    monitor.then = [&] {
        if (monitor.last == "2/6") {
            reader.cancel();
        }
    };
    Image0 back(4, 6, 8);
    back.clear();
    reader.read(back, folder.file("a.tif"));
    EXPECT_TRUE(reader.isCanceled());
    EXPECT_EQ(monitor.log, "started ;1/6;2/6;canceled ;");
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
    const Image0 image = sample(40, 30, 8);
    ImageWriter().write(image, folder.file("whole.tif"), false);
    folder.write("cut.tif", folder.read("whole.tif").substr(0, 600));
    const auto errorOf = [&](const char* name) {
        try {
            Image0 read;
            ImageReader().read(read, folder.file(name));
            return std::string();
        } catch (const FileError& error) {
            return error.getWhat();
        }
    };
    const std::string expected = errorOf("cut.tif");
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
    EXPECT_EQ(std::count(wrong, wrong + 4, 0), 4);
    EXPECT_EQ(TIFFSetErrorHandler(before), nullptr) << "the last guard brought the handler back";
}
