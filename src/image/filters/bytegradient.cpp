#include "image/filters/bytegradient.h"

#include "image/filters/gaussiangradient0.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

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

/// Four neighbouring columns, as wide as the vector registers of every machine of today.
using Four = float __attribute__((vector_size(16)));
constexpr int lanes = 4;

Four load(const float* samples)
{
    Four four;
    std::memcpy(&four, samples, sizeof four);
    return four;
}

void store(float* samples, Four four)
{
    std::memcpy(samples, &four, sizeof four);
}

/// A weight in all lanes.
std::vector<Four> spread(const std::vector<float>& weights)
{
    std::vector<Four> result;
    for (const float weight : weights) {
        result.push_back(Four{weight, weight, weight, weight});
    }
    return result;
}

/// Works on one strip of columns.
class Strip
{
public:
    static constexpr int width = 512;

    Strip(const std::vector<float>& smoothing, const std::vector<float>& derivative)
        : taps_(static_cast<int>(smoothing.size()))
        , half_(taps_ / 2)
        , smoothing_(spread(smoothing))
        , derivative_(spread(derivative))
        , samples_(static_cast<std::size_t>(width + taps_))
        , squares_(width)
        , smoothed_(static_cast<std::size_t>(taps_ * width))
        , derived_(static_cast<std::size_t>(taps_ * width))
        , smoothedRows_(static_cast<std::size_t>(taps_))
        , derivedRows_(static_cast<std::size_t>(taps_))
    {}

    void apply(const BytePlane& image, BytePlane& norm, int begin)
    {
        const int columns = std::min(width, image.columns() - begin);
        for (int i = -half_; i < image.rows() + half_; ++i) {
            filterRow(image, i, begin, columns);
            if (i >= half_) {
                writeNorm(norm.row(i - half_) + begin, i - half_, columns);
            }
        }
    }

private:
    /// The place in the ring of a row, which may lie above the image.
    std::size_t slot(int i) const
    {
        return static_cast<std::size_t>((i + taps_) % taps_) * static_cast<std::size_t>(width);
    }

    /// Both filters along a row; 0 for a row outside.
    void filterRow(const BytePlane& image, int i, int begin, int columns)
    {
        float* const smoothed = smoothed_.data() + slot(i);
        float* const derived = derived_.data() + slot(i);
        if (i < 0 || i >= image.rows()) {
            std::fill_n(smoothed, width, 0.0f);
            std::fill_n(derived, width, 0.0f);
            return;
        }
        loadRow(image, i, begin, columns);
        for (int j = 0; j < columns; j += lanes) {
            Four s = {};
            Four d = {};
            for (int m = 0; m < taps_; ++m) {
                const Four sample = load(samples_.data() + j + m);
                s += sample * smoothing_[static_cast<std::size_t>(m)];
                d += sample * derivative_[static_cast<std::size_t>(m)];
            }
            store(smoothed + j, s);
            store(derived + j, d);
        }
    }

    /// The samples of the strip and those around that the kernels reach, 0 outside the image.
    void loadRow(const BytePlane& image, int i, int begin, int columns)
    {
        const int first = std::max(begin - half_, 0);
        const int last = std::min(begin + columns + half_, image.columns());
        float* const samples = samples_.data() + (first - begin + half_);
        const std::uint8_t* const bytes = image.row(i) + first;
        std::fill(samples_.data(), samples, 0.0f);
        for (int j = 0; j < last - first; ++j) {
            samples[j] = static_cast<float>(bytes[j]);
        }
        std::fill(samples + (last - first), samples_.data() + samples_.size(), 0.0f);
    }

    /// Both filters down the columns, and their norm.
    void writeNorm(std::uint8_t* norm, int i, int columns)
    {
        for (int m = 0; m < taps_; ++m) {
            smoothedRows_[static_cast<std::size_t>(m)] = smoothed_.data() + slot(i - half_ + m);
            derivedRows_[static_cast<std::size_t>(m)] = derived_.data() + slot(i - half_ + m);
        }
        for (int j = 0; j < columns; j += lanes) {
            Four h = {};
            Four v = {};
            for (std::size_t m = 0; m < smoothing_.size(); ++m) {
                h += load(derivedRows_[m] + j) * smoothing_[m];
                v += load(smoothedRows_[m] + j) * derivative_[m];
            }
            store(squares_.data() + j, h * h + v * v);
        }
        const float* const squares = squares_.data();
        for (int j = 0; j < columns; ++j) {
            const float root = std::sqrt(squares[j]);
            norm[j] = static_cast<std::uint8_t>(static_cast<int>(root < 255.0f ? root : 255.0f));
        }
    }

    int taps_;
    int half_;
    std::vector<Four> smoothing_;
    std::vector<Four> derivative_;
    std::vector<float> samples_;
    std::vector<float> squares_;
    std::vector<float> smoothed_;
    std::vector<float> derived_;
    std::vector<const float*> smoothedRows_;
    std::vector<const float*> derivedRows_;
};

} // namespace

ByteGradient::ByteGradient(float sigma)
{
    const Kernels kernels(sigma);
    smoothing_ = kernels.smoothing();
    derivative_ = kernels.derivative();
}

BytePlane ByteGradient::apply(const BytePlane& image) const
{
    BytePlane norm(image.rows(), image.columns());
    Strip strip(smoothing_, derivative_);
    for (int begin = 0; begin < image.columns(); begin += Strip::width) {
        strip.apply(image, norm, begin);
    }
    return norm;
}
