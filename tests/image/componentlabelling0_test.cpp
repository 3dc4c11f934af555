#include "image/regions/componentlabelling0.h"
#include "support/errors.h"
#include "support/images.h"

#include <vector>

namespace {

VoxelMatrix<int> randomVolume(int rows, int columns, int planes, std::mt19937& random)
{
    const int percent = randomInt(20, 89, random);
    return volumeFrom<int>(rows, columns, planes, [&](int, int, int) {
        return randomInt(0, 99, random) < percent ? randomInt(1, 9, random) : 0;
    });
}

/// Pixels by turns foreground and background.
template <class T>
PixelMatrix<T> checkerboard(int rows, int columns)
{
    return imageFrom<T>(rows, columns, [](int i, int j) { return (i + j) % 2 == 0; });
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
        const VoxelMatrix<int> volume =
            randomVolume(randomInt(1, side, random), randomInt(1, side, random),
                         round % 2 == 0 ? 1 : randomInt(1, 6, random), random);
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

TEST(ComponentLabelling0, ARegionOfManyBranchesIsOneAndNothingIsNone)
{
    // Each column starts as a label of its own; the last row joins them from right to left.
    PixelMatrix<int> comb =
        imageFrom<int>(50, 99, [](int i, int j) { return i == 49 || (j % 2 == 0 && i >= j / 2); });
    ComponentLabelling0<int> labelling;
    labelling.apply(comb);
    EXPECT_EQ(labelling.getNumLabels(), 1);
    EXPECT_EQ(comb.range(), vectorOf<int>({0, 1}));
    PixelMatrix<int> empty;
    labelling.apply(empty);
    EXPECT_EQ(labelling.getNumLabels(), 0);
}

TEST(ComponentLabelling0, EachElementTypeHoldsTheLabelsItCan)
{
    PixelMatrix<unsigned char> bytes = checkerboard<unsigned char>(17, 30);
    ComponentLabelling0<unsigned char> narrow;
    narrow.apply(bytes);
    EXPECT_EQ(bytes.range()[1], 255);
    EXPECT_EQ(bytes(16, 28), 255);
    PixelMatrix<unsigned char> more = checkerboard<unsigned char>(16, 32);
    EXPECT_RAISES(RangeError, "void ComponentLabelling<T>::apply(...)",
                  "There are more regions than the elements of the image can number",
                  narrow.apply(more));
    EXPECT_EQ(more, checkerboard<unsigned char>(16, 32));
    PixelMatrix<float> reals = checkerboard<float>(40, 40);
    ComponentLabelling0<float> wide;
    wide.apply(reals);
    EXPECT_EQ(wide.getNumLabels(), 800);
    EXPECT_EQ(reals(39, 39), 800);
}

TEST(ComponentLabelling0, LabelsAreGivenWithoutARun)
{
    // A fresh table held one entry, and the first label was written behind it.
    ComponentLabelling0<int> labelling;
    for (int label = 1; label < 40; ++label) {
        EXPECT_EQ(labelling.newLabel(), label);
    }
    labelling.equivLabel(7, 9, 3);
    PixelMatrix<int> image(checkerboard<int>(2, 2));
    labelling.apply(image);
    EXPECT_EQ(labelling.getNumLabels(), 2);
}
