#include "numerics/fouriertransform.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>

namespace {

template <class T>
class Fourier : public testing::Test
{};

using RealTypes = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(Fourier, RealTypes);

/// The sum that defines the transform, over the elements of a table of `rows` rows.
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
            const std::complex<long double> value(re(i, j), im(i, j));
            sum += value * std::polar(1.0L, sign * 2 * std::acos(-1.0L) * turns);
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
    const T tolerance =
        std::numeric_limits<T>::epsilon() * static_cast<T>(8 * re.getSize1() * re.getSize2());
    for (int i = 0; i < re.getSize1(); ++i) {
        for (int j = 0; j < re.getSize2(); ++j) {
            const auto expected = definedAt(re, im, i, j, sign);
            ASSERT_LE(std::abs(gotRe(i, j) - expected.real()), tolerance) << i << ' ' << j;
            ASSERT_LE(std::abs(gotIm(i, j) - expected.imag()), tolerance) << i << ' ' << j;
        }
    }
}

TYPED_TEST(Fourier, IsTheSumThatDefinesIt)
{
    using T = TypeParam;
    std::mt19937 engine(1);
    const FourierTransform<T> fourier;
    for (int rows : {1, 2, 3, 7, 8}) {
        for (int columns : {1, 2, 5, 12, 17}) {
            const Matrix<T> re = randomMatrix<T>(rows, columns, engine);
            const Matrix<T> im = randomMatrix<T>(rows, columns, engine);
            Matrix<T> gotRe = re;
            Matrix<T> gotIm = im;
            fourier.computeForward(gotRe, gotIm);
            expectDefined(re, im, gotRe, gotIm, -1);
            gotRe = re;
            gotIm = im;
            fourier.computeBackward(gotRe, gotIm);
            expectDefined(re, im, gotRe, gotIm, 1);
            if (rows == 1) {
                Vector<T> vectorRe = re[0];
                Vector<T> vectorIm = im[0];
                fourier.computeForward(vectorRe, vectorIm);
                expectDefined(re, im, Matrix<T>(vectorRe, true), Matrix<T>(vectorIm, true), -1);
                fourier.computeBackward(vectorRe, vectorIm);
                for (int i = 0; i < columns; ++i) {
                    EXPECT_LE(std::abs(vectorRe[i] - re[0][i] * columns),
                              16 * columns * std::numeric_limits<T>::epsilon());
                }
            }
        }
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
    for (int rows = 0; rows < 7; ++rows) {
        for (int columns = 0; columns < 7; ++columns) {
            // Images keep their elements in one block.
            Matrix<T> block(0, 0);
            block.setSize(rows, columns, true);
            for (int i = 0; i < rows; ++i) {
                block[i].setSequence(static_cast<T>(100 * i), 1);
            }
            Matrix<T> shifted = block;
            Matrix<T> twin = block;
            fourier.shift(shifted, twin);
            for (int i = 0; i < rows; ++i) {
                for (int j = 0; j < columns; ++j) {
                    const int row = (i + rows / 2) % rows;
                    const int column = (j + columns / 2) % columns;
                    EXPECT_EQ(shifted(row, column), block(i, j));
                    EXPECT_EQ(twin(row, column), block(i, j));
                }
            }
            fourier.ishift(shifted, twin);
            for (int i = 0; i < rows; ++i) {
                EXPECT_EQ(shifted[i], block[i]);
                EXPECT_EQ(twin[i], block[i]);
            }
        }
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
    const double expected[] = {std::atan2(4, 3), M_PI, -M_PI / 2, 3 * M_PI / 4};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(angles(i, 0), static_cast<T>(expected[i]));
    }
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
