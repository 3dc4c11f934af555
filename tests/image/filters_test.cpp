#include "image/gaussiangradient0.h"
#include "image/minfilter0.h"
#include "image/separablefilter0.h"
#include "image/sumfilter0.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <cmath>
#include <limits>

namespace {

template <class T>
PixelMatrix<T> randomImage(int rows, int columns, std::mt19937& random)
{
    PixelMatrix<T> image(rows, columns);
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            image(i, j) = static_cast<T>(static_cast<int>(random() % 201) - 100);
        }
    }
    return image;
}

template <class T>
VoxelMatrix<T> randomVolume(int rows, int columns, int planes, std::mt19937& random)
{
    VoxelMatrix<T> volume(rows, columns, planes);
    for (int k = 0; k < planes; ++k) {
        volume[k] = randomImage<T>(rows, columns, random);
    }
    return volume;
}

int randomSize(std::mt19937& random)
{
    return 1 + static_cast<int>(random() % 20);
}

/// Combines the voxels within a window that `contains(dr, dc, dk)` describes, cut at the border.
template <class T, class Contains, class Combine>
VoxelMatrix<T> windowed(const VoxelMatrix<T>& in, int radius, Contains contains, Combine combine)
{
    VoxelMatrix<T> out(in);
    for (int k = 0; k < in.getSize3(); ++k) {
        for (int i = 0; i < in.getSize1(); ++i) {
            for (int j = 0; j < in.getSize2(); ++j) {
                for (int n = 0; n < (2 * radius + 1) * (2 * radius + 1) * (2 * radius + 1); ++n) {
                    const int side = 2 * radius + 1;
                    const int dr = n % side - radius;
                    const int dc = n / side % side - radius;
                    const int dk = n / side / side - radius;
                    const bool isCentre = dr == 0 && dc == 0 && dk == 0;
                    if (!isCentre && contains(dr, dc, dk) && in.contains(i + dr, j + dc, k + dk)) {
                        out(i, j, k) = combine(out(i, j, k), in(i + dr, j + dc, k + dk));
                    }
                }
            }
        }
    }
    return out;
}

template <class T, class Contains, class Combine>
PixelMatrix<T> windowed(const PixelMatrix<T>& in, int radius, Contains contains, Combine combine)
{
    VoxelMatrix<T> volume(in.getSize1(), in.getSize2(), 1);
    volume[0] = in;
    return windowed(volume, radius, contains, combine)[0];
}

bool everywhere(int, int, int)
{
    return true;
}

template <class T>
T smaller(T a, T b)
{
    return std::min(a, b);
}

template <class T>
class ElementTypes : public testing::Test
{};

using Elements = testing::Types<char,
                                unsigned char,
                                short,
                                unsigned short,
                                int,
                                unsigned int,
                                float,
                                double,
                                long double>;

} // namespace

TYPED_TEST_SUITE(ElementTypes, Elements);

TYPED_TEST(ElementTypes, SeparableFilterIsTheConvolutionOfEachLine)
{
    using T = TypeParam;
    std::mt19937 random(11);
    for (int round = 0; round < 20; ++round) {
        PixelMatrix<T> image = randomImage<T>(randomSize(random), randomSize(random), random);
        SeparableFilter0<T> filter;
        Vector<T> kernels[2];
        for (Vector<T>& kernel : kernels) {
            kernel = randomImage<T>(1, 1 + 2 * static_cast<int>(random() % 14), random)[0];
            kernel /= T(7);
        }
        filter.setVMask(kernels[0]);
        filter.setHMask(kernels[1]);
        filter.setDivideBy(T(3));
        PixelMatrix<T> expected(image);
        for (int i = 0; i < image.getSize1(); ++i) {
            expected[i] = expected[i].conv(kernels[1]);
        }
        for (int j = 0; j < image.getSize2(); ++j) {
            expected.setColumn(j, expected.getColumn(j).conv(kernels[0]));
        }
        expected /= T(3);
        filter.apply(image);
        EXPECT_EQ(image, expected);
    }
}

TYPED_TEST(ElementTypes, SquareMinimumIsTheMinimumOfTheWindow)
{
    using T = TypeParam;
    std::mt19937 random(12);
    for (int round = 0; round < 30; ++round) {
        const PixelMatrix<T> in = randomImage<T>(randomSize(random), randomSize(random), random);
        const int radius = static_cast<int>(random() % 7);
        MinFilter0<T> filter;
        filter.setRadius(radius);
        PixelMatrix<T> out;
        filter.apply(out, in);
        EXPECT_EQ(out, windowed(in, radius, everywhere, smaller<T>)) << "radius " << radius;
    }
}

