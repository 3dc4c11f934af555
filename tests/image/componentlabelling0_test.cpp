#include "image/componentlabelling0.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <vector>

namespace {

VoxelMatrix<int> randomVolume(int rows, int columns, int planes, std::mt19937& random)
{
    const unsigned int percent = 20 + random() % 70;
    VoxelMatrix<int> volume(rows, columns, planes);
    for (int k = 0; k < planes; ++k) {
        for (int i = 0; i < rows; ++i) {
            for (int j = 0; j < columns; ++j) {
                volume(i, j, k) = random() % 100 < percent ? 1 + static_cast<int>(random() % 9) : 0;
            }
        }
    }
    return volume;
}

/// Floods one region after the other, in the order of their first elements.
VoxelMatrix<int> flooded(const VoxelMatrix<int>& volume, int& regions)
{
    VoxelMatrix<int> labels(volume);
    labels.setZeros();
    regions = 0;
    for (int n = 0; n < volume.getSize1() * volume.getSize2() * volume.getSize3(); ++n) {
        const int j = n % volume.getSize2();
        const int i = n / volume.getSize2() % volume.getSize1();
        const int k = n / volume.getSize2() / volume.getSize1();
        if (volume(i, j, k) == 0 || labels(i, j, k) != 0) {
            continue;
        }
        labels(i, j, k) = ++regions;
        std::vector<Vector<int>> waiting = {vectorOf<int>({i, j, k})};
        while (!waiting.empty()) {
            const Vector<int> p = waiting.back();
            waiting.pop_back();
            for (int side = 0; side < 6; ++side) {
                Vector<int> next(p);
                next[side / 2] += side % 2 * 2 - 1;
                if (volume.contains(next) && volume(next) != 0 && labels(next) == 0) {
                    labels(next) = regions;
                    waiting.push_back(next);
                }
            }
        }
    }
    return labels;
}

} // namespace

TEST(ComponentLabelling0, RegionsAreNumberedInTheOrderOfTheirFirstPixels)
{
    std::mt19937 random(21);
    for (int round = 0; round < 400; ++round) {
        const int side = round < 380 ? 12 : 70;
        const VoxelMatrix<int> volume = randomVolume(1 + random() % side, 1 + random() % side,
                                                     round % 2 == 0 ? 1 : 1 + random() % 6, random);
        int regions = 0;
        const VoxelMatrix<int> expected = flooded(volume, regions);
        ComponentLabelling0<int> labelling;
        VoxelMatrix<int> labels(volume);
        labelling.apply(labels);
        ASSERT_EQ(labels, expected);
        EXPECT_EQ(labelling.getNumLabels(), regions);
        if (volume.getSize3() == 1) {
            PixelMatrix<int> plane(volume[0]);
            labelling.apply(plane);
            ASSERT_EQ(plane, expected[0]);
            EXPECT_EQ(labelling.getNumLabels(), regions);
        }
    }
}

TEST(ComponentLabelling0, ARegionOfManyBranchesIsOne)
{
    // Each column starts as a label of its own; the last row joins them from right to left.
    PixelMatrix<int> comb(50, 99);
    for (int i = 0; i < 50; ++i) {
        for (int j = 0; j < 99; ++j) {
            comb(i, j) = i == 49 || (j % 2 == 0 && i >= j / 2);
        }
    }
    ComponentLabelling0<int> labelling;
    labelling.apply(comb);
    EXPECT_EQ(labelling.getNumLabels(), 1);
    EXPECT_EQ(comb.range(), vectorOf<int>({0, 1}));
}

TEST(ComponentLabelling0, EachElementTypeHoldsTheLabelsItCan)
{
    const auto checkerboard = [](auto& image) {
        for (int i = 0; i < image.getSize1(); ++i) {
            for (int j = 0; j < image.getSize2(); ++j) {
                image(i, j) = (i + j) % 2 == 0;
            }
        }
    };
    PixelMatrix<unsigned char> bytes(17, 30);
    checkerboard(bytes);
    ComponentLabelling0<unsigned char> narrow;
    narrow.apply(bytes);
    EXPECT_EQ(bytes.range()[1], 255);
    EXPECT_EQ(bytes(16, 28), 255);
    PixelMatrix<unsigned char> more(16, 32);
    checkerboard(more);
    const PixelMatrix<unsigned char> before(more);
    expectError<RangeError>([&] { narrow.apply(more); }, "void ComponentLabelling<T>::apply(...)",
                            "There are more regions than the elements of the image can number");
    EXPECT_EQ(more, before);
    PixelMatrix<float> reals(40, 40);
    checkerboard(reals);
    ComponentLabelling0<float> wide;
    wide.apply(reals);
    EXPECT_EQ(wide.getNumLabels(), 800);
    EXPECT_EQ(reals(39, 39), 800);
}

TEST(ComponentLabelling0, AnImageWithoutForegroundHasNoLabels)
{
    ComponentLabelling0<int> labelling;
    PixelMatrix<int> image(5, 6);
    image.setZeros();
    labelling.apply(image);
    EXPECT_EQ(labelling.getNumLabels(), 0);
    EXPECT_EQ(image.range(), vectorOf<int>({0, 0}));
    PixelMatrix<int> empty;
    labelling.apply(empty);
    EXPECT_EQ(labelling.getNumLabels(), 0);
}
