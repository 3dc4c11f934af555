// What slices and stacks do with pixels, on TIFF files written for the purpose.

#include "stack/stacktovolume.h"
#include "support/stacks.h"
#include "support/temporaryfolder.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <tuple>

namespace {

// Never 0: a black pixel is grey, whatever colour the others have.
unsigned char sample(int x, int y, int c, int seed)
{
    return static_cast<unsigned char>(1 + (x * 7 + y * 13 + c * 29 + seed * 101) % 251);
}

/// 8-bit grey for one channel, 24 bits for three; `only` keeps a single channel of three.
Image0 picture(int width, int height, int channels, int seed, int only = -1)
{
    Image0 image(width, height, 8 * channels);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int c = 0; c < channels; ++c) {
                image.getPixels()[y][x * channels + c] =
                    only < 0 || only == c ? sample(x, y, c, seed) : 0;
            }
        }
    }
    return image;
}

class StackVolume : public testing::Test
{
protected:
    StackSlice& add(const Image0& image)
    {
        const std::string path = folder.file(std::to_string(stack.getNumSlices()) + ".tif");
        ImageWriter().write(image, path, false);
        return stacks::addSlice(stack, "", ImageSourceFile(path));
    }

    static void setAspect(StackSlice& slice, float ratio)
    {
        PixelCalibration calibration = slice.getPixelCalibration();
        calibration.setAspectRatio(ratio);
        slice.setPixelCalibration(calibration);
    }

    TemporaryFolder folder;
    Stack stack;
};

} // namespace

TEST_F(StackVolume, SizeIsCorrectedTowardsTheSmallerSide)
{
    StackSlice& slice = add(picture(100, 100, 1, 0));
    for (const auto& [ratio, width, height] :
         {std::tuple(2.0f, 50, 100), std::tuple(0.5f, 100, 50), std::tuple(1.0f, 100, 100),
          std::tuple(3.0f, 33, 100), std::tuple(0.666f, 100, 67)}) {
        setAspect(slice, ratio);
        EXPECT_EQ(slice.width(), width) << ratio;
        EXPECT_EQ(slice.height(), height) << ratio;
        EXPECT_EQ(slice.boundingBox().getVertex2(), vectorOf<int>({width - 1, height - 1}));
        Image0 image;
        slice.load(image);
        EXPECT_TRUE(image.getWidth() == width && image.getHeight() == height) << ratio;
    }
    setAspect(slice, 0.0f);
    EXPECT_THROW(slice.width(), ValueError);
    setAspect(slice, std::numeric_limits<float>::quiet_NaN());
    EXPECT_THROW(slice.height(), ValueError);
    EXPECT_THROW(StackSlice().width(), ProgramError);
}

TEST_F(StackVolume, RequestedSizesShrinkToTheProportionsOfTheSlice)
{
    const StackSlice& slice = add(picture(90, 60, 1, 0));
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round) {
        const unsigned width = 1 + random() % 300000;
        const unsigned height = 1 + random() % 300000;
        unsigned w = width;
        unsigned h = height;
        slice.sizeForSize(w, h);
        EXPECT_TRUE(w == width || h == height);
        EXPECT_TRUE(w <= width && h <= height);
        EXPECT_NEAR(2.0 * w, 3.0 * h, 3.0);
    }
}

TEST_F(StackVolume, ContentIsWhatAllImagesShare)
{
    EXPECT_EQ(stack.colorContent(), ImageColorContent::Unknown);
    for (const int seed : {1, 2}) {
        add(picture(7 + seed, 6, 3, seed, 1));
        EXPECT_EQ(stack.colorContent(), ImageColorContent::Green);
    }
    add(picture(8, 6, 1, 3));
    EXPECT_EQ(stack.colorContent(), ImageColorContent::Mixed);
    stack.deleteSlice(0);
    stack.deleteSlice(0);
    EXPECT_EQ(stack.colorContent(), ImageColorContent::Gray);
    stack.addSlice(*new StackSlice);
    EXPECT_THROW(stack.colorContent(), ProgramError);
}

