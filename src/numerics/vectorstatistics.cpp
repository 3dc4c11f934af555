// Part of `Vector`: order statistics, sums and moments.

#include "numerics/elementarithmetic.h"
#include "numerics/elementtype.h"
#include "numerics/maths.h"
#include "numerics/numbers.h"
#include "numerics/vector.h"

namespace {

/// Integer types that have no `mean`; those without the other moments lack `char`.
template <class T>
constexpr bool isShortOrUnsigned = isOneOf<T, unsigned char, short, unsigned short, unsigned int>;

/// The mean of two middle elements, truncated for integers. The sum of small integers is formed
/// before it is cut to the element type.
template <class T>
T middle(T a, T b)
{
    if constexpr (std::is_floating_point_v<T>) {
        return (a + b) * T(0.5);
    } else if constexpr (sizeof(T) < sizeof(long long)) {
        return static_cast<T>((static_cast<long long>(a) + b) / 2);
    } else {
        return added(a, b) / 2;
    }
}

} // namespace

template <class T>
int Vector<T>::minPos() const
{
    requireElements("int Vector<T>::minPos() const");
    return static_cast<int>(std::min_element(data_, data_ + size_) - data_);
}

template <class T>
int Vector<T>::maxPos() const
{
    requireElements("int Vector<T>::maxPos() const");
    return static_cast<int>(std::max_element(data_, data_ + size_) - data_);
}

template <class T>
T Vector<T>::min() const
{
    requireElements("T Vector<T>::min() const");
    return *std::min_element(data_, data_ + size_);
}

template <class T>
T Vector<T>::max() const
{
    requireElements("T Vector<T>::max() const");
    return *std::max_element(data_, data_ + size_);
}

template <class T>
Vector<T> Vector<T>::range() const
{
    requireElements("Vector<T> Vector<T>::range() const");
    Vector result(2);
    result[0] = min();
    result[1] = max();
    return result;
}

template <class T>
T Vector<T>::sum() const
{
    requireElements("T Vector<T>::sum() const");
    T result = data_[0];
    for (int i = 1; i < size_; ++i) {
        result = added(result, data_[i]);
    }
    return result;
}

template <class T>
T Vector<T>::prod() const
{
    requireElements("T Vector<T>::prod() const");
    T result = data_[0];
    for (int i = 1; i < size_; ++i) {
        result = multiplied(result, data_[i]);
    }
    return result;
}

template <class T>
T Vector<T>::elementMean() const
{
    return static_cast<T>(sum() / size_);
}

template <class T>
T Vector<T>::mean() const
{
    if constexpr (isShortOrUnsigned<T> || isOneOf<T, char, int>) {
        raiseNotAvailable<T>("T Vector<T>::mean() const");
    } else {
        requireElements("T Vector<T>::mean() const");
        return elementMean();
    }
}

template <class T>
T Vector<T>::median() const
{
    requireElements("T Vector<T>::median() const");
    if (size_ == 1) {
        return data_[0];
    }
    if (size_ == 2) {
        return middle(data_[0], data_[1]);
    }
    Vector sorted(*this);
    sorted.sort();
    const int half = size_ / 2;
    return size_ % 2 == 1 ? sorted[half] : middle(sorted[half - 1], sorted[half]);
}

template <class T>
T Vector<T>::sse() const
{
    if constexpr (isShortOrUnsigned<T> || isOneOf<T, int>) {
        raiseNotAvailable<T>("T Vector<T>::sse() const");
    } else {
        requireElements("T Vector<T>::sse() const");
        const T average = elementMean();
        T result = 0;
        for (int i = 0; i < size_; ++i) {
            const T deviation = subtracted(data_[i], average);
            result = added(result, multiplied(deviation, deviation));
        }
        return result;
    }
}

template <class T>
T Vector<T>::var() const
{
    if constexpr (isShortOrUnsigned<T> || isOneOf<T, int>) {
        raiseNotAvailable<T>("T Vector<T>::var() const");
    } else {
        requireElements("T Vector<T>::var() const");
        return static_cast<T>(sse() / size_);
    }
}

