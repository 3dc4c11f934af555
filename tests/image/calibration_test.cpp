#include "image/values/pixelcalibration.h"
#include "image/values/voxelcalibration.h"
#include "support/errors.h"
#include "support/images.h"

#include <algorithm>

namespace {

/// Width, height and aspect ratio after `compute`; a value of 0 is one that was not set.
Vector<float> computed(float width, float height, float aspect)
{
    PixelCalibration calibration;
    if (width != 0) {
        calibration.setPixelWidth(width);
    }
    if (height != 0) {
        calibration.setPixelHeight(height);
    }
    if (aspect != 0) {
        calibration.setAspectRatio(aspect);
    }
    calibration.compute();
    return vectorOf<float>(
        {calibration.getPixelWidth(), calibration.getPixelHeight(), calibration.getAspectRatio()});
}

} // namespace

TEST(LengthUnit, NamesComeFromTheTableOfPrefixesInAscendingOrder)
{
    EXPECT_EQ(LengthUnit().name(), "meter");
    EXPECT_EQ(unitOf(-6).name(), "micrometer");
    EXPECT_EQ(unitOf(-6).symbol(), "\xC2\xB5m");
    EXPECT_EQ(unitOf(-24).name(), "yoptometer");
    EXPECT_EQ(unitOf(1).name(), "???meter");
    EXPECT_EQ(unitOf(2).symbol(), "???m");
    const std::vector<int> scales = LengthUnit::availableScales();
    ASSERT_EQ(scales.size(), 18U);
    EXPECT_EQ(scales.front(), -24);
    EXPECT_TRUE(std::is_sorted(scales.begin(), scales.end()));
    for (std::size_t i = 0; i < scales.size(); ++i) {
        EXPECT_EQ(LengthUnit::availableNames()[i], unitOf(scales[i]).name());
        EXPECT_EQ(LengthUnit::availableSymbols()[i], unitOf(scales[i]).symbol());
    }
}

TEST(PixelCalibration, ComputeDerivesWhatIsUndefinedFromTheRest)
{
    const float cases[][6] = {{0, 0, 0, 1, 1, 1}, {3, 0, 0, 3, 3, 1}, {3, 6, 0, 3, 6, 2},
                              {0, 6, 0, 6, 6, 1}, {0, 0, 2, 1, 2, 2}, {3, 0, 2, 3, 6, 2},
                              {0, 6, 2, 3, 6, 2}, {3, 5, 2, 3, 5, 2}};
    for (const auto& [width, height, aspect, newWidth, newHeight, newAspect] : cases) {
        EXPECT_EQ(computed(width, height, aspect),
                  vectorOf<float>({newWidth, newHeight, newAspect}));
    }
    PixelCalibration calibration;
    for (const float width : {2.0F, 5.0F}) {
        calibration.setPixelWidth(width);
        calibration.compute();
        EXPECT_EQ(calibration.getPixelHeight(), width) << "what was derived is derived anew";
    }
}

TEST(PixelCalibration, EqualityLooksAtTheNumbersAlone)
{
    PixelCalibration a;
    PixelCalibration b;
    b.setLengthUnit(unitOf(-6));
    b.setPixelWidth(1);
    EXPECT_EQ(a, b);
    b.setAspectRatio(2);
    EXPECT_NE(a, b);
    b.clear();
    EXPECT_EQ(b.getLengthUnit(), LengthUnit());
    b.compute();
    EXPECT_EQ(a, b);
}

TEST(VoxelCalibration, PlanesTakeElementZeroAsTheWidth)
{
    VoxelCalibration calibration;
    calibration.setLengthUnit(unitOf(-3));
    calibration.setVoxelSize(vectorOf<float>({2, 6, 7}));
    const PixelCalibration plane = calibration.pixelCalibration();
    EXPECT_EQ(plane.getAspectRatio(), 3);
    EXPECT_EQ(plane.getLengthUnit(), unitOf(-3));
    EXPECT_EQ(plane.getPixelSize(), vectorOf<float>({6, 2}));
    EXPECT_RAISES(SizeError, "void VoxelCalibration::setVoxelSize(const Vector<float>&)",
                  "Size vector does not contain three values as expected",
                  calibration.setVoxelSize(vectorOf<float>({1, 2})));
    EXPECT_EQ(calibration.getVoxelSize(), vectorOf<float>({2, 6, 7}));
}

TEST(SpatialCalibration, TwoDimensionsAreFilledUp)
{
    SpatialCalibration calibration = calibrationOf(-6, 2, 3, 6);
    EXPECT_EQ(calibration.voxelDiagonal(), 7);
    EXPECT_EQ(calibration.voxelVolume(), 36);
    calibration.setSize(vectorOf<float>({3, 4}));
    EXPECT_EQ(calibration.getSize(), vectorOf<float>({3, 4, 1}));
    EXPECT_EQ(calibration.pixelDiagonal(), 5);
    EXPECT_EQ(calibration.pixelArea(), 12);
    calibration.setPosition(vectorOf<float>({1, 2, 3}));
    calibration.setPosition(vectorOf<float>({8, 9}));
    EXPECT_EQ(calibration.getPosition(), vectorOf<float>({8, 9, 0}));
    expectError<SizeError>([&] { calibration.setPosition(vectorOf<float>({1})); },
                           "void SpatialCalibration::setPosition(const Vector<float>&)",
                           "The specified position is neither a 2D nor a 3D position");
    calibration.reset();
    EXPECT_EQ(calibration.getSize(), vectorOf<float>({1, 1, 1}));
    EXPECT_EQ(calibration.getPosition(), vectorOf<float>({0, 0, 0}));
    EXPECT_EQ(calibration.getLengthUnit(), unitOf(-6));
}
