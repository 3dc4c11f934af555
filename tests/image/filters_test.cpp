#include "image/filters/gaussiangradient0.h"
#include "image/filters/minfilter0.h"
#include "image/filters/separablefilter0.h"
#include "image/filters/sumfilter0.h"
#include "support/errors.h"
#include "support/images.h"
#include "support/types.h"

#include <cmath>
#include <limits>

namespace {

template <class T>
VoxelMatrix<T> randomVolume(int rows, int columns, int planes, std::mt19937& random)
{
    return volumeFrom<T>(rows, columns, planes,
                         [&](int, int, int) { return randomInt(-100, 100, random); });
}

template <class T>
PixelMatrix<T> randomImage(int rows, int columns, std::mt19937& random)
{
    return randomVolume<T>(rows, columns, 1, random)[0];
}

/// Combines the voxels within a cube or ball, cut at the border.
template <class T, class Combine>
VoxelMatrix<T> windowed(const VoxelMatrix<T>& in, int r, bool ball, Combine combine)
{
    return volumeFrom<T>(in.getSize1(), in.getSize2(), in.getSize3(), [&](int i, int j, int k) {
        T result = in(i, j, k);
        const int side = 2 * r + 1;
        for (int n = 0; n < side * side * side; ++n) {
            const int dr = n % side - r;
            const int dc = n / side % side - r;
            const int dk = n / side / side - r;
            const int square = dr * dr + dc * dc + dk * dk;
            if (square > 0 && (!ball || square <= r * r) && in.contains(i + dr, j + dc, k + dk)) {
                result = combine(result, in(i + dr, j + dc, k + dk));
            }
        }
        return result;
    });
}

template <class T, class Combine>
PixelMatrix<T> windowed(const PixelMatrix<T>& in, int radius, bool ball, Combine combine)
{
    VoxelMatrix<T> volume(in.getSize1(), in.getSize2(), 1);
    volume[0] = in;
    return windowed(volume, radius, ball, combine)[0];
}

template <class T>
T smaller(T a, T b)
{
    return std::min(a, b);
}

/// The voxels along the third axis.
template <class T>
Vector<T> depthLine(const VoxelMatrix<T>& volume, int i, int j)
{
    return vectorFrom<T>(volume.getSize3(), [&](int k) { return volume(i, j, k); });
}

PixelMatrix<float> constant(float value)
{
    return imageFrom<float>(3, 3, [=](int, int) { return value; });
}

template <class T>
class FilterOf : public testing::Test
{};

TYPED_TEST_SUITE(FilterOf, ElementTypes);

} // namespace

TYPED_TEST(FilterOf, LinesAreConvolvedAndSquareMinimaAreThoseOfTheWindow)
{
    using T = TypeParam;
    std::mt19937 random(11);
    for (int round = 0; round < 30; ++round) {
        const PixelMatrix<T> in =
            randomImage<T>(randomInt(1, 20, random), randomInt(1, 20, random), random);
        SeparableFilter0<T> filter;
        Vector<T> kernels[2];
        for (Vector<T>& kernel : kernels) {
            kernel = randomImage<T>(1, 1 + 2 * randomInt(0, 13, random), random)[0];
            kernel /= T(7);
        }
        filter.setVMask(kernels[0]);
        filter.setHMask(kernels[1]);
        filter.setDivideBy(T(3));
        PixelMatrix<T> expected(in);
        for (int i = 0; i < in.getSize1(); ++i) {
            expected[i] = expected[i].conv(kernels[1]);
        }
        for (int j = 0; j < in.getSize2(); ++j) {
            expected.setColumn(j, expected.getColumn(j).conv(kernels[0]));
        }
        expected /= T(3);
        PixelMatrix<T> out(in);
        filter.apply(out);
        EXPECT_EQ(out, expected);
        MinFilter0<T> minimum;
        minimum.setRadius(round % 7);
        minimum.apply(out, in);
        EXPECT_EQ(out, windowed(in, round % 7, false, smaller<T>)) << "radius " << round % 7;
    }
}

