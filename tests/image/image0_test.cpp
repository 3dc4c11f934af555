#include "image/values/imageerrors.h"
#include "shape/vertices/boundingbox.h"
#include "support/errors.h"
#include "support/images.h"

#include <cstring>
#include <vector>

namespace {

Colormap twoColors()
{
    Colormap map(2);
    map.getRed() = vectorOf<unsigned char>({10, 0});
    map.getGreen() = vectorOf<unsigned char>({20, 0});
    map.getBlue() = vectorOf<unsigned char>({31, 9});
    return map;
}

/// The first color, the second one and the first again.
Image0 indexedImage()
{
    Image0 image(3, 1, 8);
    image.clear();
    image.getData()[1] = 1;
    image.setColormap(twoColors());
    return image;
}

} // namespace

TEST(Image0, PixelsAreKeptOnlyForTheSameGeometry)
{
    Image0 image = randomImage0(4, 3, 24, 1);
    const std::vector<int> before = bytesOf(image);
    const unsigned char* const block = image.getData();
    image.init(4, 3, 24);
    EXPECT_EQ(image.getData(), block);
    EXPECT_EQ(bytesOf(image), before);
    image.init(3, 4, 8);
    EXPECT_EQ(image.dataLength(), 12U);
    EXPECT_EQ(image.getPixels()[3] - image.getData(), 9);
    EXPECT_RAISES(DepthError, "void Image::init(...)", "Invalid depth value", image.init(2, 2, 12));
    EXPECT_EQ(image.getWidth(), 0);
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_THROW(image.init(-1, 2, 8), SizeError);

    ImageHeader header(image.getHeader());
    PixelCalibration calibration;
    calibration.setLengthUnit(unitOf(-3));
    header.setPixelCalibration(calibration);
    header.setWidth(50);
    header.setHeight(2);
    header.setDepth(24);
    image.setHeader(header);
    EXPECT_EQ(image.getHeader().getPixelCalibration().getLengthUnit().getScale(), -3);
    EXPECT_EQ(image.dataLength(), 300U);
    image.clear();
    image.setHeader(ImageHeader());
    EXPECT_EQ(image.getData(), nullptr);
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
    image = copy;
    EXPECT_EQ(image.getDepth(), 32);
    EXPECT_FALSE(image.isIndexed());
    image = Image0();
    EXPECT_EQ(image.getData(), nullptr);
}

TEST(Image0, ContentIsThatOfAllPixelsAndFollowsTheirZeros)
{
    using Content = ImageColorContent;
    const std::pair<std::vector<int>, Content> cases[] = {
        {{0, 0, 0}, Content::Gray},  {{5, 5, 5}, Content::Gray},  {{1, 0, 0}, Content::Red},
        {{0, 1, 0}, Content::Green}, {{0, 0, 9}, Content::Blue},  {{1, 0, 9}, Content::Mixed},
        {{0, 2, 9}, Content::Mixed}, {{1, 1, 9}, Content::Mixed}, {{1, 1, 0}, Content::Mixed}};
    for (const auto& [color, content] : cases) {
        EXPECT_EQ(Image0::colorContent(color[0], color[1], color[2]), content);
        Image0 image(3, 2, 24);
        for (std::size_t i = 0; i < 18; ++i) {
            image.getData()[i] = static_cast<unsigned char>(color[i % 3]);
        }
        EXPECT_EQ(image.colorContent(), content);
        EXPECT_EQ(image.isRedOnly(), color[1] == 0 && color[2] == 0);
        EXPECT_EQ(image.isGreenOnly(), color[0] == 0 && color[2] == 0);
        EXPECT_EQ(image.isBlueOnly(), color[0] == 0 && color[1] == 0);
        EXPECT_EQ(image.isGrayscale(), content == Content::Gray);
        image.getData()[15] ^= 8;
        EXPECT_EQ(image.colorContent(), content == Content::Red ? content : Content::Mixed);
    }
    EXPECT_EQ(Image0(1, 1, 16).colorContent(), Content::Gray);
    EXPECT_FALSE(Image0(1, 1, 8).isRedOnly());
    Image0 indexed = indexedImage();
    EXPECT_EQ(indexed.colorContent(), Content::Mixed);
    indexed.setGrayscale(2);
    EXPECT_EQ(indexed.colorContent(), Content::Gray);
    indexed.setGrayscale(0);
    EXPECT_FALSE(indexed.isIndexed());
}

