#include "blade/contour/extractcontour.h"
#include "blade/contour/lpetransform.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesourcefile.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "system/exception.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>
#include <tuple>

using leaf::Point;

namespace {

leaf::Outline smallLeaf(double degrees = 0.0)
{
    leaf::Shape shape;
    shape.middle = {200.0, 205.0};
    shape.length = 260.0;
    shape.width = 130.0;
    shape.petioleLength = 40.0;
    shape.toothHeight = 14.0;
    shape.angleDegrees = degrees;
    return leaf::draw(shape);
}

/// The contour of an image; empty if there is none.
std::vector<Point> extract(const PixelMatrix<float>& image,
                           BackgroundValue background = DarkBackground,
                           bool binary = false,
                           int fidelity = 100)
{
    const auto stack = leaf::emptyStack(1);
    ExtractContour process;
    process.setStack(*stack);
    process.setBackground(background);
    process.setBinaryImage(binary);
    process.setFidelity(fidelity);
    process.createModels();
    process.process(image, 0);
    const std::vector<Point> contour = leaf::vertices(*stack, "Contour", 0);
    EXPECT_TRUE(contour.empty() || stack->getLastSegmentedSlice() == "leaf0");
    return contour;
}

/// The vertices of a contour as a slice holds them.
std::vector<Point> stored(const Curve<int>& outline)
{
    const auto stack = leaf::emptyStack(1);
    ModelItem& item = leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, {});
    item.setVertices(outline);
    item.setClockwise(false);
    return leaf::pointsOf(item);
}

PixelMatrix<float> plain(int rows, int columns, float value = 0.0f)
{
    PixelMatrix<float> image(rows, columns);
    image.fill(value);
    return image;
}

/// A dark background with grain. Without any, a threshold right above its one value would be the
/// first best one, and a tenth below that the background would count as leaf.
PixelMatrix<float> background(int rows, int columns)
{
    PixelMatrix<float> image(rows, columns);
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            image[i][j] = static_cast<float>((7 * i + 11 * j + i * j) % 16);
        }
    }
    // A grey speck, to put the threshold above all grain.
    image[8][8] = 60.0f;
    return image;
}

void drawDisc(PixelMatrix<float>& image, double x, double y, double radius, float value)
{
    for (int i = 0; i < image.getSize1(); ++i) {
        for (int j = 0; j < image.getSize2(); ++j) {
            if (std::hypot(j - x, i - y) <= radius) {
                image[i][j] = value;
            }
        }
    }
}

} // namespace

TEST(ExtractContour, TheOutlineOfADrawnLeafFollowsItsMarginOnDarkAndOnLight)
{
    for (const double degrees : {0.0, 25.0, 90.0, 137.0, 250.0}) {
        const leaf::Outline outline = smallLeaf(degrees);
        PixelMatrix<float> image = leaf::photograph(outline, 410, 400, 190.0f, 40.0f, 12.0f);
        const std::vector<Point> contour = extract(image);
        EXPECT_GT(contour.size(), 150u);
        EXPECT_NEAR(leaf::polygonArea(contour) / outline.area, 1.0, 0.02) << degrees;
        for (const Point& point : contour) {
            EXPECT_LT(leaf::distanceToOutline(outline, point), 2.5) << degrees;
        }
        for (int i = 0; i < 410; ++i) {
            for (int j = 0; j < 400; ++j) {
                image[i][j] = 255.0f - std::trunc(image[i][j]);
            }
        }
        EXPECT_TRUE(leaf::samePlaces(extract(image, LightBackground), contour, 0.0));
    }
}

TEST(ExtractContour, ABinaryImageGivesItsBrightPartToThePixel)
{
    PixelMatrix<float> image = plain(120, 130);
    for (int i = 20; i <= 80; ++i) {
        for (int j = 30; j <= 100; ++j) {
            image[i][j] = 255.0f;
        }
    }
    ExtractContour process;
    PixelMatrix<int> work = process.convertPixelMatrixToInt(image);
    const Curve<int> outline = process.extractContour(work);
    ASSERT_EQ(outline.getSize(), 4);
    // The trace starts at the first pixel of the last row.
    const int corners[4][2] = {{30, 80}, {100, 80}, {100, 20}, {30, 20}};
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(outline[k][0], corners[k][0]);
        EXPECT_EQ(outline[k][1], corners[k][1]);
    }
}