TEST(SeparableFilter0, VolumesAreFilteredAlongThreeAxes)
{
    std::mt19937 random(13);
    const VoxelMatrix<float> in = randomVolume<float>(7, 6, 9, random);
    VoxelMatrix<float> volume(in);
    SeparableFilter0<float> filter;
    const Vector<float> kernel = randomVector<float>(5, random);
    filter.setKernel3(kernel);
    filter.setMultiplyBy(2);
    filter.apply(volume);
    for (int n = 0; n < 7 * 6; ++n) {
        EXPECT_EQ(depthLine(volume, n / 6, n % 6), depthLine(in, n / 6, n % 6).conv(kernel) * 2.0F);
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
    EXPECT_RAISES(ValueError, "void SeparableFilterBase<T>::setKernel1(const Vector<T>&)",
                  "The kernel has an even size", filter.setKernel1(Vector<double>(4)));
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
        const auto g = [=](int i) { return std::exp(-0.5 * i * i / (sigma * sigma)); };
        double smooth = 0;
        double slopes = 0;
        for (int i = -half; i <= half; ++i) {
            smooth += g(i);
            slopes += std::max(i, 0) * g(i);
        }
        for (int i = -half; i <= half; ++i) {
            EXPECT_NEAR(impulse(half, half + i), -i * g(i) / slopes / smooth, 1e-14);
        }
    }
    for (const float sigma : {0.0F, -1.0F, 0.01F, 1e7F, std::nanf("")}) {
        EXPECT_THROW(GaussianGradient0<float>{sigma}, ValueError) << sigma;
    }
    EXPECT_THROW(GaussianGradient0<int>{2}, TypeError);
}

