#include "blade/contour/lpetransform.h"
#include "system/exception.h"

#include <queue>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>

namespace {

using Pixel = std::pair<int, int>;
using Image = std::map<Pixel, int>;

/// The watershed again, in the plainest form: images are maps from pixels to values, so that a
/// pixel outside is one that the map lacks.
class NaiveWatershed
{
public:
    /// What the gradient has become.
    const Image& levels() const { return level_; }

    Image run(const Image& markers, const Image& gradient)
    {
        level_ = gradient;
        for (const auto& [pixel, value] : markers) {
            level_[pixel] = std::clamp(level_[pixel], 0, 255);
            label_[pixel] = value > 0 ? -2 : 0;
        }
        int next = -1;
        for (const auto& [pixel, value] : label_) {
            if (value == -2) {
                fill(pixel, next += 2);
            }
            if (value != 0) {
                waiting_[level_[pixel]].push(pixel);
            }
        }
        flood();
        settleCollisions();
        return label_;
    }

private:
    /// The pixel and those around it, column by column.
    std::vector<Pixel> block(Pixel pixel) const
    {
        std::vector<Pixel> found;
        for (int j = pixel.second - 1; j <= pixel.second + 1; ++j) {
            for (int i = pixel.first - 1; i <= pixel.first + 1; ++i) {
                if (label_.count({i, j})) {
                    found.emplace_back(i, j);
                }
            }
        }
        return found;
    }

    void fill(Pixel pixel, int label)
    {
        label_[pixel] = label;
        for (const Pixel& neighbour : block(pixel)) {
            if (label_[neighbour] == -2) {
                fill(neighbour, label);
            }
        }
    }

    void flood()
    {
        for (current_ = 0; current_ < 256; ++current_) {
            serve(waiting_[current_], 1);
            if (!deferred_.empty()) {
                ++current_;
                serve(deferred_, 2);
                --current_;
            }
        }
    }

    void serve(std::queue<Pixel>& queue, int round)
    {
        while (!queue.empty()) {
            const Pixel pixel = queue.front();
            queue.pop();
            if (label_[pixel] == -1) {
                level_[pixel] = current_;
                continue;
            }
            ++label_[pixel];
            const auto [row, column] = pixel;
            for (const Pixel& neighbour : {Pixel(row - 1, column), Pixel(row, column - 1),
                                           Pixel(row, column + 1), Pixel(row + 1, column)}) {
                if (label_.count(neighbour)) {
                    visit(pixel, neighbour, round);
                }
            }
            if (round > 1) {
                level_[pixel] = current_;
            }
        }
    }

    void visit(Pixel pixel, Pixel neighbour, int round)
    {
        int& label = label_[neighbour];
        int& level = level_[neighbour];
        if (label == 0) {
            label = label_[pixel] - 1;
            if (level > current_) {
                waiting_[level].push(neighbour);
            } else {
                deferred_.push(neighbour);
                level = round + 256;
            }
        } else if (label % 2 == 1 && label != label_[pixel] - 1 && level != level_[pixel]) {
            label = -1;
            collisions_.push(neighbour);
        }
    }

    void settleCollisions()
    {
        for (bool settled = true; settled && !collisions_.empty();) {
            settled = false;
            for (std::size_t k = collisions_.size(); k > 0; --k) {
                const Pixel pixel = collisions_.front();
                collisions_.pop();
                const std::vector<Pixel> around = block(pixel);
                const auto found = std::find_if(around.begin(), around.end(),
                                                [&](const Pixel& p) { return label_[p] != -1; });
                if (found == around.end()) {
                    collisions_.push(pixel);
                } else {
                    label_[pixel] = label_[*found];
                    settled = true;
                }
            }
        }
    }