TEST(ExtractContour, FidelityThinsTheOutlineBySquareAndATenth)
{
    ExtractContour process;
    PixelMatrix<int> work =
        process.convertPixelMatrixToInt(leaf::photograph(smallLeaf(30.0), 410, 400, 255.0f, 0.0f));
    const Curve<int> traced = process.extractContour(work);
    ASSERT_GT(traced.getSize(), 300);
    for (const int fidelity : {100, 99, 70, 30, 10}) {
        Curve<int> outline = traced;
        process.setFidelity(fidelity);
        process.curveResampling(outline);
        process.curveResamplingInverse(outline);
        const double expected = 0.9 * std::pow(fidelity / 100.0, 2) * traced.getSize();
        // Each of two truncations takes less than one vertex, the second not thinned again.
        EXPECT_LE(outline.getSize(), expected);
        EXPECT_GT(outline.getSize(), expected - 2.0);
    }
    // No longer than 150 vertices, an outline is thinned once.
    process.setFidelity(50);
    for (const auto& [size, once, twice] : {std::tuple(150, 150, 67), std::tuple(151, 75, 33)}) {
        Curve<int> outline(2, size, 0, 0, false);
        for (int k = 0; k < size; ++k) {
            outline[k][0] = k < 75 ? 3 * k : 3 * (149 - k);
            outline[k][1] = k < 75 ? 0 : 9;
        }
        process.curveResampling(outline);
        EXPECT_EQ(outline.getSize(), once);
        process.curveResamplingInverse(outline);
        EXPECT_EQ(outline.getSize(), twice);
    }
}

TEST(ExtractContour, RampsShowTheThresholdAndTheWidthOfTheGradient)
{
    PixelMatrix<int> ramp(40, 256);
    for (int i = 0; i < 40; ++i) {
        ramp[i].setSequence(0, 1);
    }
    ExtractContour process;
    // Its halves part at 128, of which 90 % are 115; erosion takes 10 pixels more.
    EXPECT_EQ(process.threshoding(ramp)[20].find(255), 115 + 10);
    ramp *= 50;
    for (const int fidelity : {10, 99, 100}) {
        // The answer to slope 50 by a kernel cut at two sigma, whose positive half sums to 1.
        const double sigma = fidelity < 100 ? 3.5 : 1.0;
        double answer = 0.0;
        double sum = 0.0;
        for (int k = 1; k <= 2.0 * sigma; ++k) {
            const double weight = k * std::exp(-0.5 * k * k / (sigma * sigma));
            answer += 2.0 * 50.0 * k * weight;
            sum += weight;
        }
        PixelMatrix<int> work = ramp;
        process.setFidelity(fidelity);
        process.gradient(work);
        EXPECT_NEAR(work[20][100], answer / sum, 1.0) << fidelity;
    }
}

TEST(ExtractContour, EveryPictureGivesTheOutlineOfTheStepsOnMatrices)
{
    std::mt19937 generator(5);
    const auto between = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(generator);
    };
    int outlines = 0;
    for (int k = 0; k < 400; ++k) {
        // Flat, two values, few values, bytes, values beyond bytes; a disc or none; noise or none.
        const int highest = std::vector<int>{0, 1, 3, 255, 700}[static_cast<std::size_t>(k % 5)];
        PixelMatrix<float> image = plain(between(10, 160), between(10, 200));
        drawDisc(image, between(40, 110), between(40, 100), between(5, 60),
                 static_cast<float>(between(highest / 2, highest)));
        const auto light = static_cast<BackgroundValue>(between(0, 1));
        const int noise = between(0, highest) / between(1, 20);
        const float shift = k % 10 == 8 ? -2.5f : 0.0f;
        for (int i = 0; i < image.getSize1(); ++i) {
            for (int j = 0; j < image.getSize2(); ++j) {
                const float value = std::min(image[i][j] + static_cast<float>(between(0, noise)),
                                             static_cast<float>(highest)) +
                                    shift;
                image[i][j] =
                    light == LightBackground ? static_cast<float>(highest) - value : value;
            }
        }
        const bool binary = between(0, 3) == 0;
        const int fidelity = between(0, 1) == 0 ? 100 : between(10, 99);

        ExtractContour steps;
        steps.setFidelity(fidelity);
        PixelMatrix<int> work = steps.convertPixelMatrixToInt(image);
        if (light == LightBackground) {
            steps.invertPixelMatrix(work);
        }
        if (!binary) {
            PixelMatrix<int> marker = work;
            steps.makeMarkerLPE(marker);
            steps.gradient(work);
            LPETransform watershed;
            watershed.setMarker(marker);
            watershed.apply(work);
        }
        Curve<int> outline = steps.extractContour(work);
        std::vector<Point> expected;
        if (outline.getSize() > image.getSize1() / 5) {
            steps.curveResampling(outline);
            steps.curveResamplingInverse(outline);
            expected = stored(outline);
        }
        const std::vector<Point> contour = extract(image, light, binary, fidelity);
        outlines += contour.empty() ? 0 : 1;
        ASSERT_TRUE(std::equal(contour.begin(), contour.end(), expected.begin(), expected.end(),
                               [](Point a, Point b) { return a.x == b.x && a.y == b.y; }))
            << "picture " << k;
    }
    EXPECT_GT(outlines, 60);
}

