#include "image/regions/otsuthresholding0.h"
#include "shape/curves/curve.h"
#include "support/errors.h"
#include "support/images.h"
#include "support/listener.h"

#include <cstdlib>
#include <set>
#include <utility>

namespace {

using Pixels = std::set<std::pair<int, int>>;

/// An image of 255 where the text has a "#".
PixelMatrix<int> imageOf(const std::vector<std::string>& rows)
{
    return imageFrom<int>(
        static_cast<int>(rows.size()), static_cast<int>(rows[0].size()),
        [&](std::size_t i, std::size_t j) { return rows[i][j] == '#' ? 255 : 0; });
}

/// A mask of some side lengths up to `side`.
PixelMatrix<int> randomMask(int side, int percent, std::mt19937& random)
{
    const int rows = randomInt(1, side, random);
    return imageFrom<int>(rows, randomInt(1, side, random),
                          [&](int, int) { return randomInt(0, 99, random) < percent ? 255 : 0; });
}

bool isInside(const PixelMatrix<int>& mask, int row, int column)
{
    return mask.contains(row, column) && mask(row, column) == 255;
}

/// The first foreground pixel of the last row that has one.
std::pair<int, int> lowestPixel(const PixelMatrix<int>& mask)
{
    for (int i = mask.getSize1() - 1; i >= 0; --i) {
        const int j = mask[i].find(255);
        if (j >= 0) {
            return {i, j};
        }
    }
    return {-1, -1};
}

Curve<int> trace(const PixelMatrix<int>& mask, std::pair<int, int> start, int tolerance = 0)
{
    Curve<int> curve;
    Thresholding0<int>().extractCurve(curve, start.first, start.second, mask, tolerance);
    return curve;
}

std::vector<std::pair<int, int>> verticesOf(const Curve<int>& curve)
{
    std::vector<std::pair<int, int>> vertices;
    for (int i = 0; i < curve.getSize(); ++i) {
        vertices.emplace_back(curve[i][0], curve[i][1]);
    }
    return vertices;
}

/// All pixels on the closed curve, whose edges run along rows, columns or diagonals.
Pixels pixelsOn(const Curve<int>& curve)
{
    Pixels pixels;
    const int n = curve.getSize();
    for (int v = 0; v < n; ++v) {
        const Vector<int> step = curve[(v + 1) % n] - curve[v];
        const int length = std::max(std::abs(step[0]), std::abs(step[1]));
        EXPECT_TRUE(step[0] == 0 || step[1] == 0 || std::abs(step[0]) == std::abs(step[1]));
        for (int i = 0; i <= length; ++i) {
            const int t = std::max(length, 1);
            pixels.emplace(curve[v][0] + step[0] * i / t, curve[v][1] + step[1] * i / t);
        }
    }
    return pixels;
}

/// The pixels of the region of `start` that touch the background around it with one of their four
/// sides, the region hanging together over corners too and its holes not counting.
Pixels outerEdge(const PixelMatrix<int>& mask, std::pair<int, int> start)
{
    const auto flood = [](std::pair<int, int> seed, bool corners, auto contains) {
        Pixels seen = {seed};
        std::vector<std::pair<int, int>> waiting = {seed};
        while (!waiting.empty()) {
            const auto [row, column] = waiting.back();
            waiting.pop_back();
            for (int dr = -1; dr <= 1; ++dr) {
                for (int dc = -1; dc <= 1; ++dc) {
                    const std::pair<int, int> next(row + dr, column + dc);
                    if ((corners || dr == 0 || dc == 0) && contains(next) &&
                        seen.insert(next).second) {
                        waiting.push_back(next);
                    }
                }
            }
        }
        return seen;
    };
    const Pixels region =
        flood(start, true, [&](auto p) { return isInside(mask, p.first, p.second); });
    const Pixels outside = flood({-1, -1}, false, [&](auto p) {
        return p.first >= -1 && p.second >= -1 && p.first <= mask.getSize1() &&
               p.second <= mask.getSize2() && region.count(p) == 0;
    });
    Pixels edge;
    for (const auto& [row, column] : region) {
        const std::pair<int, int> sides[] = {
            {row - 1, column}, {row + 1, column}, {row, column - 1}, {row, column + 1}};
        for (const auto& side : sides) {
            if (outside.count(side) != 0) {
                edge.emplace(row, column);
            }
        }
    }
    return edge;
}

/// Whether the trace can come back to its start, below which there is nothing, before it is round:
/// then the pixels beside and above it do not touch one another.
bool joinsTwoParts(const PixelMatrix<int>& mask, std::pair<int, int> start)
{
    const auto [row, column] = start;
    return isInside(mask, row - 1, column - 1) && !isInside(mask, row - 1, column) &&
           (isInside(mask, row - 1, column + 1) || isInside(mask, row, column + 1));
}

/// Otsu's criterion from the definition, in all its slowness.
double betweenClassVariance(const Vector<unsigned int>& histogram, int threshold)
{
    double n[2] = {0, 0};
    double sum[2] = {0, 0};
    for (int k = 0; k < histogram.getSize(); ++k) {
        n[k >= threshold] += histogram[k];
        sum[k >= threshold] += 1.0 * k * histogram[k];
    }
    if (n[0] == 0 || n[1] == 0 || threshold == histogram.getSize() - 1) {
        return 0;
    }
    const double distance = sum[0] / n[0] - sum[1] / n[1];
    const double total = n[0] + n[1];
    return distance * distance * (n[0] / total) * (n[1] / total);
}

} // namespace

