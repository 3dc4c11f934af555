#include "image/image0.h"
#include "image/imageerrors.h"
#include "image/pixelmatrix.h"
#include "shape/boundingbox.h"
#include "support/errors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

namespace {

Image0 randomImage(int width, int height, int depth, unsigned seed)
{
    Image0 image(width, height, depth);
    std::mt19937 random(seed);
    std::generate_n(image.getData(), image.dataLength(),
                    [&random] { return static_cast<unsigned char>(random()); });
    return image;
}

std::vector<int> bytes(const Image0& image)
{
    return {image.getData(), image.getData() + image.dataLength()};
}

void setSamples(Image0& image, const std::vector<unsigned short>& samples)
{
    std::memcpy(image.getData(), samples.data(), samples.size() * sizeof(samples[0]));
}

Colormap twoColors()
{
    Colormap map(2);
    map.getRed()[0] = 10;
    map.getGreen()[0] = 20;
    map.getBlue()[0] = 31;
    map.getRed()[1] = 0;
    map.getGreen()[1] = 0;
    map.getBlue()[1] = 9;
    return map;
}

Image0 indexedImage()
{
    Image0 image(3, 1, 8);
    image.getData()[0] = 0;
    image.getData()[1] = 1;
    image.getData()[2] = 0;
    image.setColormap(twoColors());
    return image;
}

} // namespace

TEST(Image0, InitKeepsPixelsOnlyForTheSameGeometry)
{
    Image0 image = randomImage(4, 3, 24, 1);
    const std::vector<int> before = bytes(image);
    const unsigned char* const block = image.getData();
    image.init(4, 3, 24);
    EXPECT_EQ(image.getData(), block);
    EXPECT_EQ(bytes(image), before);
    image.init(3, 4, 8);
    EXPECT_EQ(image.dataLength(), 12U);
    EXPECT_EQ(image.getPixels()[3] - image.getData(), 9);
    expectError<DepthError>([&image] { image.init(2, 2, 12); }, "void Image::init(...)",
                            "Invalid depth value");
    EXPECT_EQ(image.getWidth(), 0);
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_THROW(image.init(-1, 2, 8), SizeError);
}

TEST(Image0, CopiesAreDeepAndSwapsExchangeBlocks)
{
    Image0 image = indexedImage();
    Image0 copy(image);
    copy.getData()[0] = 1;
    copy.setGrayscale(3);
    EXPECT_EQ(image.getData()[0], 0);
    EXPECT_EQ(*image.getColormap(), twoColors());
    Image0 other(1, 1, 32);
    other.swap(copy);
    EXPECT_EQ(other.getColormap()->getSize(), 3);
    EXPECT_EQ(copy.getDepth(), 32);
    image = copy;
    EXPECT_EQ(image.getDepth(), 32);
    EXPECT_FALSE(image.isIndexed());
    image = Image0();
    EXPECT_EQ(image.getData(), nullptr);
}

TEST(Image0, SetHeaderMakesRoomForItsGeometryAndKeepsUnits)
{
    Image0 image(2, 2, 8);
    ImageHeader header(image.getHeader());
    PixelCalibration calibration;
    LengthUnit unit;
    unit.setScale(-3);
    calibration.setLengthUnit(unit);
    header.setPixelCalibration(calibration);
    image.setHeader(header);
    EXPECT_EQ(image.getHeader().getPixelCalibration().getLengthUnit().getScale(), -3);
    header.setWidth(50);
    header.setDepth(24);
    image.setHeader(header);
    EXPECT_EQ(image.dataLength(), 300U);
    image.clear();
    image.setHeader(ImageHeader());
    EXPECT_EQ(image.getData(), nullptr);
}

TEST(Image0, ContentOfOneColorFollowsItsZeros)
{
    using Content = ImageColorContent;
    EXPECT_EQ(Image0::colorContent(0, 0, 0), Content::Gray);
    EXPECT_EQ(Image0::colorContent(5, 5, 5), Content::Gray);
    EXPECT_EQ(Image0::colorContent(1, 0, 0), Content::Red);
    EXPECT_EQ(Image0::colorContent(0, 1, 0), Content::Green);
    EXPECT_EQ(Image0::colorContent(0, 0, 9), Content::Blue);
    EXPECT_EQ(Image0::colorContent(1, 0, 9), Content::Mixed);
    EXPECT_EQ(Image0::colorContent(0, 2, 9), Content::Mixed);
    EXPECT_EQ(Image0::colorContent(1, 1, 9), Content::Mixed);
}

TEST(Image0, ContentOfAnImageIsThatOfAllItsPixels)
{
    Image0 image(3, 2, 24);
    image.clear();
    EXPECT_EQ(image.colorContent(), ImageColorContent::Gray);
    for (int pixel = 0; pixel < 6; ++pixel) {
        image.getData()[3 * pixel + 2] = 9;
    }
    EXPECT_EQ(image.colorContent(), ImageColorContent::Blue);
    EXPECT_TRUE(image.isBlueOnly());
    EXPECT_FALSE(image.isGrayscale());
    image.getData()[15] = 1;
    EXPECT_EQ(image.colorContent(), ImageColorContent::Mixed);
    EXPECT_FALSE(image.isBlueOnly());
    EXPECT_EQ(Image0(1, 1, 16).colorContent(), ImageColorContent::Gray);
    EXPECT_FALSE(Image0(1, 1, 8).isRedOnly());
    EXPECT_EQ(indexedImage().colorContent(), ImageColorContent::Mixed);
    Image0 gray = indexedImage();
    gray.setGrayscale(2);
    EXPECT_EQ(gray.colorContent(), ImageColorContent::Gray);
    gray.setGrayscale(0);
    EXPECT_FALSE(gray.isIndexed());
}

