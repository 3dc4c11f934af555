#include "numerics/histogram.h"

#include <cmath>
#include <type_traits>

namespace {

/// The bin of `value`, or -1 for anything outside.
template <class T>
int binOf(T value, T min, T binWidth, int numBins)
{
    if constexpr (std::is_floating_point_v<T>) {
        const T bin = std::floor((value - min) / binWidth);
        return bin >= 0 && bin < static_cast<T>(numBins) ? static_cast<int>(bin) : -1;
    } else {
        const long long bin =
            (static_cast<long long>(value) - static_cast<long long>(min)) / binWidth;
        return bin >= 0 && bin < numBins ? static_cast<int>(bin) : -1;
    }
}

} // namespace

template <class T>
void Histogram<T>::init(T min, T binWidth, int numBins)
{
    counts_.setZeros(numBins);
    min_ = min;
    binWidth_ = binWidth;
}

template <class T>
const Vector<int>& Histogram<T>::compute(const Vector<T>& values)
{
    if (std::is_integral_v<T> && binWidth_ == 0 && numBins() > 0) {
        raise<ValueError>("const Vector<int>& Histogram<T>::compute(const Vector<T>&)",
                          "The bin width is 0");
    }
    counts_.setZeros();
    if (numBins() == 0) {
        return counts_;
    }
    for (int i = 0; i < values.getSize(); ++i) {
        const int bin = binOf(values[i], min_, binWidth_, numBins());
        if (bin >= 0) {
            ++counts_[bin];
        }
    }
    return counts_;
}

template class Histogram<unsigned char>;
template class Histogram<unsigned short>;
template class Histogram<unsigned int>;
template class Histogram<short>;
template class Histogram<int>;
template class Histogram<float>;
template class Histogram<double>;
