// Operations on bits and bytes beside those on matrices, whose results they share to the last digit.
#include "image/filters/biterosion.h"
#include "image/filters/bytegradient.h"
#include "image/filters/gaussiangradient0.h"
#include "image/filters/minfilter0.h"
#include "image/regions/bitoutline.h"
#include "image/regions/componentlabelling0.h"
#include "image/regions/otsuthresholding0.h"
#include "image/regions/runlabelling.h"
#include "shape/curves/curve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace {

constexpr int pictures = 300;

/// Pictures of many kinds: noise of few and of many values, blocks of even brightness, specks.
class Pictures
{
public:
    PixelMatrix<int> next()
    {
        const int kind = count_++ % 6;
        const int columns = kind == 5 ? between(500, 530) : between(1, 140);
        PixelMatrix<int> image(between(1, 40), columns);
        const int block = kind < 2 ? 1 : between(2, 30);
        const int values = kind == 0 || kind == 3 ? 2 : between(1, 256);
        const int seed = between(0, 1 << 20);
        for (int i = 0; i < image.getSize1(); ++i) {
            for (int j = 0; j < image.getSize2(); ++j) {
                std::minstd_rand hash(
                    static_cast<unsigned>(seed + 7919 * (i / block) + 104729 * (j / block)));
                hash.discard(2);
                const bool speck = kind == 4 && between(0, 30) == 0;
                const int value = static_cast<int>(hash() % static_cast<unsigned>(values));
                image[i][j] = speck ? between(0, 255) : value * 255 / std::max(values - 1, 1);
            }
        }
        return image;
    }

    int between(int low, int high)
    {
        return std::uniform_int_distribution<int>(low, high)(generator_);
    }

private:
    std::mt19937 generator_{7};
    int count_ = 0;
};

BytePlane toBytes(const PixelMatrix<int>& image)
{
    BytePlane bytes;
    bytes.clamp(image);
    return bytes;
}

/// The value of a pixel of a plane by the matrix it came from.
template <class Plane>
void expectEqual(const PixelMatrix<int>& image, const Plane& valueOf, int picture)
{
    for (int i = 0; i < image.getSize1(); ++i) {
        for (int j = 0; j < image.getSize2(); ++j) {
            ASSERT_EQ(image[i][j], valueOf(i, j))
                << "picture " << picture << ": " << i << ", " << j;
        }
    }
}

} // namespace

TEST(BitsAndBytes, ThresholdErosionRegionsAndEdgesAreThoseOfMatrices)
{
    Pictures source;
    for (int k = 0; k < pictures; ++k) {
        PixelMatrix<int> image = source.next();
        const BytePlane bytes = toBytes(image);
        OtsuThresholding0<int> thresholding;
        Vector<unsigned int> counts = image[0].histogram(0, 1, 256);
        for (int i = 1; i < image.getSize1(); ++i) {
            counts += image[i].histogram(0, 1, 256);
        }
        ASSERT_EQ(bytes.histogram(), counts);
        thresholding.setThreshold(source.between(-1, 257));
        thresholding.Thresholding0<int>::apply(image);
        BitPlane bits = BitPlane::notBelow(bytes, thresholding.getThreshold());
        expectEqual(
            image, [&](int i, int j) { return bits(i, j) ? 255 : 0; }, k);

        PixelMatrix<int> edges = image;
        thresholding.contours(edges);
        const BitPlane bitEdges = edgesOf(bits);
        expectEqual(
            edges, [&](int i, int j) { return bitEdges(i, j) ? 255 : 0; }, k);

        MinFilter0<int> erosion;
        erosion.setRadius(source.between(0, k % 2 == 0 ? 2 : 31));
        erosion.apply(image);
        erodeSquare(bits, erosion.getRadius());
        expectEqual(
            image, [&](int i, int j) { return bits(i, j) ? 255 : 0; }, k);

        ComponentLabelling0<int> labelling;
        labelling.apply(image);
        const RunLabelling regions(bits, RunLabelling::Corners::Apart);
        ASSERT_EQ(regions.numRegions(), labelling.getNumLabels());
        std::vector<long> sizes(static_cast<std::size_t>(regions.numRegions()));
        for (const RunLabelling::Run& run : regions.runs()) {
            for (int j = run.begin; j < run.end; ++j) {
                ASSERT_EQ(image[run.row][j], run.region + 1);
                image[run.row][j] = 0;
                ++sizes[static_cast<std::size_t>(run.region)];
            }
        }
        expectEqual(
            image, [](int, int) { return 0; }, k);
        const auto largest = std::max_element(sizes.begin(), sizes.end()) - sizes.begin();
        EXPECT_EQ(regions.largestRegion(), sizes.empty() ? -1 : largest);
    }
}

TEST(BitsAndBytes, TheGradientIsThatOfFloatsCutAt255)
{
    Pictures source;
    for (int k = 0; k < pictures; ++k) {
        PixelMatrix<int> image = source.next();
        const float sigma = k % 2 == 0 ? 1.0f : k % 4 == 1 ? 3.5f : 12.0f;
        const BytePlane bytes = ByteGradient(sigma).apply(toBytes(image));
        PixelMatrix<float> norm(image.getSize1(), image.getSize2());
        for (int i = 0; i < image.getSize1(); ++i) {
            for (int j = 0; j < image.getSize2(); ++j) {
                norm[i][j] = static_cast<float>(image[i][j]);
            }
        }
        GaussianGradient0<float>(sigma).apply(norm);
        for (int i = 0; i < image.getSize1(); ++i) {
            for (int j = 0; j < image.getSize2(); ++j) {
                image[i][j] = std::min(static_cast<int>(norm[i][j]), 255);
            }
        }
        expectEqual(
            image, [&](int i, int j) { return bytes.row(i)[j]; }, k);
    }
}

TEST(BitsAndBytes, ValuesAreTruncatedAndOthersThanBytesRefused)
{
    PixelMatrix<float> image(3, 70);
    image.fill(-0.9f);
    image[1][69] = 255.9f;
    BytePlane bytes;
    ASSERT_TRUE(bytes.convert(image));
    EXPECT_EQ(bytes.row(0)[0], 0);
    EXPECT_EQ(bytes.row(1)[69], 255);
    for (const float value :
         {-1.0f, 256.0f, 65535.0f, 1e30f, -1e30f, std::numeric_limits<float>::quiet_NaN()}) {
        image[2][67] = value;
        EXPECT_FALSE(bytes.convert(image)) << value;
        EXPECT_EQ(bytes.rows(), 0);
    }
}