TEST(ExtractContour, OfSeveralBrightRegionsTheLargestIsTheLeaf)
{
    PixelMatrix<float> image = background(300, 400);
    drawDisc(image, 110.0, 150.0, 60.0, 200.0f);
    drawDisc(image, 280.0, 150.0, 75.0, 200.0f);
    drawDisc(image, 30.0, 30.0, 8.0, 220.0f);
    const std::vector<Point> contour = extract(image);
    ASSERT_FALSE(contour.empty());
    for (const Point& point : contour) {
        EXPECT_NEAR(leaf::distance(point, {280.0, 150.0}), 75.0, 2.0);
    }
}

TEST(ExtractContour, MarkersAreTheErodedLeafAndAFrameOnePixelInside)
{
    PixelMatrix<float> image = background(90, 100);
    drawDisc(image, 50.0, 45.0, 30.0, 220.0f);
    ExtractContour process;
    PixelMatrix<int> marker = process.convertPixelMatrixToInt(image);
    process.makeMarkerLPE(marker);
    for (int i = 0; i < 90; ++i) {
        for (int j = 0; j < 100; ++j) {
            const auto inFrame = [](int gap) { return gap >= 1 && gap <= 4; };
            const bool frame = inFrame(i) || inFrame(89 - i) || inFrame(j) || inFrame(99 - j);
            // A square of 21 pixels around the pixel fits into the disc.
            const bool core = std::hypot(std::abs(j - 50) + 10, std::abs(i - 45) + 10) <= 30.0;
            EXPECT_EQ(marker[i][j], frame || core ? 255 : 0) << i << ", " << j;
        }
    }
}

TEST(ExtractContour, ImagesWithoutALeafGiveNoContour)
{
    // Markers of a leaf that reaches the frame join into one.
    PixelMatrix<float> touching = plain(200, 180, 77.0f);
    drawDisc(touching, 90.0, 200.0, 60.0, 250.0f);
    for (const auto& image : {touching, plain(200, 180, 77.0f), plain(9, 300), plain(300, 9),
                              plain(1, 1), plain(0, 0)}) {
        EXPECT_TRUE(extract(image).empty()) << image.getSize1() << " " << image.getSize2();
    }
    EXPECT_TRUE(extract(plain(200, 180), DarkBackground, true).empty());
}

TEST(ExtractContour, ARunReplacesWhatAnEarlierRunLeftUnlessAnImageCannotBeRead)
{
    const TemporaryFolder folder;
    const auto stack = leaf::emptyStack(3);
    const leaf::Outline outlines[] = {smallLeaf(), smallLeaf(40.0)};
    for (int k = 0; k < 3; ++k) {
        const std::string path = folder.file("leaf" + std::to_string(k) + ".tif");
        const auto image =
            k == 2 ? plain(60, 50, 9.0f)
                   : leaf::photograph(outlines[k], 410, 400 + 10 * k, 200.0f, 50.0f, 8.0f);
        ImageWriter().write(leaf::toImage(image), path, false);
        stack->getSlice(k).setImageSource(ImageSourceFile(path));
    }
    leaf::mark(*stack, "Petiole", 0, {{1.0, 2.0}, {3.0, 4.0}});
    ExtractContour process;
    process.setStack(*stack);
    process.setChannel(ImageColorContent::Gray);
    for (int run = 0; run < 3; ++run) {
        if (run < 2) {
            process.run();
        } else {
            std::filesystem::remove(folder.file("leaf1.tif"));
            EXPECT_THROW(process.run(), FileError);
        }
        EXPECT_EQ(stack->getNumModels(), 2);
        EXPECT_EQ(leaf::findItem(*stack, "Petiole", 0), nullptr);
        for (int k = 0; k < 2; ++k) {
            ASSERT_EQ(stack->getSlice(k).getNumItems(), 1);
            const ModelItem& item = *leaf::findItem(*stack, "Contour", k);
            EXPECT_NEAR(leaf::area(item) / outlines[k].area, 1.0, 0.02);
        }
        EXPECT_EQ(stack->getSlice(2).getNumItems(), 0);
    }
}