TEST(SeparableFilter0, VolumesAreFilteredAlongThreeAxes)
{
    std::mt19937 random(13);
    VoxelMatrix<float> volume = randomVolume<float>(7, 6, 9, random);
    const VoxelMatrix<float> in(volume);
    SeparableFilter0<float> filter;
    const Vector<float> kernel = randomVector<float>(5, random);
    filter.setKernel3(kernel);
    filter.setMultiplyBy(2);
    filter.apply(volume);
    for (int i = 0; i < 7; ++i) {
        for (int j = 0; j < 6; ++j) {
            Vector<float> line(9);
            for (int k = 0; k < 9; ++k) {
                line[k] = in(i, j, k);
            }
            line = line.conv(kernel);
            for (int k = 0; k < 9; ++k) {
                EXPECT_EQ(volume(i, j, k), line[k] * 2);
            }
        }
    }
}

TEST(SeparableFilter0, AMaskTakesItsElementsOutAndTheScaleToo)
{
    SeparableFilter0<double> filter;
    filter.setKernel2(vectorOf<double>({0.25, 0.5, 0.25}));
    filter.setDivideBy(4);
    PixelMatrix<double> image(matrixOf<double>({{8, 100, 8, 16}}));
    const PixelMatrix<double> mask(matrixOf<double>({{1, 0, 1, 1}}));
    filter.setMask(mask);
    filter.apply(image);
    EXPECT_EQ(image, matrixOf<double>({{4, 100, 12, 12}})) << "of a pair, one may stand for both";
    expectError<ValueError>([&] { filter.setKernel1(Vector<double>(4)); },
                            "void SeparableFilterBase<T>::setKernel1(const Vector<T>&)",
                            "The kernel has an even size");
    PixelMatrix<double> other(2, 2);
    EXPECT_THROW(filter.apply(other), SizeError);
}

TEST(GaussianGradient0, KernelsReachTwoSigmaAndHaveTheirSums)
{
    for (const double sigma : {0.3, 1.0, 3.5, 10.0}) {
        const int half = static_cast<int>(std::ceil(2 * sigma));
        PixelMatrix<double> impulse(2 * half + 1, 2 * half + 1);
        impulse.setZeros();
        impulse(half, half) = 1;
        GaussianGradient0<double> gradient(sigma);
        gradient.gradient2(impulse);
        // The middle row is the derivative kernel times the peak of the smoothing kernel.
        double smooth = 0;
        double positive = 0;
        for (int i = -half; i <= half; ++i) {
            smooth += std::exp(-0.5 * i * i / (sigma * sigma));
            positive += i > 0 ? i * std::exp(-0.5 * i * i / (sigma * sigma)) : 0;
        }
        for (int i = -half; i <= half; ++i) {
            const double g = std::exp(-0.5 * i * i / (sigma * sigma));
            EXPECT_NEAR(impulse(half, half + i), -i * g / positive / smooth, 1e-14);
        }
    }
}

TEST(GaussianGradient0, AStepHasTheGradientOfItsHeight)
{
    PixelMatrix<float> image(60, 60);
    for (int i = 0; i < 60; ++i) {
        for (int j = 0; j < 60; ++j) {
            image(i, j) = j < 30 ? 20 : 120;
        }
    }
    PixelMatrix<float> angle(image);
    GaussianGradient0<float> gradient(3.5F);
    gradient.apply(image);
    EXPECT_NEAR(image(30, 29), 100, 1e-3);
    EXPECT_NEAR(image(30, 30), 100, 1e-3);
    EXPECT_NEAR(image(30, 12), 0, 1e-3) << "constant, away from border and step";
    EXPECT_GT(image(30, 0), 5) << "beyond the border everything is 0";
    gradient.angle(angle);
    EXPECT_NEAR(std::abs(std::cos(angle(30, 30))), 1, 1e-5);
}

TEST(GaussianGradient0, BadSigmasAreRefused)
{
    for (const float sigma : {0.0F, -1.0F, 0.01F, 1e7F, std::nanf("")}) {
        EXPECT_THROW(GaussianGradient0<float>{sigma}, ValueError) << sigma;
    }
    EXPECT_THROW(GaussianGradient0<int>{2}, TypeError);
}

