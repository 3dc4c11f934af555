#include "image/filters/bytegradient.h"

#include "image/filters/gaussiangradient0.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>

namespace {

/// The kernels of the gradient along the second index.
class Kernels : private GaussianGradient0<float>
{
public:
    explicit Kernels(float width)
        : GaussianGradient0<float>(width)
    {}

    std::vector<float> smoothing() const { return reversed(filter2_.getKernel1()); }

    std::vector<float> derivative() const { return reversed(filter2_.getKernel2()); }

private:
    static std::vector<float> reversed(const Vector<float>& kernel)
    {
        std::vector<float> weights = kernel.toStlVector();
        std::reverse(weights.begin(), weights.end());
        return weights;
    }
};

/// Works on one strip of columns. The middle tap of the derivative is 0 and left out.
template <int half>
class Strip
{
public:
    Strip(const std::vector<float>& smoothing, const std::vector<float>& derivative)
    {
        std::copy_n(smoothing.begin(), taps, smoothing_);
        std::copy_n(derivative.begin(), taps, derivative_);
    }

    static constexpr int width = 512;

    void apply(const BytePlane& image, BytePlane& norm, int begin)
    {
        const int columns = std::min(width, image.columns() - begin);
        for (int i = -half; i < image.rows() + half; ++i) {
            filterRow(image, i, begin, columns);
            if (i >= half) {
                writeNorm(norm.row(i - half) + begin, i - half, columns);
            }
        }
    }

private:
    static constexpr int taps = 2 * half + 1;

    /// The place in the ring of a row, which may lie above the image.
    static int slot(int i) { return (i + taps) % taps; }

    /// Both filters along a row; 0 for a row outside.
    void filterRow(const BytePlane& image, int i, int begin, int columns)
    {
        float* __restrict smoothed = smoothed_[slot(i)];
        float* __restrict derived = derived_[slot(i)];
        if (i < 0 || i >= image.rows()) {
            std::fill_n(smoothed, columns, 0.0f);
            std::fill_n(derived, columns, 0.0f);
            return;
        }
        loadRow(image, i, begin, columns);
        const float* __restrict samples = samples_;
        for (int j = 0; j < columns; ++j) {
            float s = 0.0f;
            float d = 0.0f;
#pragma GCC unroll 16
            for (int m = 0; m < taps; ++m) {
                s += samples[j + m] * smoothing_[m];
                if (m != half) {
                    d += samples[j + m] * derivative_[m];
                }
            }
            smoothed[j] = s;
            derived[j] = d;
        }
    }

    /// The samples of the strip and `half` more on both sides, 0 outside the image.
    void loadRow(const BytePlane& image, int i, int begin, int columns)
    {
        const int first = std::max(begin - half, 0);
        const int last = std::min(begin + columns + half, image.columns());
        float* samples = samples_ + (first - begin + half);
        const std::uint8_t* bytes = image.row(i) + first;
        std::fill(samples_, samples, 0.0f);
        for (int j = 0; j < last - first; ++j) {
            samples[j] = static_cast<float>(bytes[j]);
        }
        std::fill(samples + (last - first), samples_ + columns + 2 * half, 0.0f);
    }

    /// Both filters down the columns, and their norm.
    void writeNorm(std::uint8_t* __restrict norm, int i, int columns)
    {
        const float* smoothed[taps];
        const float* derived[taps];
        for (int m = 0; m < taps; ++m) {
            smoothed[m] = smoothed_[slot(i - half + m)];
            derived[m] = derived_[slot(i - half + m)];
        }
        float* __restrict squares = squares_;
        for (int j = 0; j < columns; ++j) {
            float h = 0.0f;
            float v = 0.0f;
#pragma GCC unroll 16
            for (int m = 0; m < taps; ++m) {
                h += derived[m][j] * smoothing_[m];
                if (m != half) {
                    v += smoothed[m][j] * derivative_[m];
                }
            }
            squares[j] = h * h + v * v;
        }
        for (int j = 0; j < columns; ++j) {
            const float root = std::sqrt(squares[j]);
            norm[j] = static_cast<std::uint8_t>(static_cast<int>(root < 255.0f ? root : 255.0f));
        }
    }

    float smoothing_[taps];
    float derivative_[taps];
    float samples_[width + 2 * half];
    float squares_[width];
    float smoothed_[taps][width];
    float derived_[taps][width];
};

template <int half>
BytePlane gradientOf(const BytePlane& image,
                     const std::vector<float>& smoothing,
                     const std::vector<float>& derivative)
{
    BytePlane norm(image.rows(), image.columns());
    Strip<half> strip(smoothing, derivative);
    for (int begin = 0; begin < image.columns(); begin += Strip<half>::width) {
        strip.apply(image, norm, begin);
    }
    return norm;
}

} // namespace

ByteGradient::ByteGradient(float sigma)
{
    if (sigma != 1.0f && sigma != 3.5f) {
        raise<ValueError>("ByteGradient::ByteGradient(float)", "Sigma must be 1 or 3.5");
    }
    const Kernels kernels(sigma);
    smoothing_ = kernels.smoothing();
    derivative_ = kernels.derivative();
}

BytePlane ByteGradient::apply(const BytePlane& image) const
{
    return smoothing_.size() == 5 ? gradientOf<2>(image, smoothing_, derivative_)
                                  : gradientOf<7>(image, smoothing_, derivative_);
}
