#include "shape/curves/curvestack.h"
#include "stack/calibrationcurve.h"
#include "stack/stackreconstruction.h"
#include "stack/standardimage.h"
#include "support/curves.h"
#include "support/stacks.h"

#include <gtest/gtest.h>

#include <complex>

namespace {

using Tag = CurveStackTriangulationContourTag;

StackSlice& addSection(Stack& stack, int columns, int rows, const Registration& registration)
{
    const std::string name = std::to_string(stack.getNumSlices());
    StackSlice& slice = stacks::addSlice(stack, name, stacks::statedFile(name, rows, columns));
    slice.setRegistration(registration);
    return slice;
}

} // namespace

TEST(StackReconstruction, AccumulatesTurnsAndShiftsForAnyGeometry)
{
    std::mt19937 random(21);
    const auto draw = [&random](int bound) {
        return static_cast<int>(random() % static_cast<unsigned>(bound));
    };
    Stack stack;
    stack.setInvertedZAxis(true);
    Model* models[] = {&stacks::addModel(stack, "0", PRIMITIVE_POLYGON),
                       &stacks::addModel(stack, "1", PRIMITIVE_POLYLINE),
                       &stacks::addModel(stack, "2", PRIMITIVE_POLYPOINT),
                       &stacks::addModel(stack, "3", PRIMITIVE_REGION)};
    for (int i = 0; i < 6; ++i) {
        StackSlice& slice = addSection(stack, 10 + i, 7 + 2 * i,
                                       {draw(9) - 4, draw(9) - 4, static_cast<float>(draw(360))});
        PixelCalibration calibration;
        calibration.setPixelWidth(1.5f);
        calibration.setPixelHeight(0.5f);
        slice.setPixelCalibration(calibration);
        slice.setAbsolutePosition(static_cast<float>(draw(50)));
    }
    StackReconstruction<double> reconstruction;
    EXPECT_THROW(reconstruction.computeMaps(), UsageError);
    reconstruction.setStack(stack);
    // Points of the plane as complex numbers, y upward: a turn is a product.
    std::complex<double> turn = 1.0;
    std::complex<double> shift = 0.0;
    for (int i = 0; i < 6; ++i) {
        StackSlice& slice = stack.getSlice(i);
        const Registration r = slice.getRegistration();
        shift += turn * std::complex<double>(1.5 * r.horShift, -0.5 * r.verShift);
        turn *= std::polar(1.0, -r.rotationAngle * 3.14159265358979323846 / 180.0);
        for (Model* model : models) {
            ModelItem& item =
                stacks::addItem(*model, slice, {{draw(20), draw(20)}, {draw(20), draw(20)}});
            if (model == models[3]) {
                RLEItemSet0 runs;
                for (int k = 0; k < 5; ++k) {
                    runs.add(RLEItem0(draw(9), draw(9), 3));
                }
                item.setRLEItemSet(runs);
            }
            const std::unique_ptr<Vertices<double>> shape(reconstruction.apply(item));
            const auto* curve = dynamic_cast<const Curve<double>*>(shape.get());
            ASSERT_EQ(curve != nullptr, model == models[0] || model == models[1]);
            EXPECT_TRUE(curve == nullptr || curve->isOpen() == (model == models[1]));
            const Vertices<int> pixels = item.pixels();
            ASSERT_EQ(shape->getSize(), pixels.getSize());
            for (int k = 0; k < pixels.getSize(); ++k) {
                const std::complex<double> fromCentre(1.5 * (pixels[k][0] - (10 + i) / 2.0),
                                                      -0.5 * (pixels[k][1] - (7 + 2 * i) / 2.0));
                const std::complex<double> expected = turn * fromCentre + shift;
                EXPECT_NEAR((*shape)[k][0], expected.real(), 1e-11);
                EXPECT_NEAR((*shape)[k][1], expected.imag(), 1e-11);
                EXPECT_EQ((*shape)[k][2], -slice.getAbsolutePosition());
            }
        }
    }
}

