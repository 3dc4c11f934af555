#include "numerics/fouriertransform.h"
#include "support/errors.h"
#include "support/types.h"
#include "support/vectors.h"

#include <array>
#include <cmath>
#include <complex>
#include <limits>

namespace {

template <class T>
class Fourier : public testing::Test
{};

TYPED_TEST_SUITE(Fourier, RealTypes);

/// The sum that defines the transform, over the elements of a table.
template <class T>
std::complex<long double>
definedAt(const Matrix<T>& re, const Matrix<T>& im, int row, int column, int sign)
{
    const int rows = re.getSize1();
    const int columns = re.getSize2();
    std::complex<long double> sum = 0;
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            const long double turns = static_cast<long double>(i * row % rows) / rows +
                                      static_cast<long double>(j * column % columns) / columns;
            sum += std::complex<long double>(re(i, j), im(i, j)) *
                   std::polar(1.0L, sign * 2 * std::acos(-1.0L) * turns);
        }
    }
    return sum;
}

template <class T>
void expectDefined(const Matrix<T>& re,
                   const Matrix<T>& im,
                   const Matrix<T>& gotRe,
                   const Matrix<T>& gotIm,
                   int sign)
{
    const int rows = re.getSize1();
    const int columns = re.getSize2();
    const T tolerance = std::numeric_limits<T>::epsilon() * static_cast<T>(8 * rows * columns);
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            const std::complex<long double> got(gotRe(i, j), gotIm(i, j));
            ASSERT_LE(std::abs(got - definedAt(re, im, i, j, sign)), tolerance) << i << ' ' << j;
        }
    }
}

TYPED_TEST(Fourier, IsTheSumThatDefinesIt)
{
    using T = TypeParam;
    std::mt19937 engine(1);
    const FourierTransform<T> fourier;
    for (int n = 0; n < 50; ++n) {
        const int rows = std::array{1, 2, 3, 7, 8}[static_cast<std::size_t>(n % 5)];
        const int columns = std::array{1, 2, 5, 12, 17}[static_cast<std::size_t>(n / 5 % 5)];
        const int sign = n < 25 ? -1 : 1;
        const auto compute = [&](auto& re, auto& im) {
            sign < 0 ? fourier.computeForward(re, im) : fourier.computeBackward(re, im);
        };
        const Matrix<T> re = randomMatrix<T>(rows, columns, engine);
        const Matrix<T> im = randomMatrix<T>(rows, columns, engine);
        Matrix<T> gotRe = re;
        Matrix<T> gotIm = im;
        compute(gotRe, gotIm);
        expectDefined(re, im, gotRe, gotIm, sign);
        Vector<T> lineRe = re[0];
        Vector<T> lineIm = im[0];
        compute(lineRe, lineIm);
        expectDefined(Matrix<T>(re[0], true), Matrix<T>(im[0], true), Matrix<T>(lineRe, true),
                      Matrix<T>(lineIm, true), sign);
    }
    Vector<T> none;
    Matrix<T> noRows(0, 3);
    fourier.computeForward(none, none);
    fourier.computeBackward(noRows, noRows);
}

TYPED_TEST(Fourier, ShiftingPutsTheZeroFrequencyInTheMiddle)
{
    using T = TypeParam;
    const FourierTransform<T> fourier;
    Vector<T> re = vectorOf<T>({0, 1, 2, 3, 4});
    Vector<T> im = re * T(10);
    fourier.shift(re, im);
    EXPECT_EQ(re, vectorOf<T>({3, 4, 0, 1, 2}));
    EXPECT_EQ(im, vectorOf<T>({30, 40, 0, 10, 20}));
    for (int n = 0; n < 49; ++n) {
        const int rows = n % 7;
        const int columns = n / 7;
        // Images keep their elements in one block.
        Matrix<T> shifted(0, 0);
        shifted.setSize(rows, columns, true);
        const Matrix<T> before =
            matrixFrom<T>(rows, columns, [](int i, int j) { return 100 * i + j; });
        shifted = before;
        Matrix<T> twin = -shifted;
        fourier.shift(shifted, twin);
        const Matrix<T> expected = matrixFrom<T>(rows, columns, [&](int i, int j) {
            return before((i + rows - rows / 2) % rows, (j + columns - columns / 2) % columns);
        });
        EXPECT_EQ(shifted, expected);
        EXPECT_EQ(twin, -expected);
        fourier.ishift(shifted, twin);
        EXPECT_EQ(shifted, before);
        EXPECT_EQ(twin, -before);
    }
}

TYPED_TEST(Fourier, TellsPowerAndPhase)
{
    using T = TypeParam;
    const FourierTransform<T> fourier;
    const Vector<T> re = vectorOf<T>({3, -1, 0, -2});
    const Vector<T> im = vectorOf<T>({4, 0, -5, 2});
    Vector<T> out;
    fourier.powerSpectrum(out, re, im);
    EXPECT_EQ(out, vectorOf<T>({25, 1, 25, 8}));
    Matrix<T> angles;
    fourier.phaseAngle(angles, Matrix<T>(re, false), Matrix<T>(im, false));
    EXPECT_EQ(angles.getColumn(0), vectorFrom<T>(4, [&](int i) {
                  return std::atan2(static_cast<double>(im[i]), static_cast<double>(re[i]));
              }));
    out = re;
    fourier.phaseAngle(out, out, im);
    EXPECT_EQ(out, angles.getColumn(0));
}

TEST(FourierErrors, PartsOfDifferentSizesAreRefused)
{
    const FourierTransform<double> fourier;
    const auto expectRefused = [&](auto a, auto b) {
        auto out = a;
        EXPECT_RAISES(SizeError, "void FourierTransform<T>::computeForward(...) const",
                      "Real and imaginary parts have different sizes",
                      fourier.computeForward(a, b));
        EXPECT_THROW(fourier.computeBackward(a, b), SizeError);
        EXPECT_THROW(fourier.shift(a, b), SizeError);
        EXPECT_THROW(fourier.ishift(a, b), SizeError);
        EXPECT_THROW(fourier.powerSpectrum(out, a, b), SizeError);
        EXPECT_THROW(fourier.phaseAngle(out, a, b), SizeError);
    };
    expectRefused(Vector<double>(3), Vector<double>(4));
    expectRefused(Matrix<double>(2, 3), Matrix<double>(3, 2));
}

} // namespace