TEST_F(StackVolume, PlanesHoldTheChosenChannelOfEachSlice)
{
    for (int i = 0; i < 3; ++i) {
        add(picture(12, 9, 3, i));
    }
    PixelCalibration calibration = stack.getDefaultPixelCalibration();
    calibration.setPixelWidth(2.0f);
    calibration.setPixelHeight(3.0f);
    stack.setDefaultPixelCalibration(calibration);
    stack.setDefaultSliceSpacing(4.0f);
    for (int channel = 0; channel <= 3; ++channel) {
        VoxelMatrix<float> volume;
        stackToVolume(stack, volume, channel);
        const VoxelMatrix<double> twin =
            stack.toVoxelMatrix<double>(static_cast<ImageColorContent>(channel));
        ASSERT_TRUE(volume.getSize1() == 9 && volume.getSize2() == 12 && volume.getSize3() == 3);
        ASSERT_EQ(twin.getSize(), volume.getSize());
        for (int n = 0; n < 3 * 9 * 12; ++n) {
            const int k = n / 108;
            const int y = n / 12 % 9;
            const int x = n % 12;
            const int grey = (sample(x, y, 0, k) + sample(x, y, 1, k) + sample(x, y, 2, k)) / 3;
            const int expected = channel == 0 ? grey : sample(x, y, channel - 1, k);
            ASSERT_EQ(volume(y, x, k), static_cast<float>(expected));
            ASSERT_EQ(twin(y, x, k), static_cast<double>(expected));
        }
        EXPECT_EQ(twin.getVoxelCalibration().getVoxelWidth(), 2.0f);
        EXPECT_EQ(twin.getVoxelCalibration().getVoxelHeight(), 3.0f);
        EXPECT_EQ(twin.getVoxelCalibration().getVoxelDepth(), 4.0f);
        EXPECT_EQ(twin.getVoxelCalibration().getLengthUnit().getScale(), -6);
    }
    const VoxelMatrix<int> none = stack.toVoxelMatrix<int>(ImageColorContent::Mixed);
    EXPECT_EQ(none.max()(3, 3), 0);
}

TEST_F(StackVolume, PhotographsOfDifferentSizeKeepTheirOwn)
{
    VoxelMatrix<float> volume(2, 2, 2);
    stackToVolume(stack, volume, 0);
    EXPECT_EQ(volume.getSize3(), 0);
    add(picture(12, 9, 1, 0));
    add(picture(20, 15, 1, 1));
    stackToVolume(stack, volume, 0);
    ASSERT_EQ(volume.getSize3(), 2);
    EXPECT_EQ(volume[1].getSize1(), 15);
    EXPECT_EQ(volume[1].getSize2(), 20);
    EXPECT_EQ(volume[1](14, 19), static_cast<float>(sample(19, 14, 0, 1)));
    EXPECT_EQ(volume[0](8, 11), static_cast<float>(sample(11, 8, 0, 0)));
    EXPECT_THROW(stack.toVoxelMatrix<float>(ImageColorContent::Gray), SizeError);
}

TEST_F(StackVolume, RegularStacksHaveOneSizeOneSpacingAndNoRegistration)
{
    EXPECT_FALSE(stack.isRegular());
    add(picture(12, 9, 1, 0)).setRegistration({5, 5, 5.0f});
    EXPECT_TRUE(stack.isRegular()) << "the first slice has nothing before it";
    add(picture(12, 9, 1, 0)).setRelativePosition(2.0f);
    EXPECT_TRUE(stack.isRegular());
    StackSlice& third = add(picture(12, 9, 1, 0));
    EXPECT_FALSE(stack.isRegular());
    third.setAbsolutePosition(4.0f);
    EXPECT_TRUE(stack.isRegular());
    third.setRegistration({0, 0, 1.0f});
    EXPECT_FALSE(stack.isRegular());
    third.setRegistration({});
    setAspect(third, 2.0f);
    EXPECT_FALSE(stack.isRegular());
}

TEST_F(StackVolume, MasksHoldTheNumberOfTheLastModelOnEachPixel)
{
    add(picture(12, 9, 1, 0));
    add(picture(12, 9, 1, 0));
    std::mt19937 random(7);
    std::map<std::tuple<int, int, int>, int> expected;
    for (int m = 0; m < 4; ++m) {
        const bool region = m == 2;
        Model& model = stacks::addModel(stack, "", region ? PRIMITIVE_REGION : PRIMITIVE_POLYLINE);
        for (int k = 0; k < 2; ++k) {
            ModelItem& item = stacks::addItem(model, stack.getSlice(k), {});
            RLEItemSet0 pixels;
            for (int i = 0; i < 25; ++i) {
                const int x = static_cast<int>(random() % 16) - 2;
                const int y = static_cast<int>(random() % 13) - 2;
                region ? pixels.add(y, x) : item.appendVertex(vectorOf<int>({x, y}));
                expected[{x, y, k}] = m + 1;
            }
            item.setRLEItemSet(pixels);
        }
    }
    VoxelMatrix<int> mask;
    stack.writeModelMasks(mask);
    ASSERT_EQ(mask.getSize1(), 12) << "columns come first";
    ASSERT_EQ(mask.getSize2(), 9);
    ASSERT_EQ(mask.getSize3(), 2);
    for (int k = 0; k < 2; ++k) {
        for (int y = 0; y < 9; ++y) {
            for (int x = 0; x < 12; ++x) {
                const auto found = expected.find({x, y, k});
                EXPECT_EQ(mask(x, y, k), found == expected.end() ? 0 : found->second);
            }
        }
    }
    StackSlice elsewhere;
    ModelItem stray;
    stray.setSlice(elsewhere);
    EXPECT_THROW(stack.writeModelItemMask(mask, stray, 1), ProgramError);
}
