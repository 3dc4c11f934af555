#include "blade/extractcontour.h"
#include "image/image0.h"
#include "image/imagesourcefile.h"
#include "image/imagewriter.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "system/exception.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

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

/// The contour of an image, as an item on slice 0 of the stack; null if there is none.
const ModelItem* extract(LMXStack& stack, const PixelMatrix<float>& image, ExtractContour& process)
{
    process.setStack(stack);
    process.createModels();
    process.process(image, 0);
    return leaf::findItem(stack, "Contour", 0);
}

PixelMatrix<float> negative(const PixelMatrix<float>& image)
{
    PixelMatrix<float> result = image;
    for (int i = 0; i < result.getSize1(); ++i) {
        for (int j = 0; j < result.getSize2(); ++j) {
            result[i][j] = 255.0f - std::trunc(result[i][j]);
        }
    }
    return result;
}

std::vector<Point> pointsOf(const ModelItem& item)
{
    std::vector<Point> points;
    for (int i = 0; i < item.getSize(); ++i) {
        const Vector<int>& vertex = item.getVertices()[i];
        points.push_back({static_cast<double>(vertex[0]), static_cast<double>(vertex[1])});
    }
    return points;
}

bool sameVertices(const ModelItem& a, const ModelItem& b)
{
    const std::vector<Point> left = pointsOf(a);
    const std::vector<Point> right = pointsOf(b);
    if (left.size() != right.size()) {
        return false;
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (leaf::distance(left[i], right[i]) != 0.0) {
            return false;
        }
    }
    return true;
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

TEST(ExtractContour, TheOutlineOfADrawnLeafFollowsItsMargin)
{
    for (const double degrees : {0.0, 25.0, 90.0, 137.0, 250.0}) {
        const leaf::Outline outline = smallLeaf(degrees);
        const auto image = leaf::photograph(outline, 410, 400, 190.0f, 40.0f, 12.0f);
        const auto stack = leaf::emptyStack(1);
        ExtractContour process;
        const ModelItem* item = extract(*stack, image, process);
        ASSERT_NE(item, nullptr);
        EXPECT_NEAR(leaf::area(*item) / outline.area, 1.0, 0.02) << degrees;
        for (const Point& point : pointsOf(*item)) {
            EXPECT_LT(leaf::distanceToOutline(outline, point), 2.5) << degrees;
        }
        EXPECT_GT(item->getSize(), 150);
        EXPECT_EQ(stack->getLastSegmentedSlice(), "leaf0");
    }
}

TEST(ExtractContour, ALightBackgroundIsTheNegativeOfADarkOne)
{
    const auto image = leaf::photograph(smallLeaf(10.0), 410, 400, 180.0f, 60.0f, 15.0f);
    const auto stack = leaf::emptyStack(1);
    const auto other = leaf::emptyStack(1);
    ExtractContour dark;
    ExtractContour light;
    light.setBackground(LightBackground);
    const ModelItem* fromDark = extract(*stack, image, dark);
    const ModelItem* fromLight = extract(*other, negative(image), light);
    ASSERT_NE(fromDark, nullptr);
    ASSERT_NE(fromLight, nullptr);
    EXPECT_TRUE(sameVertices(*fromDark, *fromLight));
}

TEST(ExtractContour, ABinaryImageGivesItsBrightPartToThePixel)
{
    PixelMatrix<float> image(120, 130);
    image.fill(0.0f);
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
    const auto image = leaf::photograph(smallLeaf(30.0), 410, 400, 255.0f, 0.0f);
    ExtractContour process;
    PixelMatrix<int> work = process.convertPixelMatrixToInt(image);
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
    Curve<int> shortOutline(2, 150, 0, 0, false);
    for (int k = 0; k < 150; ++k) {
        shortOutline[k][0] = k < 75 ? 3 * k : 3 * (149 - k);
        shortOutline[k][1] = k < 75 ? 0 : 9;
    }
    Curve<int> kept = shortOutline;
    process.setFidelity(50);
    process.curveResampling(kept);
    EXPECT_EQ(kept.getSize(), 150);
    process.curveResamplingInverse(kept);
    EXPECT_EQ(kept.getSize(), 67);
}

TEST(ExtractContour, OfSeveralBrightRegionsTheLargestIsTheLeaf)
{
    PixelMatrix<float> image = background(300, 400);
    drawDisc(image, 110.0, 150.0, 60.0, 200.0f);
    drawDisc(image, 280.0, 150.0, 75.0, 200.0f);
    drawDisc(image, 30.0, 30.0, 8.0, 220.0f);
    const auto stack = leaf::emptyStack(1);
    ExtractContour process;
    const ModelItem* item = extract(*stack, image, process);
    ASSERT_NE(item, nullptr);
    for (const Point& point : pointsOf(*item)) {
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
            const bool frame = (i >= 1 && i <= 4) || (i >= 85 && i <= 88) || (j >= 1 && j <= 4) ||
                               (j >= 95 && j <= 98);
            // A square of 21 pixels around the pixel fits into the disc.
            const double dx = std::abs(j - 50) + 10;
            const double dy = std::abs(i - 45) + 10;
            const bool core = std::hypot(dx, dy) <= 30.0;
            EXPECT_EQ(marker[i][j], frame || core ? 255 : 0) << i << ", " << j;
        }
    }
}

