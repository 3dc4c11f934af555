#include "image/image0.h"
#include "image/imageerrors.h"
#include "image/pixelmatrix.h"
#include "support/errors.h"
#include "support/vectors.h"
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
        for (int i = 0; i < 7; ++i) {
            for (int j = 0; j < 9; ++j) {
                const int ring = std::min({i, j, 6 - i, 8 - j});
                EXPECT_EQ(matrix(i, j), ring < width ? 4 : 0) << width << ": " << i << ", " << j;
            }
        }
    }
}

TEST(PixelMatrix, RandomPixelsFillTheRangeAndRepeatWithTheSeed)
{
    RandomGenerator generator;
    generator.init(7);
    PixelMatrix<int> first(40, 50);
    first.randomise(-2, 3, generator);
    EXPECT_EQ(first.range(), vectorOf<int>({-2, 3}));
    generator.init(7);
    PixelMatrix<int> second(40, 50);
    second.randomise(-2, 3, generator);
    EXPECT_EQ(first, second);
}

TEST(PixelMatrix, MaskedHistogramCountsWhatTheMaskShows)
{
    std::mt19937 random(3);
    PixelMatrix<int> image(13, 17);
    PixelMatrix<int> mask(13, 17);
    Vector<unsigned int> expected;
    expected.setZeros(8);
    for (int i = 0; i < 13; ++i) {
        for (int j = 0; j < 17; ++j) {
            image(i, j) = static_cast<int>(random() % 30) - 5;
            mask(i, j) = static_cast<int>(random() % 2);
            const int bin = std::clamp((image(i, j) - 1) / 3, 0, 7);
            expected[image(i, j) < 1 ? 0 : bin] += static_cast<unsigned int>(mask(i, j));
        }
    }
    EXPECT_EQ(image.histogram(1, 3, 8, mask), expected);
    expectError<SizeError>([&] { image.histogram(1, 3, 8, PixelMatrix<int>(17, 13)); },
                           "Vectorui PixelMatrix<T>::histogram(...)", "Incompatible mask size");
}

TEST(PixelMatrix, DepthConversionTruncatesAndWraps)
{
    Image0 image;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    row({0.9F, -0.9F, 255.9F, 256, -1, 1e30F, nan}).convertToImage(image, 8);
    EXPECT_EQ(samples(image), (std::vector<int>{0, 0, 255, 0, 255, 0, 0}));
    row({70000, 65535.5F, -2}).convertToImage(image, 16);
    EXPECT_EQ(samples(image), (std::vector<int>{4464, 65535, 65534}));
    expectError<DepthError>([&] { row({1}).convertToImage(image, 24); },
                            "void PixelMatrix<T>::convertToImage(Image&, const int) const",
                            "The depth is neither 8 nor 16");
    EXPECT_EQ(image.getWidth(), 3);
}

TEST(PixelMatrix, RangesAreStretchedToBytes)
{
    Image0 image;
    row({-1, 0, 1, 3}).convertToImage(image, 10, 50);
    EXPECT_EQ(samples(image), (std::vector<int>{10, 20, 30, 50}));
    row({-1, 0, 1, 3}).convertToImage(image, 50, 10);
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
    LengthUnit unit;
    unit.setScale(-6);
    calibration.setLengthUnit(unit);
    matrix.setPixelCalibration(calibration);
    for (int depth : {8, 16}) {
        Image0 image(3, 2, depth);
        image.setGrayscale(4);
        matrix.convertToImage(image, depth);
        EXPECT_FALSE(image.isIndexed()) << "the colormap of the image before";
        const PixelMatrix<unsigned short> back(image);
        EXPECT_EQ(back.getPixelCalibration().getLengthUnit(), unit);
        EXPECT_EQ(back(1, 2), depth == 16 ? 40000 : 40000 % 256);
    }
}

TEST(PixelMatrix, ChannelsAreReadFromColourAndIndexedImages)
{
    for (int depth : {24, 32}) {
        Image0 image(5, 4, depth);
        for (std::size_t i = 0; i < image.dataLength(); ++i) {
            image.getData()[i] = static_cast<unsigned char>(i);
        }
        const int step = depth / 8;
        for (int channel = 0; channel < step; ++channel) {
            PixelMatrix<float> matrix;
            matrix.convertFromImage(image, static_cast<ImageChannel>(channel));
            EXPECT_EQ(matrix(3, 2), static_cast<float>((3 * 5 + 2) * step + channel));
        }
        EXPECT_THROW(PixelMatrix<float>{image}, DepthError);
    }
    Image0 indexed(2, 1, 8);
    indexed.getData()[0] = 1;
    indexed.getData()[1] = 200;
    Colormap map(2);
    map.getRed()[1] = 10;
    map.getGreen()[1] = 20;
    map.getBlue()[1] = 30;
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
