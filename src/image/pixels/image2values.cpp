// Part of `Image2`: the samples of the current frame: element access, statistics, filling.

#include "image/pixels/image2.h"
#include "image/pixels/image2mapper.h"
#include "numerics/histogram.h"
#include "numerics/numbers.h"
#include "numerics/scalar.h"
#include "system/exception.h"

#include <algorithm>
#include <type_traits>

void Image2::requireType(ValueType type, const char* where) const
{
    if (type != valueType_) {
        raise<TypeError>(where, "The image has another value type");
    }
}

template <class T>
T* Image2::samplesOf(int channel, int timepoint, const char* where) const
{
    requireType(valueTypeOf<T>(), where);
    return reinterpret_cast<T*>(const_cast<unsigned char*>(frame(channel, timepoint)));
}

template <class T>
Vector<T> Image2::asVector(int channel, int timepoint)
{
    T* const samples =
        samplesOf<T>(channel, timepoint, "Vector<T> Image2::asVector(const int, const int)");
    if (samples == nullptr) {
        return Vector<T>();
    }
    return Vector<T>(static_cast<int>(elementsPerFrame()) * samples_, samples);
}

template <class T>
const Vector<T> Image2::asVector(int channel, int timepoint) const
{
    T* const samples =
        samplesOf<T>(channel, timepoint, "Vector<T> Image2::asVector(const int, const int) const");
    if (samples == nullptr) {
        return Vector<T>();
    }
    return Vector<T>(static_cast<int>(elementsPerFrame()) * samples_, samples);
}

template <class T>
Vector<T> Image2::asVector()
{
    return asVector<T>(currentChannel_, currentTimepoint_);
}

template <class T>
const Vector<T> Image2::asVector() const
{
    return asVector<T>(currentChannel_, currentTimepoint_);
}

template <class T>
void Image2::fill(T value)
{
    Vector<T> samples = asVector<T>();
    std::fill_n(samples.data(), samples.getSize(), value);
}

void Image2::clear()
{
    withValueType(
        valueType_, [this](auto sample) { fill(typename decltype(sample)::type(0)); },
        [] { raise<FatalError>("void Image2::clear()", "unknown value type"); });
}

template <class T>
Histogram<T> Image2::histogram(T min, T max, int bins) const
{
    if (bins < 1 || !(min < max)) {
        raise<ValueError>("Histogram<T> Image2::histogram(const T, const T, const int) const",
                          "A histogram needs a range and at least one bin");
    }
    T width;
    if constexpr (std::is_integral_v<T>) {
        const long long values = static_cast<long long>(max) - static_cast<long long>(min) + 1;
        width = static_cast<T>((values + bins - 1) / bins);
    } else {
        width = (max - min) / static_cast<T>(bins);
    }
    Histogram<T> histogram;
    histogram.init(min, width, bins);
    histogram.compute(asVector<T>());
    return histogram;
}

Numbers<Scalar> Image2::numbers() const
{
    const char* const where = "Numbers<Scalar> Image2::numbers() const";
    return withValueType(
        valueType_,
        [&](auto sample) {
            using T = typename decltype(sample)::type;
            const T* const samples = samplesOf<T>(currentChannel_, currentTimepoint_, where);
            if (samples == nullptr) {
                raise<SizeError>(where, "This image is empty");
            }
            const auto [least, largest] =
                std::minmax_element(samples, samples + elementsPerFrame());
            Numbers<Scalar> numbers;
            numbers.setMinimum(Scalar(*least));
            numbers.setMaximum(Scalar(*largest));
            return numbers;
        },
        [where]() -> Numbers<Scalar> { raise<FatalError>(where, "unknown value type"); });
}

/// The sample at a position of the current frame.
template <class T>
T& Image2::element(int index) const
{
    return samplesOf<T>(currentChannel_, currentTimepoint_, "T Image2::getValue(...) const")[index];
}

template <class T>
void Image2::setValue(int i, int j, T value)
{
    element<T>(mapper_->encode(i, j)) = value;
}

template <class T>
void Image2::setValue(const Vector<int>& position, T value)
{
    element<T>(mapper_->encode(position)) = value;
}

template <class T>
T Image2::getValue(int i, int j) const
{
    return element<T>(mapper_->encode(i, j));
}

template <class T>
T Image2::getValue(int i, int j, int k) const
{
    return element<T>(mapper_->encode(i, j, k));
}

template <class T>
T Image2::getValue(const Vector<int>& position) const
{
    return element<T>(mapper_->encode(position));
}

template <class T>
void Image2::setRedValue(int i, int j, T value)
{
    element<T>(mapper_->encode(i, j, ColorChannel::Red)) = value;
}

template <class T>
void Image2::setGreenValue(int i, int j, T value)
{
    element<T>(mapper_->encode(i, j, ColorChannel::Green)) = value;
}

template <class T>
void Image2::setBlueValue(int i, int j, T value)
{
    element<T>(mapper_->encode(i, j, ColorChannel::Blue)) = value;
}

template <class T>
T Image2::getRedValue(int i, int j) const
{
    return element<T>(mapper_->encode(i, j, ColorChannel::Red));
}

template <class T>
T Image2::getGreenValue(int i, int j) const
{
    return element<T>(mapper_->encode(i, j, ColorChannel::Green));
}

template <class T>
T Image2::getBlueValue(int i, int j) const
{
    return element<T>(mapper_->encode(i, j, ColorChannel::Blue));
}

#define CRENARA_IMAGE2_VALUES(T)                                                                   \
    template Vector<T> Image2::asVector();                                                         \
    template const Vector<T> Image2::asVector() const;                                             \
    template Vector<T> Image2::asVector(int, int);                                                 \
    template const Vector<T> Image2::asVector(int, int) const;                                     \
    template void Image2::fill(T);                                                                 \
    template Histogram<T> Image2::histogram(T, T, int) const;                                      \
    template void Image2::setValue(int, int, T);                                                   \
    template void Image2::setValue(const Vector<int>&, T);                                         \
    template T Image2::getValue(int, int) const;                                                   \
    template T Image2::getValue(int, int, int) const;                                              \
    template T Image2::getValue(const Vector<int>&) const;                                         \
    template void Image2::setRedValue(int, int, T);                                                \
    template void Image2::setGreenValue(int, int, T);                                              \
    template void Image2::setBlueValue(int, int, T);                                               \
    template T Image2::getRedValue(int, int) const;                                                \
    template T Image2::getGreenValue(int, int) const;                                              \
    template T Image2::getBlueValue(int, int) const;

CRENARA_IMAGE2_VALUES(unsigned char)
CRENARA_IMAGE2_VALUES(unsigned short)
CRENARA_IMAGE2_VALUES(short)
CRENARA_IMAGE2_VALUES(int)
CRENARA_IMAGE2_VALUES(unsigned int)
CRENARA_IMAGE2_VALUES(float)
CRENARA_IMAGE2_VALUES(double)

#undef CRENARA_IMAGE2_VALUES
