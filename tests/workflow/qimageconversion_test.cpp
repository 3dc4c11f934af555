#include "image/pixels/image0.h"
#include "interface/qimageconversion.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

Image0 randomImage(int width, int height, int depth, unsigned seed)
{
    std::mt19937 random(seed);
    Image0 image(width, height, depth);
    for (std::size_t i = 0; i < image.dataLength(); ++i) {
        image.getData()[i] = static_cast<unsigned char>(random());
    }
    return image;
}

} // namespace

TEST(QImageConversion, GreyAndColourComeBackAsTheyWere)
{
    for (const int width : {1, 3, 4, 17}) {
        for (const int depth : {8, 24}) {
            const Image0 image = randomImage(width, 5, depth, static_cast<unsigned>(width));
            const Image0 back = toImage0(toQImage(image));
            EXPECT_EQ(back.getDepth(), depth);
            EXPECT_TRUE(std::equal(back.getData(), back.getData() + back.dataLength(),
                                   image.getData(), image.getData() + image.dataLength()))
                << width << " " << depth;
        }
    }
    EXPECT_TRUE(toQImage(Image0()).isNull());
}

TEST(QImageConversion, IndicesShowTheColoursOfTheTable)
{
    Image0 image(2, 1, 8);
    image.getData()[0] = 1;
    image.getData()[1] = 200;
    Colormap colormap(2);
    colormap.getRed()[1] = 10;
    colormap.getGreen()[1] = 20;
    colormap.getBlue()[1] = 30;
    image.setColormap(colormap);
    const QImage picture = toQImage(image);
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(10, 20, 30));
    EXPECT_EQ(picture.pixelColor(1, 0), QColor(0, 0, 0)) << "beyond the table";
}

TEST(QImageConversion, TransparentPartsLieOnWhite)
{
    QImage picture(3, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, qRgba(0, 100, 200, 0));
    picture.setPixel(1, 0, qRgba(0, 100, 200, 255));
    picture.setPixel(2, 0, qRgba(0, 100, 200, 128));
    const Image0 image = toImage0(picture);
    ASSERT_EQ(image.getDepth(), 24);
    const unsigned char* pixels = image.getPixels()[0];
    const int expected[9] = {255, 255, 255, 0, 100, 200, 127, 177, 227};
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(pixels[i], expected[i], 1) << i;
    }
}

TEST(QImageConversion, OfSixteenBitsTheUpperEightStay)
{
    QImage grey(256, 1, QImage::Format_Grayscale16);
    auto* row = reinterpret_cast<quint16*>(grey.scanLine(0));
    for (int x = 0; x < 256; ++x) {
        row[x] = static_cast<quint16>(x * 257);
    }
    const Image0 image = toImage0(grey);
    ASSERT_EQ(image.getDepth(), 8);
    for (int x = 0; x < 256; ++x) {
        EXPECT_EQ(image.getPixels()[0][x], x);
    }
    QImage colour(1, 1, QImage::Format_RGBX64);
    colour.setPixelColor(0, 0, QColor::fromRgba64(0x1234, 0xab00, 0xffff));
    const Image0 three = toImage0(colour);
    ASSERT_EQ(three.getDepth(), 24);
    EXPECT_NEAR(three.getData()[0], 0x12, 1);
    EXPECT_NEAR(three.getData()[1], 0xab, 1);
    EXPECT_EQ(three.getData()[2], 0xff);
}