TEST(Image0, GrayIsTheIntegerMeanOfTheSamples)
{
    for (const int depth : {24, 32}) {
        Image0 image = randomImage0(7, 5, depth, 2);
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
    EXPECT_EQ(bytesOf(indexed), (std::vector<int>{0, 1, 0}));
    EXPECT_EQ(indexed.getColormap()->getRed()[0], 20);
    EXPECT_EQ(indexed.getColormap()->getBlue()[1], 3);
}

TEST(Image0, SixteenBitsAreScaledOnlyFrom256On)
{
    for (const auto& samples : {std::vector<unsigned short>{0, 128, 255}, {0, 129, 256}}) {
        Image0 image(3, 1, 16);
        std::memcpy(image.getData(), samples.data(), 6);
        image.make8bitsGrayscale();
        EXPECT_EQ(bytesOf(image), (std::vector<int>{0, 128, 255}));
    }
}

TEST(Image0, TrueColorComesFromTheColormap)
{
    Image0 image = indexedImage();
    image.make24bits();
    EXPECT_EQ(bytesOf(image), (std::vector<int>{10, 20, 31, 0, 0, 9, 10, 20, 31}));
    EXPECT_EQ(image.getColormap(), nullptr);
    image.make32bits();
    EXPECT_EQ(bytesOf(image), (std::vector<int>{10, 20, 31, 0, 0, 0, 9, 0, 10, 20, 31, 0}));
    EXPECT_RAISES(DepthError, "void Image::make24bits()", "Cannot convert non-8 bits images",
                  image.make24bits());
    Image0 gray(2, 2, 8);
    gray.make32bits();
    EXPECT_EQ(gray.getDepth(), 8);
}

TEST(Image0, ChannelsOfEightBitsComeFromTheColormap)
{
    EXPECT_EQ(bytesOf(indexedImage().channel(ImageChannel::Blue)), (std::vector<int>{31, 9, 31}));
    EXPECT_EQ(bytesOf(indexedImage().channel(ImageChannel::Fourth)), (std::vector<int>{0, 0, 0}));
    const Image0 plain = randomImage0(3, 3, 8, 5);
    EXPECT_EQ(bytesOf(plain.channel(ImageChannel::Green)), bytesOf(plain));
    Image0 color(2, 2, 24);
    EXPECT_RAISES(SizeError, "void Image::setChannel(...)",
                  "This image and pixelMatrix have different sizes",
                  color.setChannel(ImageChannel::Red, PixelMatrix<unsigned char>(2, 3)));
}

TEST(Image0, PastingCopiesRowsAndChecksFirst)
{
    const char* const where = "void Image::paste(...)";
    Image0 image(4, 3, 24);
    image.clear();
    const Image0 source = randomImage0(2, 2, 24, 6);
    image.paste(source, 2, 1);
    EXPECT_EQ(image.getPixels()[2][11], source.getPixels()[1][5]);
    EXPECT_EQ(image.getPixels()[1][5], 0);
    EXPECT_EQ(image.getPixels()[1][6], source.getPixels()[0][0]);
    EXPECT_RAISES(SizeError, where, "Incompatible size and position", image.paste(source, 3, 1));
    EXPECT_RAISES(SizeError, where, "Incompatible size and position", image.paste(source, 0, -1));
    EXPECT_RAISES(DepthError, where, "Incompatible image depths",
                  image.paste(Image0(1, 1, 8), 0, 0));
    Image0 indexed = indexedImage();
    EXPECT_RAISES(ColormapError, where, "Incompatible image colormaps",
                  indexed.paste(Image0(1, 1, 8), 0, 0));
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