template <class T>
T Vector<T>::std() const
{
    if constexpr (isShortOrUnsigned<T> || isOneOf<T, int>) {
        raiseNotAvailable<T>("T Vector<T>::std() const");
    } else {
        return squareRoot(var());
    }
}

template <class T>
T Vector<T>::sem([[maybe_unused]] bool sample) const
{
    if constexpr (isShortOrUnsigned<T> || isOneOf<T, int>) {
        raiseNotAvailable<T>("T Vector<T>::sem(const bool) const");
    } else {
        const char* const where = "T Vector<T>::sem(const bool) const";
        requireElements(where);
        if (sample && size_ == 1) {
            raise<SizeError>(where, "This vector contains a single value.");
        }
        const RealOf<T> root = std::sqrt(static_cast<RealOf<T>>(sse()));
        if (sample) {
            const double count = size_;
            return static_cast<T>(root / (std::sqrt(count) * std::sqrt(count - 1)));
        }
        return static_cast<T>(root / static_cast<RealOf<T>>(size_));
    }
}

template <class T>
T Vector<T>::mad() const
{
    if constexpr (isShortOrUnsigned<T>) {
        raiseNotAvailable<T>("T Vector<T>::mad() const");
    } else {
        const T center = median();
        Vector deviations(size_);
        for (int i = 0; i < size_; ++i) {
            deviations[i] = absolute(subtracted(data_[i], center));
        }
        return deviations.median();
    }
}

template <class T>
T Vector<T>::percentile(float p) const
{
    if (!isIncreasing()) {
        raise<UsageError>("T Vector::percentile(const float) const",
                          "This vector is not sorted in increasing order");
    }
    return data_[Maths::fround((size_ - 1) * static_cast<double>(p) / 100)];
}

template <class T>
Numbers<T> Vector<T>::numbers() const
{
    Numbers<T> result;
    result.setCount(static_cast<unsigned int>(size_));
    result.setMinimum(min());
    result.setMaximum(max());
    result.setMedian(median());
    result.setSum(sum());
    result.setMean(elementMean());
    return result;
}

// Member by member, since vector.cpp instantiates the class with all that is defined there.
#define INSTANTIATE_VECTOR_STATISTICS(T)                                                           \
    template int Vector<T>::minPos() const;                                                        \
    template int Vector<T>::maxPos() const;                                                        \
    template T Vector<T>::min() const;                                                             \
    template T Vector<T>::max() const;                                                             \
    template Vector<T> Vector<T>::range() const;                                                   \
    template T Vector<T>::sum() const;                                                             \
    template T Vector<T>::prod() const;                                                            \
    template T Vector<T>::elementMean() const;                                                     \
    template T Vector<T>::mean() const;                                                            \
    template T Vector<T>::median() const;                                                          \
    template T Vector<T>::sse() const;                                                             \
    template T Vector<T>::var() const;                                                             \
    template T Vector<T>::std() const;                                                             \
    template T Vector<T>::sem(bool) const;                                                         \
    template T Vector<T>::mad() const;                                                             \
    template T Vector<T>::percentile(float) const;                                                 \
    template Numbers<T> Vector<T>::numbers() const;

INSTANTIATE_VECTOR_STATISTICS(bool)
INSTANTIATE_VECTOR_STATISTICS(char)
INSTANTIATE_VECTOR_STATISTICS(unsigned char)
INSTANTIATE_VECTOR_STATISTICS(short)
INSTANTIATE_VECTOR_STATISTICS(unsigned short)
INSTANTIATE_VECTOR_STATISTICS(int)
INSTANTIATE_VECTOR_STATISTICS(unsigned int)
INSTANTIATE_VECTOR_STATISTICS(long)
INSTANTIATE_VECTOR_STATISTICS(float)
INSTANTIATE_VECTOR_STATISTICS(double)
INSTANTIATE_VECTOR_STATISTICS(long double)
