#include "image/filters/matrixresize.h"
#include "image/filters/resizexform.h"
#include "image/pixels/image2.h"
#include "image/pixels/imagearithmetic.h"
#include "image/values/imageerrors.h"
#include "numerics/scalar.h"
#include "support/errors.h"
#include "support/images.h"

#include <cmath>

namespace {

PixelMatrix<double> resized(const PixelMatrix<double>& matrix,
                            int rows,
                            int columns,
                            InterpolationMode mode,
                            bool lowPass = false)
{
    PixelMatrix<double> result(matrix);
    MatrixResize<double> resize;
    resize.setSize(vectorOf<int>({rows, columns}));
    resize.setInterpolationMode(mode);
    resize.setLowPassFilteringEnabled(lowPass);
    resize.apply(result);
    return result;
}

/// Where entry `j` of a line of `to` entries is read from one of `from` entries.
double source(int j, int from, int to)
{
    return to > from ? j * ((from - 1) / (to - 1.0)) : j * (from / static_cast<double>(to));
}

PixelMatrix<double> ramp(int rows, int columns)
{
    return imageFrom<double>(rows, columns, [](int i, int j) { return 1000 * i + j; });
}

/// Doubles the size of an image; can't work in place.
class Doubling : public ImageProcessing
{
public:
    Doubling() { implementations[ValueType::Short] = new Work; }

    bool canProcessInplace(const Image2&) const override { return false; }

private:
    class Work : public AbstractImplementation
    {
    public:
        void apply(Image2& image) override
        {
            Image2 larger(ValueType::Short, 2 * image.getSize1(), image.getSize2(), 1, 1, 1, 1);
            larger.fill<short>(static_cast<short>(2 * image.getValue<short>(0, 0)));
            larger.setSpatialCalibration(calibrationOf(0, 0.5F, 1, 1));
            image.swap(larger);
        }
    };
};

} // namespace

TEST(MatrixResize, EntriesAreReadWhereTheScalePutsThem)
{
    for (int rows : {1, 2, 5, 8}) {
        for (int newRows : {1, 2, 3, 8, 16}) {
            for (int newColumns : {2, 7, 14}) {
                const PixelMatrix<double> bilinear =
                    resized(ramp(rows, 7), newRows, newColumns, InterpolationMode::Bilinear);
                EXPECT_EQ(resized(ramp(rows, 7), newRows, newColumns, InterpolationMode::Nearest),
                          imageFrom<double>(newRows, newColumns, [&](int i, int j) {
                              const double y = source(i, rows, newRows);
                              const double x = source(j, 7, newColumns);
                              EXPECT_NEAR(bilinear(i, j), 1000 * y + x, 2e-3)
                                  << "the scale is a float";
                              return 1000 * std::floor(y + 1e-6) + std::floor(x + 1e-6);
                          }));
            }
        }
    }
}

TEST(MatrixResize, ALowPassReductionTakesTheMeanAround)
{
    PixelMatrix<double> matrix = ramp(40, 40);
    const PixelMatrix<double> half = resized(matrix, 20, 20, InterpolationMode::Nearest, true);
    for (int i = 1; i < 19; ++i) {
        for (int j = 1; j < 19; ++j) {
            EXPECT_NEAR(half(i, j), matrix(2 * i, 2 * j), 1e-9);
        }
    }
    matrix.fill(25);
    EXPECT_EQ(resized(matrix, 20, 20, InterpolationMode::Nearest, true)(0, 0), 9)
        << "25 pixels in the window, 9 of them in the image";
    EXPECT_THROW(resized(PixelMatrix<double>(0, 4), 3, 4, InterpolationMode::Nearest), SizeError);
    EXPECT_EQ(resized(ramp(3, 4), 0, 2, InterpolationMode::Bilinear).getSize1(), 0);
    EXPECT_THROW(MatrixResize<float>().setSize(vectorOf<int>({-1, 4})), SizeError);
}

