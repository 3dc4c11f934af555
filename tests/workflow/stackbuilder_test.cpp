#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesourcefile.h"
#include "interface/lmxstack.h"
#include "interface/stackbuilder.h"
#include "stack/stackslice.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

namespace {

LengthUnit unitOf(int scale)
{
    LengthUnit unit;
    unit.setScale(scale);
    return unit;
}

/// An image with pixels of this size; a scale of 0 makes it one without calibration.
std::string addImage(
    const TemporaryFolder& folder, const std::string& name, float width, float height, int scale)
{
    Image0 image(20, 10, 8);
    image.clear();
    PixelCalibration calibration;
    if (scale != 0) {
        calibration.setLengthUnit(unitOf(scale));
        calibration.setPixelWidth(width);
        calibration.setPixelHeight(height);
        calibration.compute();
    }
    ImageHeader header = image.getHeader();
    header.setPixelCalibration(calibration);
    image.setHeader(header);
    ImageWriter().write(image, folder.file(name), true);
    return folder.file(name);
}

float widthOf(const LMXStack& stack, int slice)
{
    return stack.getSlice(slice).getPixelCalibration().getPixelWidth();
}

} // namespace

TEST(StackBuilder, ConvertsTheSizesOfAllPhotographsToOneUnit)
{
    const TemporaryFolder folder;
    const std::vector<std::string> photographs = {
        addImage(folder, "centi.tif", 0.0125f, 0.0125f, -2),
        addImage(folder, "milli.tiff", 0.5f, 0.5f, -3),
        addImage(folder, "micro.TIF", 42.0f, 42.0f, -6),
        addImage(folder, "none.tif", 0.0f, 0.0f, 0),
    };
    const float expected[][4] = {{125.0f, 500.0f, 42.0f, 1.0f}, {0.125f, 0.5f, 0.042f, 1.0f}};
    const int scales[] = {-6, -3};
    for (int k = 0; k < 2; ++k) {
        LMXStack stack;
        StackBuilder builder;
        builder.setLengthUnit(unitOf(scales[k]));
        builder.build(stack, photographs);
        ASSERT_EQ(stack.getNumSlices(), 4);
        EXPECT_EQ(stack.getLengthUnit().getScale(), scales[k]);
        for (int i = 0; i < 4; ++i) {
            EXPECT_FLOAT_EQ(widthOf(stack, i), expected[k][i]) << i;
            EXPECT_EQ(stack.getSlice(i).getPixelCalibration().getLengthUnit().getScale(),
                      scales[k]);
        }
        EXPECT_EQ(stack.getSlice(1).getName(), "milli");
        EXPECT_EQ(StackBuilder::calibrationNotes(stack).size(), 2u);
    }
    LMXStack stack;
    StackBuilder builder;
    builder.setPixelWidth(7.5f);
    builder.build(stack, photographs);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(widthOf(stack, i), 7.5f);
    }
    EXPECT_EQ(stack.getDefaultPixelCalibration().getPixelWidth(), 7.5f);
    EXPECT_EQ(stack.getReconstruction().getMaps()[3][0], 7.5f) << "its maps are up to date";
    EXPECT_TRUE(StackBuilder::calibrationNotes(stack).empty());
}

TEST(StackBuilder, SquaresPixelsThatAreNotAndKeepsTheirArea)
{
    const TemporaryFolder folder;
    const std::vector<std::string> photographs = {addImage(folder, "tall.tif", 0.1f, 0.2f, -2),
                                                  addImage(folder, "flat.tif", 0.2f, 0.1f, -2)};
    LMXStack stack;
    StackBuilder builder;
    builder.setLengthUnit(unitOf(-2));
    builder.build(stack, photographs);
    // The files cover 2 x 2 and 4 x 1 centimetres.
    const float extent[][2] = {{2.0f, 2.0f}, {4.0f, 1.0f}};
    for (int i = 0; i < 2; ++i) {
        const StackSlice& slice = stack.getSlice(i);
        EXPECT_NEAR(widthOf(stack, i) * float(slice.width()), extent[i][0], 1e-4) << i;
        EXPECT_NEAR(widthOf(stack, i) * float(slice.height()), extent[i][1], 1e-4) << i;
    }
}
