#include "shape/curves/fourierdescriptors.h"
#include "support/curves.h"
#include "support/errors.h"

#include <complex>
#include <limits>

namespace {

template <class T>
class Descriptors : public testing::Test
{};

using RealTypes = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(Descriptors, RealTypes);

using Complex = std::complex<long double>;

Complex turn(int steps, int n)
{
    return std::polar(1.0L, 2 * std::acos(-1.0L) * (steps % n) / n);
}

/// The spectrum as the sum that defines it.
template <class T>
std::vector<Complex> spectrumOf(const Curve<T>& curve)
{
    const int n = curve.getSize();
    std::vector<Complex> spectrum;
    for (int k = 0; k < n; ++k) {
        Complex sum = 0;
        for (int i = 0; i < n; ++i) {
            sum += Complex(curve[i][0], curve[i][1]) * std::conj(turn(i * k, n));
        }
        spectrum.push_back(sum / static_cast<long double>(n));
    }
    return spectrum;
}

/// The frequencies up to `count` of either sign, added up at vertex `i`.
Complex smoothedAt(const std::vector<Complex>& spectrum, int i, int count)
{
    const int n = static_cast<int>(spectrum.size());
    Complex sum = 0;
    for (int k = 0; k < n; ++k) {
        if (std::min(k, n - k) <= count) {
            sum += spectrum[static_cast<std::size_t>(k)] * turn(i * k, n);
        }
    }
    return sum;
}

TYPED_TEST(Descriptors, FilteringKeepsTheLowestFrequenciesOfEitherSign)
{
    using T = TypeParam;
    std::mt19937 engine(1);
    const FourierDescriptors<T> descriptors;
    const T tolerance = 200 * std::numeric_limits<T>::epsilon();
    for (int n : {1, 2, 3, 4, 7, 12, 25}) {
        const Curve<T> curve = randomCurve<T>(n, 3, false, engine, 3);
        const auto spectrum = spectrumOf(curve);
        long double total = 0;
        for (int k = 1; k < n; ++k) {
            total += std::abs(spectrum[static_cast<std::size_t>(k)]);
        }
        long double kept = 0;
        for (int count = 0; count <= n / 2; ++count) {
            if (count > 0) {
                kept += std::abs(spectrum[static_cast<std::size_t>(count)]) +
                        std::abs(spectrum[static_cast<std::size_t>(n - count)]);
            }
            Curve<T> smooth(curve);
            smooth.detach();
            const T fidelity = descriptors.filter(smooth, count);
            EXPECT_LE(std::abs(fidelity - (count == 0 ? 0 : kept / total)), tolerance);
            for (int i = 0; i < n; ++i) {
                const Complex expected = smoothedAt(spectrum, i, count);
                ASSERT_LE(std::abs(smooth[i][0] - expected.real()), tolerance);
                ASSERT_LE(std::abs(smooth[i][1] - expected.imag()), tolerance);
                ASSERT_EQ(smooth[i][2], curve[i][2]);
            }
            // The share of `count` frequencies, or any less than the next step, asks for as many.
            if (count > 0 && 2 * count < n) {
                Curve<T> again(curve);
                again.detach();
                EXPECT_EQ(descriptors.filter(again, fidelity * T(0.9999)), count);
                EXPECT_EQ(coordinatesOf(again), coordinatesOf(smooth));
            }
        }
        Curve<T> whole(curve);
        whole.detach();
        descriptors.filter(whole, T(1));
        EXPECT_LE(whole.rmsDistance(curve), tolerance);
    }
}

TEST(DescriptorsBackward, MakesAClosedPlaneCurveOfTheSpectrum)
{
    Vector<double> re = vectorOf<double>({30, 5, 0, 0});
    Vector<double> im = vectorOf<double>({-20, 0, 0, 0});
    Curve<double> curve(3, 7, 0, 0, true);
    FourierDescriptors<double>().computeBackward(re, im, curve);
    EXPECT_TRUE(curve.isClosed());
    EXPECT_EQ(coordinatesOf(curve), (std::vector<double>{35, -20, 30, -15, 25, -20, 30, -25}));
}

TEST(DescriptorsErrors, DegenerateInputIsToldOrLeftAlone)
{
    const FourierDescriptors<double> descriptors;
    Vector<double> re = vectorOf<double>({1, 2, 3, 4});
    Vector<double> im = vectorOf<double>({5, 6, 7, 8});
    descriptors.cut(re, im, 2);
    descriptors.cut(re, im, std::numeric_limits<int>::max());
    EXPECT_EQ(re, vectorOf<double>({1, 2, 3, 4}));
    EXPECT_EQ(descriptors.numDescriptorsFromFidelity(re, im, 0), 0);
    EXPECT_THROW(descriptors.cut(re, im, -1), ValueError);
    for (const double share : {1.5, std::nan("")}) {
        EXPECT_THROW(descriptors.numDescriptorsFromFidelity(re, im, share), ValueError);
    }
    Vector<double> longer(5);
    EXPECT_THROW(descriptors.cut(re, longer, 1), SizeError);
    Curve<double> line(1, 3, 0, 0, false);
    EXPECT_THROW(descriptors.filter(line, 1), SizeError);

    Curve<double> none;
    EXPECT_EQ(descriptors.filter(none, 0.5), 0);
    Curve<double> point = curveOf<double>({{3, 4}, {3, 4}}, false);
    EXPECT_EQ(descriptors.filter(point, 1), 1);
    EXPECT_EQ(descriptors.filter(point, 1.0), 0);
    EXPECT_EQ(coordinatesOf(point), (std::vector<double>{3, 4, 3, 4}));
}

} // namespace