TEST(StackReconstruction, StacksTheItemsOfAModelInTheOrderOfTheirSlices)
{
    Stack stack;
    stack.setDefaultSliceSpacing(1.0f);
    for (int i = 0; i < 3; ++i) {
        addSection(stack, 10, 10, {});
    }
    Model& model = stacks::addModel(stack, "Vein", PRIMITIVE_POLYLINE);
    const std::pair<int, Tag> drawn[] = {
        {2, Tag::End}, {0, Tag::Begin}, {2, Tag::None}, {0, Tag::None}};
    std::vector<std::pair<int, int>> vertices;
    for (const auto& [slice, tag] : drawn) {
        vertices.emplace_back(1, 2);
        stacks::addItem(model, stack.getSlice(slice), vertices).setTriangulationTag(tag);
    }
    StackSlice elsewhere;
    stacks::addItem(model, elsewhere, {{1, 2}});
    StackReconstruction<float> reconstruction;
    reconstruction.setStack(stack);

    testing::internal::CaptureStderr();
    const std::unique_ptr<VertexStack<float>> levels(reconstruction.apply(model));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "invalid stack/item pair in StackReconstruction (ignored)\n");
    const auto& curves = dynamic_cast<const CurveStack<float>&>(*levels);
    EXPECT_TRUE(curves.isOpen());
    std::vector<std::pair<int, float>> found;
    for (int k = 0; k < curves.getHeight(); ++k) {
        found.emplace_back(curves[k].getSize(), curves[k][0][2]);
        EXPECT_EQ(curves[k].getServer(), curves.getServer());
    }
    EXPECT_EQ(found, (std::vector<std::pair<int, float>>{{2, 0}, {4, 0}, {1, 2}, {3, 2}}));
    testing::internal::CaptureStderr();
    EXPECT_EQ(reconstruction.contourTags(model),
              (std::vector<Tag>{Tag::Begin, Tag::None, Tag::End, Tag::None}));
    Curve<float> untouched = curveOf<float>({{1, 2}}, true);
    reconstruction.map(untouched, model.getItem(4));
    EXPECT_EQ(coordinatesOf(untouched), (std::vector<float>{1, 2}));
    testing::internal::GetCapturedStderr();

    stacks::addItem(model, addSection(stack, 10, 10, {}), {{1, 2}});
    EXPECT_THROW(reconstruction.map(untouched, model.getItem(5)), UsageError);
    model.getProperties().setGeometry(PRIMITIVE_UNKNOWN);
    EXPECT_THROW(reconstruction.apply(model), ProgramError);
    EXPECT_THROW(reconstruction.apply(model.getItem(0)), ProgramError);
}

TEST(StandardImage, CurvesAreFittedToSamplesAndFoundInTheStack)
{
    Stack stack;
    for (const char* name : {"", "density", "thickness"}) {
        auto* image = new StandardImage;
        stack.addStandardImage(image);
        EXPECT_EQ(image->getStack(), &stack);
        if (*name != '\0') {
            auto* curve = new CalibrationCurve;
            curve->setName(name);
            image->setCalibrationCurve(*curve);
            image->setCalibrationCurve(*curve);
        }
    }
    ASSERT_EQ(stack.getNumCalibration(), 2);
    EXPECT_EQ(stack.getCalibration(1), stack.getCalibration("thickness"));
    EXPECT_EQ(stack.getCalibration("mass"), nullptr);
    CalibrationCurve& curve = *stack.getCalibration("density");
    EXPECT_THROW(curve.fit(1), SizeError);
    const auto law = [](double grey) { return 3.0 - 0.02 * grey + 1e-4 * grey * grey; };
    for (int grey = 0; grey < 256; grey += 5) {
        curve.addSample(grey, law(grey) + (grey % 2 == 0 ? 0.01 : -0.01));
    }
    EXPECT_THROW(curve.fit(-1), ValueError);
    curve.fit(2);
    const StandardImage copy(stack.getStandardImage(1));
    stack.getStandardImage(1).deleteCalibrationCurve();
    EXPECT_EQ(stack.getNumCalibration(), 1);
    for (int grey = 0; grey < 256; ++grey) {
        EXPECT_NEAR(copy.getCalibrationCurve()->eval(grey), law(grey), 0.01) << grey;
    }
}