TEST(Thresholding0, APixelAtTheThresholdLiesAbove)
{
    PixelMatrix<float> image(matrixOf<float>({{1.9F, 2}, {2.1F, -5}}));
    PixelMatrix<float> inverse(image);
    Thresholding0<float> threshold;
    Listener listener;
    threshold.setThreshold(2);
    threshold.addMonitor(listener);
    threshold.apply(image);
    EXPECT_EQ(image, matrixOf<float>({{0, 255}, {255, 0}}));
    EXPECT_EQ(listener.log, "started ;1/2;2/2;finished ;");
    threshold.setForegroundIsAbove(false);
    threshold.setBackground(7);
    threshold.apply(inverse);
    EXPECT_EQ(inverse, matrixOf<float>({{255, 7}, {7, 255}}));
}

TEST(Thresholding0, LevelSetsAreMadeOfEqualElements)
{
    VoxelMatrix<int> volume(1, 3, 2);
    volume[0] = PixelMatrix<int>(matrixOf<int>({{3, 4, 5}}));
    volume[1] = PixelMatrix<int>(matrixOf<int>({{4, 4, 0}}));
    Thresholding0<int>().levelSetMask(volume, 4);
    EXPECT_EQ(volume[0], matrixOf<int>({{0, 255, 0}}));
    EXPECT_EQ(volume[1], matrixOf<int>({{255, 255, 0}}));
}

TEST(Thresholding0, ContoursDropPixelsInsideAFullBlock)
{
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        const PixelMatrix<int> mask = randomMask(12, 85, random);
        PixelMatrix<int> thinned(mask);
        Thresholding0<int>().contours(thinned);
        EXPECT_EQ(thinned, imageFrom<int>(mask.getSize1(), mask.getSize2(), [&](int i, int j) {
                      int foreground = 0;
                      for (int k = 0; k < 9; ++k) {
                          foreground += isInside(mask, i + k / 3 - 1, j + k % 3 - 1);
                      }
                      return foreground == 9 ? 0 : mask(i, j);
                  }));
    }
}

TEST(Thresholding0, SmallRegionsAreTracedVertexByVertex)
{
    using Vertices = std::vector<std::pair<int, int>>;
    EXPECT_EQ(verticesOf(trace(imageOf({"...", ".#.", "..."}), {1, 1})), (Vertices{{1, 1}}));
    EXPECT_EQ(verticesOf(trace(imageOf({"###", "#.#", "###"}), {2, 0})),
              (Vertices{{2, 0}, {2, 2}, {0, 2}, {0, 0}}));
    EXPECT_EQ(verticesOf(trace(imageOf({"####"}), {0, 0})), (Vertices{{0, 0}, {0, 3}}));
    EXPECT_EQ(verticesOf(trace(imageOf({".#.", "#.#", ".#."}), {2, 1})),
              (Vertices{{2, 1}, {1, 2}, {0, 1}, {1, 0}}));
}