TEST(ExtractContour, ImagesWithoutALeafGiveNoContour)
{
    ExtractContour process;
    const auto none = [&](const PixelMatrix<float>& image) {
        const auto stack = leaf::emptyStack(1);
        return extract(*stack, image, process) == nullptr;
    };
    PixelMatrix<float> blank(200, 180);
    blank.fill(77.0f);
    EXPECT_TRUE(none(blank));
    // Markers of a leaf that reaches the frame join into one.
    PixelMatrix<float> touching = blank;
    drawDisc(touching, 90.0, 200.0, 60.0, 250.0f);
    EXPECT_TRUE(none(touching));
    for (const auto& [rows, columns] :
         {std::pair(9, 300), std::pair(300, 9), std::pair(1, 1), std::pair(0, 0)}) {
        PixelMatrix<float> tiny(rows, columns);
        tiny.fill(0.0f);
        EXPECT_TRUE(none(tiny));
    }
    process.setBinaryImage(true);
    PixelMatrix<float> black(200, 180);
    black.fill(0.0f);
    EXPECT_TRUE(none(black));
}

TEST(ExtractContour, ARunWorksOnTiffFilesAndReplacesWhatAnEarlierRunLeft)
{
    const TemporaryFolder folder;
    const auto stack = leaf::emptyStack(3);
    for (int k = 0; k < 2; ++k) {
        const auto image =
            leaf::photograph(smallLeaf(40.0 * k), 410, 400 + 10 * k, 200.0f, 50.0f, 8.0f);
        const std::string path = folder.file("leaf" + std::to_string(k) + ".tif");
        ImageWriter().write(leaf::toImage(image), path, false);
        stack->getSlice(k).setImageSource(ImageSourceFile(path));
    }
    PixelMatrix<float> blank(60, 50);
    blank.fill(9.0f);
    ImageWriter().write(leaf::toImage(blank), folder.file("blank.tif"), false);
    stack->getSlice(2).setImageSource(ImageSourceFile(folder.file("blank.tif")));
    leaf::addItem(*stack, "Petiole", PRIMITIVE_POLYPOINT, 0, {{1.0, 2.0}, {3.0, 4.0}});

    for (int run = 0; run < 2; ++run) {
        ExtractContour process;
        process.setStack(*stack);
        process.setChannel(ImageColorContent::Gray);
        process.run();
        EXPECT_EQ(stack->getNumModels(), 2);
        EXPECT_EQ(leaf::findItem(*stack, "Petiole", 0), nullptr);
        for (int k = 0; k < 2; ++k) {
            const leaf::Outline outline = smallLeaf(40.0 * k);
            ASSERT_EQ(stack->getSlice(k).getNumItems(), 1);
            const ModelItem& item = stack->getSlice(k).getItem(0);
            EXPECT_EQ(item.getModel()->getName(), "Contour");
            EXPECT_NEAR(leaf::area(item) / outline.area, 1.0, 0.02);
        }
        EXPECT_EQ(stack->getSlice(2).getNumItems(), 0);
    }
}

TEST(ExtractContour, AnUnreadableImageLeavesTheContoursOfAnEarlierRun)
{
    const TemporaryFolder folder;
    const auto stack = leaf::stackOf({smallLeaf()});
    const std::string path = folder.file("leaf.tif");
    ImageWriter().write(leaf::toImage(background(40, 40)), path, false);
    stack->getSlice(0).setImageSource(ImageSourceFile(path));
    std::filesystem::remove(path);
    ExtractContour process;
    process.setStack(*stack);
    EXPECT_THROW(process.run(), FileError);
    EXPECT_NE(leaf::findItem(*stack, "Contour", 0), nullptr);
}
