#include "image/image0.h"
#include "image/image2.h"
#include "image/imagearithmetic.h"
#include "image/matrixresize.h"
#include "image/resizexform.h"
#include "numerics/scalar.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <cmath>

namespace {

Image0 numbered(int width, int height, int depth)
{
    Image0 image(width, height, depth);
    for (std::size_t i = 0; i < image.dataLength(); ++i) {
        image.getData()[i] = static_cast<unsigned char>(i * 7);
    }
    return image;
}

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
    PixelMatrix<double> matrix(rows, columns);
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            matrix(i, j) = 1000 * i + j;
        }
    }
    return matrix;
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
            SpatialCalibration calibration;
            calibration.setSize(0.5F, 1, 1);
            larger.setSpatialCalibration(calibration);
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
                const PixelMatrix<double> nearest =
                    resized(ramp(rows, 7), newRows, newColumns, InterpolationMode::Nearest);
                const PixelMatrix<double> bilinear =
                    resized(ramp(rows, 7), newRows, newColumns, InterpolationMode::Bilinear);
                ASSERT_EQ(nearest.getSize(), vectorOf<int>({newRows, newColumns}));
                for (int i = 0; i < newRows; ++i) {
                    for (int j = 0; j < newColumns; ++j) {
                        const double y = source(i, rows, newRows);
                        const double x = source(j, 7, newColumns);
                        EXPECT_EQ(nearest(i, j),
                                  1000 * std::floor(y + 1e-6) + std::floor(x + 1e-6));
                        EXPECT_NEAR(bilinear(i, j), 1000 * y + x, 2e-3) << "the scale is a float";
                    }
                }
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
}

TEST(MatrixResize, SizesThatCannotBeReachedAreRefused)
{
    PixelMatrix<double> empty(0, 4);
    EXPECT_THROW(resized(empty, 3, 4, InterpolationMode::Nearest), SizeError);
    EXPECT_EQ(resized(ramp(3, 4), 0, 2, InterpolationMode::Bilinear).getSize1(), 0);
    EXPECT_THROW(MatrixResize<float>().setSize(vectorOf<int>({-1, 4})), SizeError);
}

TEST(ResizeXForm, NearestPixelsAreTaken)
{
    for (int depth : {8, 16, 24, 32}) {
        const Image0 in = numbered(10, 6, depth);
        Image0 out(in);
        ResizeXForm resize(InterpolationMode::Nearest);
        resize.setSize(4, 9);
        resize.apply(out);
        ASSERT_EQ(out.getWidth(), 4);
        ASSERT_EQ(out.getHeight(), 9);
        ASSERT_EQ(out.getDepth(), depth);
        const int bytes = depth / 8;
        for (int j = 0; j < 9; ++j) {
            for (int i = 0; i < 4; ++i) {
                for (int b = 0; b < bytes; ++b) {
                    EXPECT_EQ(out.getPixels()[j][i * bytes + b],
                              in.getPixels()[6 * j / 9][10 * i / 4 * bytes + b]);
                }
            }
        }
    }
}

TEST(ResizeXForm, ProportionsAreKeptWithinTheTarget)
{
    ResizeXForm resize(InterpolationMode::Nearest);
    resize.setAspectFriendly(true);
    resize.setSize(100, 100);
    const auto converted = [&](int width, int height) {
        resize.convertSize(width, height);
        return std::make_pair(width, height);
    };
    EXPECT_EQ(converted(300, 150), std::make_pair(100, 50));
    EXPECT_EQ(converted(150, 300), std::make_pair(50, 100));
    EXPECT_EQ(converted(3, 3), std::make_pair(100, 100));
    EXPECT_EQ(converted(100000, 99999), std::make_pair(100, 100));
    resize.setAspectFriendly(false);
    EXPECT_EQ(converted(300, 150), std::make_pair(100, 100));
}

TEST(ResizeXForm, WhatCannotBeResizedIsTold)
{
    Image0 image = numbered(4, 4, 8);
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
    expectError<UsageError>([&] { resize.apply(general); }, "void ImageProcessing::apply(Image2&)",
                            "no implementation found for the given image");
}

TEST(ResizeXForm, HalvingTakesMeansOfFourPixels)
{
    for (int depth : {8, 24, 32}) {
        const Image0 in = numbered(7, 5, depth);
        Image0 out;
        ResizeXForm(InterpolationMode::Nearest).halve(out, in);
        ASSERT_EQ(out.getWidth(), 3);
        ASSERT_EQ(out.getHeight(), 2);
        ASSERT_EQ(out.getDepth(), depth);
        const int bytes = depth / 8;
        for (int i = 0; i < 2; ++i) {
            for (int b = 0; b < 3 * bytes; ++b) {
                const int left = b / bytes * 2 * bytes + b % bytes;
                const unsigned char* upper = in.getPixels()[2 * i];
                const unsigned char* lower = in.getPixels()[2 * i + 1];
                EXPECT_EQ(out.getPixels()[i][b],
                          (upper[left] + upper[left + bytes] + lower[left] + lower[left + bytes]) /
                              4);
            }
        }
    }
    Image0 indexed = numbered(4, 4, 8);
    indexed.setColormap(Colormap::fire());
    Image0 out;
    ResizeXForm(InterpolationMode::Nearest).halve(out, indexed);
    EXPECT_EQ(out.getDepth(), 24);
    Image0 deep = numbered(4, 4, 16);
    ResizeXForm(InterpolationMode::Nearest).halve(out, deep);
    EXPECT_EQ(out.getDepth(), 24) << "16 bits are left alone";
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

TEST(ImageArithmetic, IntegersWrapAround)
{
    Image2 image(ValueType::UnsignedChar, 1, 2, 1, 1, 2, 2);
    Image2 other(image);
    for (int channel = 0; channel < 2; ++channel) {
        image.asVector<unsigned char>(channel, 1).fill(100);
        other.asVector<unsigned char>(channel, 1).fill(200);
    }
    const ImageArithmetic arithmetic;
    arithmetic.add(image, other);
    EXPECT_EQ(image.asVector<unsigned char>(1, 1)[1], 44);
    arithmetic.subtract(image, Scalar(45.9));
    EXPECT_EQ(image.asVector<unsigned char>(0, 1)[0], 255);
    EXPECT_EQ(image.asVector<unsigned char>(0, 0)[0], 211);
    arithmetic.divide(image, Scalar(2));
    arithmetic.abs(image);
    EXPECT_EQ(image.asVector<unsigned char>(1, 1)[0], 127);
}

TEST(ImageArithmetic, WhatDoesNotFitIsRefused)
{
    const ImageArithmetic arithmetic;
    Image2 a(ValueType::Int, 2, 2, 1, 1, 1, 1);
    a.fill<int>(-2147483647 - 1);
    Image2 b(ValueType::Short, 2, 2, 1, 1, 1, 1);
    expectError<UsageError>([&] { arithmetic.add(a, b); },
                            "void ImageArithmetic::apply(Image2&,const Image2&,Operation) const",
                            "the two images have different numerical types");
    Image2 larger(ValueType::Int, 2, 3, 1, 1, 1, 1);
    EXPECT_THROW(arithmetic.multiply(a, larger), SizeError);
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