TEST(ResizeXForm, NearestPixelsAreTakenAndHalvingTakesMeansOfFour)
{
    for (int depth : {8, 16, 24, 32}) {
        const Image0 in = randomImage0(10, 6, depth, 1);
        Image0 out(in);
        ResizeXForm resize(InterpolationMode::Nearest);
        resize.setSize(4, 9);
        resize.apply(out);
        ASSERT_EQ(out.getHeight(), 9);
        ASSERT_EQ(out.getDepth(), depth);
        const int bytes = depth / 8;
        ASSERT_EQ(out.dataLength(), static_cast<std::size_t>(4 * 9 * bytes));
        for (int i = 0; i < 9; ++i) {
            for (int b = 0; b < 4 * bytes; ++b) {
                const int from = 10 * (b / bytes) / 4 * bytes + b % bytes;
                EXPECT_EQ(out.getPixels()[i][b], in.getPixels()[6 * i / 9][from]);
            }
        }
        const Image0 odd = randomImage0(7, 5, depth, 2);
        resize.halve(out, odd);
        if (depth == 16) {
            EXPECT_EQ(out.getHeight(), 9) << "16 bits are left alone";
            continue;
        }
        ASSERT_EQ(out.getWidth(), 3);
        ASSERT_EQ(out.getHeight(), 2);
        ASSERT_EQ(out.getDepth(), depth);
        for (int i = 0; i < 2; ++i) {
            for (int b = 0; b < 3 * bytes; ++b) {
                const int left = b / bytes * 2 * bytes + b % bytes;
                const unsigned char* upper = odd.getPixels()[2 * i] + left;
                const unsigned char* lower = odd.getPixels()[2 * i + 1] + left;
                EXPECT_EQ(out.getPixels()[i][b],
                          (upper[0] + upper[bytes] + lower[0] + lower[bytes]) / 4);
            }
        }
    }
    Image0 indexed = randomImage0(4, 4, 8, 3);
    indexed.setColormap(Colormap::fire());
    Image0 out;
    ResizeXForm halving(InterpolationMode::Nearest);
    halving.halve(out, indexed);
    EXPECT_EQ(out.getDepth(), 24);
    halving.halveGrayscaleImage(out, randomImage0(5, 5, 8, 3));
    EXPECT_EQ(out.getWidth(), 2);
    EXPECT_THROW(halving.halveGrayscaleImage(out, randomImage0(4, 4, 16, 3)), DepthError);
    EXPECT_THROW(halving.halveTrueColorImage(out, indexed), DepthError);
    EXPECT_THROW(halving.nearestResize(out, indexed), UsageError) << "without a target";
}

TEST(ResizeXForm, ProportionsAreKeptWithinTheTarget)
{
    ResizeXForm resize(InterpolationMode::Nearest);
    resize.setAspectFriendly(true);
    resize.setSize(100, 100);
    const auto converted = [&](int width, int height) {
        resize.convertSize(width, height);
        return std::pair(width, height);
    };
    EXPECT_EQ(converted(300, 150), std::pair(100, 50));
    EXPECT_EQ(converted(150, 300), std::pair(50, 100));
    EXPECT_EQ(converted(3, 3), std::pair(100, 100));
    EXPECT_EQ(converted(100000, 99999), std::pair(100, 100));
    resize.setAspectFriendly(false);
    EXPECT_EQ(converted(300, 150), std::pair(100, 100));
}

TEST(ResizeXForm, WhatCannotBeResizedIsTold)
{
    Image0 image = randomImage0(4, 4, 8, 4);
    Image0 empty;
    ResizeXForm unset(InterpolationMode::Nearest);
    EXPECT_THROW(unset.apply(image), UsageError);
    ResizeXForm bilinear(InterpolationMode::Bilinear);
    bilinear.setSize(2, 2);
    EXPECT_THROW(bilinear.apply(image), UsageError);
    EXPECT_EQ(image.getWidth(), 4);
    ResizeXForm resize(InterpolationMode::Nearest);
    resize.setSize(2, 2);
    EXPECT_THROW(resize.apply(empty), SizeError);
    Image2 general(ValueType::Float, 2, 2, 1, 1, 1, 1);
    EXPECT_RAISES(UsageError, "void ImageProcessing::apply(Image2&)",
                  "no implementation found for the given image", resize.apply(general));
}