TEST(GradientOperator0, InteriorPixelsAreThinnedByTheNeighboursTold)
{
    // One pixel with all combinations of signs and of the larger component, against the neighbours
    // that each operation compares it with.
    struct Case
    {
        float p;
        float q;
        int row4;
        int column4;
        int row8;
        int column8;
    };

    const Case cases[] = {{1, 3, 0, 1, 2, 1},  {1, -3, 2, 1, 2, 1},  {3, 1, 1, 0, 1, 2},
                          {0, 0, 1, 2, 0, 2},  {-1, -3, 0, 1, 2, 1}, {-1, 3, 2, 1, 2, 1},
                          {-3, 1, 1, 2, 1, 2}, {3, 2, 1, 0, 2, 2},   {3, -2, 1, 0, 0, 2},
                          {-2, 3, 2, 1, 0, 2}};
    for (const Case& c : cases) {
        PixelMatrix<float> a(3, 3);
        PixelMatrix<float> b(3, 3);
        a.fill(c.p);
        b.fill(c.q);
        const auto survives4 = [&](int row, int column, float value) {
            PixelMatrix<float> image(3, 3);
            image.setZeros();
            image(1, 1) = 5;
            image(row, column) = value;
            GradientOperator0<float>::nonmaxSuppressionN4(image, a, b);
            return image(1, 1) == 5;
        };
        const auto survives8 = [&](int row, int column, float value) {
            PixelMatrix<float> image(3, 3);
            image.setZeros();
            image(1, 1) = 5;
            image(row, column) = value;
            GradientOperator0<float>::nonmaxSuppressionN8(image, a, b);
            return image(1, 1) == 5;
        };
        EXPECT_TRUE(survives4(c.row4, c.column4, 5)) << c.p << ", " << c.q;
        EXPECT_FALSE(survives4(c.row4, c.column4, 6));
        EXPECT_FALSE(survives4(2 - c.row4, 2 - c.column4, 5));
        EXPECT_TRUE(survives8(c.row8, c.column8, 5)) << c.p << ", " << c.q;
        EXPECT_FALSE(survives8(c.row8, c.column8, 6));
        EXPECT_FALSE(survives8(2 - c.row8, 2 - c.column8, 6));
    }
}

TEST(GradientOperator0, InterpolatedThinningLooksAlongTheGradient)
{
    PixelMatrix<float> a(3, 3);
    PixelMatrix<float> b(3, 3);
    a.fill(4);
    b.fill(2);
    const auto left = [&](float diagonal, auto suppress) {
        PixelMatrix<float> image(matrixOf<float>({{0, 0, 0}, {0, 4, 3}, {0, 0, diagonal}}));
        suppress(image, a, b);
        return image(1, 1);
    };
    // Where the line leaves the block lies the mean of the axial and the diagonal neighbour.
    const auto coarse = GradientOperator0<float>::nonmaxSuppression;
    EXPECT_EQ(left(5, coarse), 4);
    EXPECT_EQ(left(5.5F, coarse), 0);
    // u = 1, v = 1/2: the forward sample is the same mean, and equal norms go.
    const auto fine = GradientOperator0<float>::fineNonmaxSuppression;
    EXPECT_EQ(left(4.5F, fine), 4);
    EXPECT_EQ(left(5, fine), 0);
}

TEST(GradientOperator0, WeakPixelsStayWhereTheyHangTogetherWithAStrongOne)
{
    PixelMatrix<float> image(matrixOf<float>({{9, 9, 9, 9, 9, 9, 9},
                                              {9, 5, 1, 1, 1, 2, 9},
                                              {9, 1, 3, 1, 1, 1, 9},
                                              {9, 1, 1, 2, 1, 1, 9},
                                              {9, 9, 9, 9, 9, 9, 9}}));
    GradientOperator0<float>::hysteresisThresholding(image, 2, 5);
    EXPECT_EQ(image, matrixOf<float>({{9, 9, 9, 9, 9, 9, 9},
                                      {9, 1, 0, 0, 0, 0, 9},
                                      {9, 0, 1, 0, 0, 0, 9},
                                      {9, 0, 0, 1, 0, 0, 9},
                                      {9, 9, 9, 9, 9, 9, 9}}));
}

TEST(GradientOperator0, NegativeBordersDoNotLeadOutOfTheImage)
{
    PixelMatrix<float> image(4, 4);
    image.fill(-3);
    image(1, 1) = 5;
    GradientOperator0<float>::hysteresisThresholding(image, -4, 5);
    EXPECT_EQ(image.range(), vectorOf<float>({1, 1}));
}

