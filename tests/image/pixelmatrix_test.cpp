#include "image/values/imageerrors.h"
#include "support/errors.h"
#include "support/images.h"
#include "system/randomgenerator.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

PixelMatrix<float> row(std::initializer_list<float> values)
{
    return PixelMatrix<float>(matrixOf<float>({values}));
}

std::vector<int> samples(const Image0& image)
{
    std::vector<int> result;
    for (std::size_t i = 0; i < image.dataLength(); i += image.getDepth() / 8) {
        std::uint16_t sample = image.getData()[i];
        if (image.getDepth() == 16) {
            std::memcpy(&sample, image.getData() + i, 2);
        }
        result.push_back(sample);
    }
    return result;
}

} // namespace

TEST(PixelMatrix, PixelsLieInOneBlockHoweverTheMatrixCameAbout)
{
    PixelMatrix<short> sized(3, 5);
    PixelMatrix<short> fromMatrix(Matrix<short>(4, 5));
    PixelMatrix<short> resized;
    resized.setSize(vectorOf<int>({7, 5}));
    PixelMatrix<short> assigned;
    assigned = fromMatrix;
    for (PixelMatrix<short>* matrix : {&sized, &fromMatrix, &resized, &assigned}) {
        EXPECT_TRUE(matrix->isOwner());
        EXPECT_EQ((*matrix)[1].data(), (*matrix)[0].data() + 5);
    }
}

TEST(PixelMatrix, BordersAreFilledFromTheOutsideIn)
{
    for (int width = 0; width < 6; ++width) {
        PixelMatrix<int> matrix(7, 9);
        matrix.setZeros();
        matrix.fillBorder(width, 4);
        EXPECT_EQ(matrix, imageFrom<int>(7, 9, [=](int i, int j) {
                      return std::min({i, j, 6 - i, 8 - j}) < width ? 4 : 0;
                  }));
    }
}

TEST(PixelMatrix, RandomPixelsFillTheRangeAndRepeatWithTheSeed)
{
    RandomGenerator generator;
    PixelMatrix<int> images[2] = {PixelMatrix<int>(40, 50), PixelMatrix<int>(40, 50)};
    for (PixelMatrix<int>& image : images) {
        generator.init(7);
        image.randomise(-2, 3, generator);
        EXPECT_EQ(image.range(), vectorOf<int>({-2, 3}));
    }
    EXPECT_EQ(images[0], images[1]);
}

TEST(PixelMatrix, MaskedHistogramCountsWhatTheMaskShows)
{
    std::mt19937 random(3);
    const auto image = imageFrom<int>(13, 17, [&](int, int) { return randomInt(-5, 24, random); });
    const auto mask = imageFrom<int>(13, 17, [&](int, int) { return randomInt(0, 1, random); });
    Vector<unsigned int> expected;
    expected.setZeros(8);
    for (int n = 0; n < 13 * 17; ++n) {
        const int value = image(n / 17, n % 17);
        expected[std::clamp((value - 1) / 3, 0, 7)] += mask(n / 17, n % 17) != 0;
    }
    EXPECT_EQ(image.histogram(1, 3, 8, mask), expected);
    // A step of half a number was none, and all values fell into the last bin.
    const auto ramp = imageFrom<unsigned char>(1, 4, [](int, int j) { return j; });
    const auto all = imageFrom<unsigned char>(1, 4, [](int, int) { return 1; });
    EXPECT_EQ(ramp.histogram(-0.5F, 0.5F, 8, all),
              vectorOf<unsigned int>({0, 1, 0, 1, 0, 1, 0, 1}));
    EXPECT_RAISES(SizeError, "Vectorui PixelMatrix<T>::histogram(...)", "Incompatible mask size",
                  image.histogram(1, 3, 8, PixelMatrix<int>(17, 13)));
}

TEST(PixelMatrix, DepthConversionTruncatesAndWraps)
{
    Image0 image;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    row({0.9F, -0.9F, 255.9F, 256, -1, 1e30F, nan}).convertToImage(image, 8);
    EXPECT_EQ(samples(image), (std::vector<int>{0, 0, 255, 0, 255, 0, 0}));
    row({70000, 65535.5F, -2}).convertToImage(image, 16);
    EXPECT_EQ(samples(image), (std::vector<int>{4464, 65535, 65534}));
    EXPECT_RAISES(DepthError, "void PixelMatrix<T>::convertToImage(Image&, const int) const",
                  "The depth is neither 8 nor 16", row({1}).convertToImage(image, 24));
    EXPECT_EQ(image.getWidth(), 3);
}