TEST(Thresholding0, ATraceRunsAlongTheOuterEdgeAndAllOfItUnlessItsStartIsANarrowPass)
{
    std::mt19937 random(5);
    for (int round = 0; round < 3000; ++round) {
        PixelMatrix<int> mask = randomMask(14, randomInt(30, 89, random), random);
        Thresholding0<int>().contours(mask);
        const std::pair<int, int> start = lowestPixel(mask);
        if (start.first < 0) {
            continue;
        }
        const Curve<int> curve = trace(mask, start);
        ASSERT_TRUE(curve.isClosed());
        ASSERT_EQ(verticesOf(curve)[0], start);
        const Pixels pixels = pixelsOn(curve);
        const Pixels edge = outerEdge(mask, start);
        if (joinsTwoParts(mask, start)) {
            EXPECT_TRUE(std::includes(edge.begin(), edge.end(), pixels.begin(), pixels.end()));
        } else {
            EXPECT_EQ(pixels, edge);
        }
    }
}

TEST(Thresholding0, AToleranceCutsFlatCornersAndATraceThatNeverMeetsItsStartEnds)
{
    const PixelMatrix<int> octagon =
        imageOf({"..####..", ".#....#.", "#......#", "#......#", ".#....#.", "..####.."});
    EXPECT_EQ(trace(octagon, {5, 2}).getSize(), 8);
    EXPECT_LT(trace(octagon, {5, 2}, 4).getSize(), 8);
    const PixelMatrix<int> mask = imageOf({".....", ".###.", ".#.#.", ".###.", "....."});
    EXPECT_LE(trace(mask, {0, 0}).getSize(), 20);
    EXPECT_LE(trace(mask, {2, 2}).getSize(), 20);
    EXPECT_THROW(trace(mask, {5, 0}), ValueError);
    EXPECT_THROW(trace(mask, {0, -1}), ValueError);
    EXPECT_EQ(trace(imageOf({"..", ".."}), {0, 0}).getSize(), 1);
}

TEST(OtsuThresholding0, CriterionIsTheVarianceBetweenTheClasses)
{
    std::mt19937 random(8);
    for (int bins : {1, 2, 3, 4, 30, 256}) {
        Vector<unsigned int> histogram(bins);
        for (int k = 0; k < bins; ++k) {
            histogram[k] = random() % 3 == 0 ? 0 : random() % 100000000;
        }
        const Vector<double> criterion = OtsuThresholding0<int>().computeCriterion(histogram);
        ASSERT_EQ(criterion.getSize(), bins);
        for (int t = 0; t < bins; ++t) {
            const double expected = t == 0 ? 0 : betweenClassVariance(histogram, t);
            EXPECT_NEAR(criterion[t], expected, 1e-9 * expected) << bins << " bins, " << t;
        }
    }
}

TEST(OtsuThresholding0, TwoPeaksAreToldApartAndBinsTurnedBackIntoValues)
{
    PixelMatrix<int> image(matrixOf<int>({{10, 12, 200}, {11, 201, 199}}));
    OtsuThresholding0<int> otsu;
    EXPECT_EQ(otsu.computeThreshold(image), 13) << "the first of all that separate";
    otsu.apply(image);
    EXPECT_EQ(otsu.getThreshold(), 13);
    EXPECT_EQ(image, matrixOf<int>({{0, 0, 255}, {0, 255, 255}}));
    // An image of one value lies above.
    image.fill(90);
    EXPECT_EQ(otsu.computeThreshold(image), 0);
    otsu.apply(image);
    EXPECT_EQ(image.range(), vectorOf<int>({255, 255}));
    VoxelMatrix<float> volume =
        volumeFrom<float>(1, 2, 2, [](int, int j, int k) { return 1.9F * k - 1 + 0.1F * j; });
    OtsuThresholding0<float> real;
    real.setBins(-1, 0.25F, 9);
    EXPECT_EQ(real.computeThreshold(volume), -0.75F);
    real.apply(volume);
    EXPECT_EQ(volume[0].range(), vectorOf<float>({0, 0}));
    EXPECT_EQ(volume[1].range(), vectorOf<float>({255, 255}));
}