TEST(MinFilter0, CubeAndBallAreTheMinimaOfTheirWindows)
{
    std::mt19937 random(14);
    for (int round = 0; round < 25; ++round) {
        const VoxelMatrix<int> in =
            randomVolume<int>(1 + random() % 9, 1 + random() % 9, 1 + random() % 9, random);
        const int radius = static_cast<int>(random() % 5);
        MinFilter0<int> filter;
        filter.setRadius(radius);
        VoxelMatrix<int> out;
        filter.apply(out, in);
        EXPECT_EQ(out, windowed(in, radius, everywhere, smaller<int>));
        filter.setBallMode(true);
        filter.apply(out, in);
        const auto ball = [=](int a, int b, int c) {
            return a * a + b * b + c * c <= radius * radius;
        };
        EXPECT_EQ(out, windowed(in, radius, ball, smaller<int>));
    }
}

TEST(MinFilter0, MaskedElementsAreNeitherSeenNorChanged)
{
    std::mt19937 random(15);
    for (int round = 0; round < 40; ++round) {
        const int size = 1 + static_cast<int>(random() % 30);
        const int radius = 1 + static_cast<int>(random() % 6);
        const Vector<short> in = randomImage<short>(1, size, random)[0];
        Vector<short> mask(size);
        for (int i = 0; i < size; ++i) {
            mask[i] = static_cast<short>(random() % 2);
        }
        Vector<short> expected(in);
        for (int i = 0; i < size; ++i) {
            for (int n = std::max(i - radius, 0); n <= std::min(i + radius, size - 1); ++n) {
                if (mask[i] != 0 && mask[n] != 0) {
                    expected[i] = std::min(expected[i], in[n]);
                }
            }
        }
        MinFilter0<short> filter;
        filter.setRadius(radius);
        Vector<short> out;
        filter.apply(in, out, mask);
        EXPECT_EQ(out, expected);
    }
    PixelMatrix<int> image(matrixOf<int>({{5, 1, 9}, {8, 7, 6}}));
    const PixelMatrix<int> mask(matrixOf<int>({{1, 0, 1}, {1, 1, 1}}));
    MinFilter0<int> filter;
    filter.setMask(mask);
    filter.apply(image);
    EXPECT_EQ(image, matrixOf<int>({{5, 1, 6}, {5, 6, 6}}));
}

TEST(MinFilter0, AWindowLargerThanTheImageSeesAllOfIt)
{
    std::mt19937 random(16);
    PixelMatrix<float> image = randomImage<float>(5, 8, random);
    const float smallest = image.range()[0];
    MinFilter0<float> filter;
    filter.setRadius(std::numeric_limits<int>::max());
    filter.apply(image);
    EXPECT_EQ(image.range(), vectorOf<float>({smallest, smallest}));
    PixelMatrix<float> empty;
    filter.apply(empty);
    EXPECT_EQ(empty.getSize1(), 0);
}

TEST(SumFilter0, WindowsAreSquareDiscCubeOrBall)
{
    std::mt19937 random(17);
    const auto sum = [](double a, double b) { return a + b; };
    for (int radius : {0, 1, 2, 3, 12}) {
        const auto ball = [=](int a, int b, int c) {
            return a * a + b * b + c * c <= radius * radius;
        };
        const VoxelMatrix<double> in = randomVolume<double>(6, 8, 5, random);
        SumFilter0<double> filter;
        filter.setRadius(radius);
        VoxelMatrix<double> cube(in);
        filter.apply(cube);
        EXPECT_EQ(cube, windowed(in, radius, everywhere, sum));
        PixelMatrix<double> square(in[0]);
        filter.apply(square);
        EXPECT_EQ(square, windowed(in[0], radius, everywhere, sum));
        filter.setBallMode(true);
        VoxelMatrix<double> sphere(in);
        filter.apply(sphere);
        EXPECT_EQ(sphere, windowed(in, radius, ball, sum));
        PixelMatrix<double> disc(in[0]);
        filter.apply(disc);
        EXPECT_EQ(disc, windowed(in[0], radius, ball, sum));
    }
}

TEST(NeighbourhoodFilter, OnlyFiltersWithABallModeTakeIt)
{
    NeighbourhoodFilter filter;
    EXPECT_EQ(filter.getRadius(), 1);
    filter.setBallMode(false);
    expectError<ProgramError>([&] { filter.setBallMode(true); },
                              "void NeighbourhoodFilter::setBallMode(const bool)",
                              "This filter does not accept ball mode");
    testing::internal::CaptureStdout();
    filter.setHalfSize(4);
    EXPECT_EQ(filter.getHalfSize(), 4);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("setHalfSize"), std::string::npos);
    EXPECT_EQ(filter.getRadius(), 4);
}