TEST(ImageProcessing, AResultOfAnotherSizeTakesThePlaceOfTheImage)
{
    Image2 image(ValueType::Short, 2, 3, 1, 3, 1, 1);
    for (int k = 0; k < 3; ++k) {
        Image2 sample(ValueType::Short, 2, 3, 1, 1, 1, 1);
        sample.fill<short>(static_cast<short>(5 + k));
        image.setColorChannel(static_cast<ColorChannel>(k), sample);
    }
    Doubling().apply(image);
    EXPECT_EQ(image.getSize1(), 4);
    EXPECT_EQ(image.samplesPerElement(), 3);
    EXPECT_EQ(image.getSpatialCalibration().getSize1(), 0.5F);
    EXPECT_EQ(image.getRedValue<short>(3, 2), 10);
    EXPECT_EQ(image.getBlueValue<short>(3, 2), 14);
}

TEST(ImageArithmetic, IntegersWrapAroundInAllFrames)
{
    Image2 image(ValueType::UnsignedChar, 1, 2, 1, 1, 2, 2);
    for (int frame = 0; frame < 4; ++frame) {
        image.asVector<unsigned char>(frame / 2, frame % 2).setSequence(100, 50);
    }
    const auto expectPixels = [](const Image2& result, unsigned char first, unsigned char second) {
        for (int frame = 0; frame < 4; ++frame) {
            EXPECT_EQ(result.asVector<unsigned char>(frame / 2, frame % 2),
                      vectorOf<unsigned char>({first, second}));
        }
    };
    expectPixels(image + image, 200, 44);
    expectPixels(image - Scalar(101.9), 255, 49);
    expectPixels(image * Scalar(2), 200, 44);
    Image2 result = image;
    result /= Scalar(3);
    expectPixels(result, 33, 50);
    result -= image;
    expectPixels(result, 189, 156);
    ImageArithmetic().abs(result);
    expectPixels(result, 189, 156);
    result /= result;
    result += Scalar(1);
    expectPixels(result, 2, 2);
}

TEST(ImageArithmetic, WhatDoesNotFitIsRefused)
{
    const ImageArithmetic arithmetic;
    Image2 a(ValueType::Int, 2, 2, 1, 1, 1, 1);
    a.fill<int>(-2147483647 - 1);
    Image2 b(ValueType::Short, 2, 2, 1, 1, 1, 1);
    EXPECT_RAISES(UsageError, "void ImageArithmetic::apply(Image2&,const Image2&,Operation) const",
                  "the two images have different numerical types", arithmetic.add(a, b));
    Image2 larger(ValueType::Int, 2, 3, 1, 1, 1, 1);
    EXPECT_THROW(arithmetic.multiply(a, larger), SizeError);
    EXPECT_THROW(arithmetic.divide(a, larger), SizeError) << "though the divisor is 0";
    // Frames meet by their places; those that the first image has not stay out.
    Image2 three(ValueType::Int, 2, 2, 1, 1, 3, 1);
    Image2 one(a);
    arithmetic.add(one, three);
    EXPECT_EQ(one, a);
    EXPECT_THROW(arithmetic.subtract(three, a), SizeError);
    EXPECT_EQ(three, Image2(ValueType::Int, 2, 2, 1, 1, 3, 1)) << "no frame has changed";
    EXPECT_THROW(arithmetic.divide(a, Scalar(0)), MathError);
    Image2 zero(a);
    zero.fill<int>(0);
    EXPECT_THROW(arithmetic.divide(a, zero), MathError);
    Image2 minusOne(a);
    minusOne.fill<int>(-1);
    const Image2 before(a);
    arithmetic.divide(a, minusOne);
    EXPECT_EQ(a, before) << "the smallest integer has no opposite";
    arithmetic.divide(a, Scalar(2));
    arithmetic.abs(a);
    EXPECT_EQ(a.getValue<int>(1, 1), 1073741824);
}