TEST(PixelMatrix, RangesAreStretchedToBytes)
{
    Image0 image;
    const PixelMatrix<float> ramp = row({-1, 0, 1, 3});
    ramp.convertToImage(image, 10, 50);
    EXPECT_EQ(samples(image), (std::vector<int>{10, 20, 30, 50}));
    ramp.convertToImage(image, 50, 10);
    EXPECT_EQ(samples(image), (std::vector<int>{50, 40, 30, 10}));
    row({7, 7}).convertToImage(image, 10, 50);
    EXPECT_EQ(samples(image), (std::vector<int>{10, 10}));
    row({-9, 0, 0.5F, 1, 9}).convertToImage(image, 0, 1, 0, 255);
    EXPECT_EQ(samples(image), (std::vector<int>{0, 0, 127, 255, 255}));
    PixelMatrix<int>(matrixOf<int>({{0, 1000, 2000}})).convertToImage(image, 0, 255);
    EXPECT_EQ(samples(image), (std::vector<int>{0, 127, 255}));
}

TEST(PixelMatrix, ImagesKeepTheCalibrationBothWays)
{
    PixelMatrix<unsigned short> matrix(2, 3);
    matrix.fill(40000);
    PixelCalibration calibration;
    calibration.setLengthUnit(unitOf(-6));
    matrix.setPixelCalibration(calibration);
    for (int depth : {8, 16}) {
        Image0 image(3, 2, depth);
        image.setGrayscale(4);
        matrix.convertToImage(image, depth);
        EXPECT_FALSE(image.isIndexed()) << "the colormap of the image before";
        const PixelMatrix<unsigned short> back(image);
        EXPECT_EQ(back.getPixelCalibration().getLengthUnit(), unitOf(-6));
        EXPECT_EQ(back(1, 2), depth == 16 ? 40000 : 40000 % 256);
    }
}

TEST(PixelMatrix, ChannelsAreReadFromColourAndIndexedImages)
{
    for (int depth : {24, 32}) {
        const Image0 image = randomImage0(5, 4, depth, 4);
        Image0 copy(5, 4, depth);
        copy.clear();
        const int step = depth / 8;
        for (int channel = 0; channel < step; ++channel) {
            const auto plane = static_cast<ImageChannel>(channel);
            PixelMatrix<unsigned char> matrix;
            matrix.convertFromImage(image, plane);
            EXPECT_EQ(PixelMatrix<unsigned char>(image.channel(plane)), matrix);
            copy.setChannel(plane, matrix);
            EXPECT_EQ(matrix, imageFrom<unsigned char>(4, 5, [&](int i, int j) {
                          return image.getPixels()[i][j * step + channel];
                      }));
        }
        EXPECT_EQ(bytesOf(copy), bytesOf(image));
        EXPECT_THROW(PixelMatrix<float>{image}, DepthError);
    }
    Image0 indexed(2, 1, 8);
    indexed.getData()[0] = 1;
    indexed.getData()[1] = 200;
    Colormap map(2);
    map.getRed() = vectorOf<unsigned char>({0, 10});
    map.getGreen() = vectorOf<unsigned char>({0, 20});
    map.getBlue() = vectorOf<unsigned char>({0, 30});
    indexed.setColormap(map);
    PixelMatrix<int> matrix;
    for (int channel = 0; channel < 3; ++channel) {
        matrix.convertFromImage(indexed, static_cast<ImageChannel>(channel));
        EXPECT_EQ(matrix, matrixOf<int>({{10 * (channel + 1), 0}})) << "200 is beyond the map";
    }
    matrix.convertFromImage(indexed, ImageChannel::Fourth);
    EXPECT_EQ(matrix, matrixOf<int>({{30, 0}}));
    matrix.convertFromImage(indexed);
    EXPECT_EQ(matrix, matrixOf<int>({{1, 200}}));
}