    Image label_;
    Image level_;
    std::map<int, std::queue<Pixel>> waiting_;
    std::queue<Pixel> deferred_;
    std::queue<Pixel> collisions_;
    int current_ = 0;
};

Image toMap(const PixelMatrix<int>& matrix)
{
    Image image;
    for (int i = 0; i < matrix.getSize1(); ++i) {
        for (int j = 0; j < matrix.getSize2(); ++j) {
            image[{i, j}] = matrix[i][j];
        }
    }
    return image;
}

PixelMatrix<int> constant(int rows, int columns, int value)
{
    PixelMatrix<int> matrix(rows, columns);
    matrix.fill(value);
    return matrix;
}

PixelMatrix<int> watershed(const PixelMatrix<int>& marker, const PixelMatrix<int>& gradient)
{
    LPETransform transform;
    PixelMatrix<int> copy = marker;
    PixelMatrix<int> labels = gradient;
    transform.setMarker(copy);
    transform.apply(labels);
    return labels;
}

/// The pixels of no label above 2, by the form for bytes.
Image beyondFirst(const PixelMatrix<int>& marker, const PixelMatrix<int>& gradient)
{
    BytePlane levels;
    levels.clamp(gradient);
    const BitPlane beyond = LPETransform().applyBeyondFirst(BitPlane::positive(marker), levels);
    Image image;
    for (int i = 0; i < beyond.rows(); ++i) {
        for (int j = 0; j < beyond.columns(); ++j) {
            image[{i, j}] = beyond(i, j);
        }
    }
    return image;
}

} // namespace

TEST(LPETransform, AgreesWithThePlainFormOnRandomImages)
{
    std::mt19937 generator(11);
    // Few levels make plateaus and collisions, many make none; values outside the levels count as
    // the nearest level.
    const std::pair<int, int> ranges[] = {{0, 0}, {0, 1}, {0, 4}, {0, 40}, {-60, 400}};
    int wide = 0;
    for (int k = 0; k < 600; ++k) {
        // Every twentieth image has its markers on the points of a grid: too many for short words.
        const bool grid = k % 20 == 0;
        const int rows = grid ? 40 : 1 + static_cast<int>(generator() % 24);
        const int columns = grid ? 40 : 1 + static_cast<int>(generator() % 24);
        const auto [lowest, highest] = ranges[k % 5];
        std::uniform_int_distribution<int> values(lowest, highest);
        PixelMatrix<int> marker(rows, columns);
        PixelMatrix<int> gradient(rows, columns);
        const unsigned density = 2 + generator() % (grid ? 3 : 60);
        for (int i = 0; i < rows; ++i) {
            for (int j = 0; j < columns; ++j) {
                const bool mayBe = !grid || (i % 2 == 0 && j % 2 == 0);
                marker[i][j] = mayBe && generator() % density == 0
                                   ? 1 + static_cast<int>(generator() % 7000)
                                   : -static_cast<int>(generator() % 3);
                gradient[i][j] = values(generator);
            }
        }
        marker[0][0] = 6000;
        NaiveWatershed naive;
        Image expected = naive.run(toMap(marker), toMap(gradient));
        LPETransform transform;
        transform.setMarker(marker);
        PixelMatrix<int> labels = gradient;
        transform.apply(labels);
        ASSERT_EQ(toMap(labels), expected) << "image " << k << ", " << rows << " x " << columns;
        const auto isLabelled = [](const auto& pixel) { return pixel.second > 2 * 62; };
        wide += std::any_of(expected.begin(), expected.end(), isLabelled);
        if (std::none_of(expected.begin(), expected.end(), isLabelled)) {
            for (auto& [pixel, label] : expected) {
                label = label > 2;
            }
            ASSERT_EQ(beyondFirst(marker, gradient), expected) << "image " << k;
        }
        // The gradient that the flooding has left is the marker of a second application.
        expected = NaiveWatershed().run(naive.levels(), toMap(gradient));
        labels = gradient;
        transform.apply(labels);
        ASSERT_EQ(toMap(labels), expected) << "image " << k << " again";
    }
    // Labels of up to 62 basins are kept in shorter words than others.
    EXPECT_GT(wide, 20);
}

TEST(LPETransform, WithoutAMarkerItSaysSoAndLabelsNothing)
{
    testing::internal::CaptureStdout();
    const PixelMatrix<int> labels = watershed(constant(4, 5, 0), constant(4, 5, 3));
    const std::string line = "fonction LPE : pas de pixel empiler lors de l'initialisation\n";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), line);
    EXPECT_EQ(toMap(labels), toMap(constant(4, 5, 0)));
}

TEST(LPETransform, AMarkerImageOfAnotherSizeIsRefused)
{
    EXPECT_THROW(watershed(constant(4, 5, 1), constant(5, 4, 1)), SizeError);
}