TEST(GaussianGradient0, AStepHasTheGradientOfItsHeight)
{
    PixelMatrix<float> image =
        imageFrom<float>(60, 60, [](int, int j) { return j < 30 ? 20 : 120; });
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

TEST(GradientOperator0, InteriorPixelsAreThinnedByTheNeighboursTold)
{
    // One pixel with all combinations of signs and of the larger component, against the neighbours
    // that each operation compares it with.
    struct Case
    {
        float p, q;
        int row4, column4, row8, column8;
    };

    const Case cases[] = {{1, 3, 0, 1, 2, 1},  {1, -3, 2, 1, 2, 1},  {3, 1, 1, 0, 1, 2},
                          {0, 0, 1, 2, 0, 2},  {-1, -3, 0, 1, 2, 1}, {-1, 3, 2, 1, 2, 1},
                          {-3, 1, 1, 2, 1, 2}, {3, 2, 1, 0, 2, 2},   {3, -2, 1, 0, 0, 2},
                          {-2, 3, 2, 1, 0, 2}};
    const auto left = [](const Case& c, auto suppress, int row, int column, float value) {
        PixelMatrix<float> image = constant(0);
        image(1, 1) = 5;
        image(row, column) = value;
        suppress(image, constant(c.p), constant(c.q));
        return image(1, 1);
    };
    const auto four = GradientOperator0<float>::nonmaxSuppressionN4;
    const auto eight = GradientOperator0<float>::nonmaxSuppressionN8;
    for (const Case& c : cases) {
        EXPECT_EQ(left(c, four, c.row4, c.column4, 5), 5) << c.p << ", " << c.q;
        EXPECT_EQ(left(c, four, c.row4, c.column4, 6), 0);
        EXPECT_EQ(left(c, four, 2 - c.row4, 2 - c.column4, 5), 0);
        EXPECT_EQ(left(c, eight, c.row8, c.column8, 5), 5) << c.p << ", " << c.q;
        EXPECT_EQ(left(c, eight, c.row8, c.column8, 6), 0);
        EXPECT_EQ(left(c, eight, 2 - c.row8, 2 - c.column8, 6), 0);
    }
}

TEST(GradientOperator0, InterpolatedThinningLooksAlongTheGradient)
{
    const auto left = [](float diagonal, auto suppress) {
        PixelMatrix<float> image(matrixOf<float>({{0, 0, 0}, {0, 4, 3}, {0, 0, diagonal}}));
        suppress(image, constant(4), constant(2));
        return image(1, 1);
    };
    // Where the line leaves the block lies the mean of the axial and the diagonal neighbour.
    const auto coarse = GradientOperator0<float>::nonmaxSuppression;
    EXPECT_EQ(left(5, coarse), 4);
    EXPECT_EQ(left(5.5F, coarse), 0);
    // u = 1, v = 1/2: the forward sample is the same mean, and equal norms go.
    const auto fine = [](auto& image, const auto& a, const auto& b) {
        GradientOperator0<float>::fineNonmaxSuppression(image, a, b);
    };
    EXPECT_EQ(left(4.5F, fine), 4);
    EXPECT_EQ(left(5, fine), 0);
    // By the direction: u and v are 0.8 and 0.6, the sample is 1.28 + 0.48 of the diagonal.
    const auto turned = [](auto& image, const auto&, const auto&) {
        GradientOperator0<float>::fineNonmaxSuppression(image, constant(std::atan2(0.6F, 0.8F)));
    };
    EXPECT_EQ(left(5.6F, turned), 4);
    EXPECT_EQ(left(5.9F, turned), 0);
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
    // Negative borders do not lead out of the image.
    image.setSize(4, 4);
    image.fill(-3);
    image(1, 1) = 5;
    GradientOperator0<float>::hysteresisThresholding(image, -4, 5);
    EXPECT_EQ(image.range(), vectorOf<float>({1, 1}));
}

TEST(NeighbourhoodFilter, WindowsAreSquareDiscCubeOrBall)
{
    std::mt19937 random(14);
    const auto sum = [](double a, double b) { return a + b; };
    for (int round = 0; round < 50; ++round) {
        const int radius = round == 0 ? 12 : round / 2 % 5;
        const bool ball = round % 2 == 0;
        SCOPED_TRACE(radius);
        const VoxelMatrix<double> in = randomVolume<double>(
            randomInt(1, 9, random), randomInt(1, 9, random), randomInt(1, 9, random), random);
        VoxelMatrix<double> out;
        MinFilter0<double> minimum;
        minimum.setRadius(radius);
        minimum.setBallMode(ball);
        minimum.apply(out, in);
        EXPECT_EQ(out, windowed(in, radius, ball, smaller<double>));
        SumFilter0<double> filter;
        filter.setRadius(radius);
        filter.setBallMode(ball);
        out = in;
        filter.apply(out);
        EXPECT_EQ(out, windowed(in, radius, ball, sum));
        PixelMatrix<double> plane(in[0]);
        filter.apply(plane);
        EXPECT_EQ(plane, windowed(in[0], radius, ball, sum));
    }
}

TEST(MinFilter0, MaskedElementsAreNeitherSeenNorChanged)
{
    std::mt19937 random(15);
    for (int round = 0; round < 40; ++round) {
        const int size = randomInt(1, 30, random);
        const int radius = randomInt(1, 6, random);
        const Vector<short> in = randomImage<short>(1, size, random)[0];
        const Vector<short> mask =
            vectorFrom<short>(size, [&](int) { return randomInt(0, 1, random); });
        MinFilter0<short> filter;
        filter.setRadius(radius);
        Vector<short> out;
        filter.apply(in, out, mask);
        EXPECT_EQ(out, vectorFrom<short>(size, [&](int i) {
                      short smallest = in[i];
                      for (int n = 0; n < size; ++n) {
                          if (mask[i] != 0 && mask[n] != 0 && std::abs(n - i) <= radius) {
                              smallest = std::min(smallest, in[n]);
                          }
                      }
                      return smallest;
                  }));
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

TEST(NeighbourhoodFilter, OnlyFiltersWithABallModeTakeIt)
{
    NeighbourhoodFilter filter;
    EXPECT_EQ(filter.getRadius(), 1);
    filter.setBallMode(false);
    EXPECT_RAISES(ProgramError, "void NeighbourhoodFilter::setBallMode(const bool)",
                  "This filter does not accept ball mode", filter.setBallMode(true));
    testing::internal::CaptureStdout();
    filter.setHalfSize(4);
    EXPECT_EQ(filter.getHalfSize(), 4);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("setHalfSize"), std::string::npos);
    EXPECT_EQ(filter.getRadius(), 4);
}