TEST(Image0, GrayIsTheIntegerMeanOfTheSamples)
{
    for (const int depth : {24, 32}) {
        Image0 image = randomImage(7, 5, depth, 2);
        const Image0 original(image);
        image.make8bitsGrayscale();
        ASSERT_EQ(image.getDepth(), 8);
        for (std::size_t i = 0; i < image.dataLength(); ++i) {
            const unsigned char* const p = original.getData() + i * (depth / 8U);
            ASSERT_EQ(image.getData()[i], (p[0] + p[1] + p[2]) / 3);
        }
    }
    Image0 indexed = indexedImage();
    indexed.make8bitsGrayscale();
    EXPECT_EQ(bytes(indexed), (std::vector<int>{0, 1, 0}));
    EXPECT_EQ(indexed.getColormap()->getRed()[0], 20);
    EXPECT_EQ(indexed.getColormap()->getBlue()[1], 3);
}

TEST(Image0, SixteenBitsAreScaledOnlyFrom256On)
{
    Image0 low(3, 1, 16);
    setSamples(low, {0, 128, 255});
    low.make8bitsGrayscale();
    EXPECT_EQ(bytes(low), (std::vector<int>{0, 128, 255}));
    Image0 high(3, 1, 16);
    setSamples(high, {0, 129, 256});
    high.make8bitsGrayscale();
    EXPECT_EQ(bytes(high), (std::vector<int>{0, 128, 255}));
}

TEST(Image0, TrueColorComesFromTheColormap)
{
    Image0 image = indexedImage();
    image.make24bits();
    EXPECT_EQ(bytes(image), (std::vector<int>{10, 20, 31, 0, 0, 9, 10, 20, 31}));
    EXPECT_EQ(image.getColormap(), nullptr);
    image.make32bits();
    EXPECT_EQ(bytes(image), (std::vector<int>{10, 20, 31, 0, 0, 0, 9, 0, 10, 20, 31, 0}));
    expectError<DepthError>([&image] { image.make24bits(); }, "void Image::make24bits()",
                            "Cannot convert non-8 bits images");
    Image0 gray = randomImage(2, 2, 8, 3);
    gray.make32bits();
    EXPECT_EQ(gray.getDepth(), 8);
}

TEST(Image0, ChannelsComeOutAndGoBackIn)
{
    for (const int depth : {24, 32}) {
        const Image0 image = randomImage(5, 4, depth, 4);
        Image0 copy(5, 4, depth);
        copy.clear();
        for (int c = 0; c < depth / 8; ++c) {
            const ImageChannel channel = static_cast<ImageChannel>(c);
            PixelMatrix<unsigned char> matrix;
            matrix.convertFromImage(image, channel);
            const Image0 plane = image.channel(channel);
            EXPECT_EQ(plane.getData()[6], matrix(1, 1));
            copy.setChannel(channel, matrix);
        }
        EXPECT_EQ(bytes(copy), bytes(image));
    }
    EXPECT_EQ(bytes(indexedImage().channel(ImageChannel::Blue)), (std::vector<int>{31, 9, 31}));
    EXPECT_EQ(bytes(indexedImage().channel(ImageChannel::Fourth)), (std::vector<int>{0, 0, 0}));
    const Image0 plain = randomImage(3, 3, 8, 5);
    EXPECT_EQ(bytes(plain.channel(ImageChannel::Green)), bytes(plain));
    Image0 color(2, 2, 24);
    expectError<SizeError>(
        [&color] { color.setChannel(ImageChannel::Red, PixelMatrix<unsigned char>(2, 3)); },
        "void Image::setChannel(...)", "This image and pixelMatrix have different sizes");
}

TEST(Image0, PastingCopiesRowsAndChecksFirst)
{
    const char* const where = "void Image::paste(...)";
    Image0 image(4, 3, 24);
    image.clear();
    const Image0 source = randomImage(2, 2, 24, 6);
    image.paste(source, 2, 1);
    EXPECT_EQ(image.getPixels()[2][11], source.getPixels()[1][5]);
    EXPECT_EQ(image.getPixels()[1][5], 0);
    EXPECT_EQ(image.getPixels()[1][6], source.getPixels()[0][0]);
    expectError<SizeError>([&] { image.paste(source, 3, 1); }, where,
                           "Incompatible size and position");
    expectError<SizeError>([&] { image.paste(source, 0, -1); }, where,
                           "Incompatible size and position");
    expectError<DepthError>([&] { image.paste(Image0(1, 1, 8), 0, 0); }, where,
                            "Incompatible image depths");
    Image0 indexed = indexedImage();
    expectError<ColormapError>([&] { indexed.paste(Image0(1, 1, 8), 0, 0); }, where,
                               "Incompatible image colormaps");
    indexed.paste(indexedImage(), 0, 0);
}

TEST(Image0, ListsItselfOnTheStandardOutput)
{
    testing::internal::CaptureStdout();
    indexedImage().print("leaf", true);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_EQ(text, "leaf\nRows:     1\nCols:     3\nDepth:    8\nColormap: 2 cells\n"
                    "Size:     3 octets\nFormat:   None\nPixel width:  1\nPixel height: 1\n"
                    "Length unit:  meter\n   0   1   0\n");
    EXPECT_EQ(indexedImage().boundingBox().getVertex2()[0], 2);
    EXPECT_EQ(indexedImage().getSize()[1], 3);
}
