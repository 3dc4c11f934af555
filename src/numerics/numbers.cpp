#include "numerics/numbers.h"

#include "numerics/scalar.h"
#include "system/exception.h"

#include <string>
#include <utility>

namespace {

template <class T>
std::unique_ptr<T> copyOf(const std::unique_ptr<T>& value)
{
    return value ? std::make_unique<T>(*value) : nullptr;
}

template <class T>
void assign(std::unique_ptr<T>& target, const T& value)
{
    if (target) {
        *target = value;
    } else {
        target = std::make_unique<T>(value);
    }
}

template <class T>
const T& valueOf(const std::unique_ptr<T>& value, const char* getter)
{
    if (!value) {
        raise<UsageError>(std::string("Numbers<T>::") + getter + "() const",
                          "This statistic is not set");
    }
    return *value;
}

} // namespace

template <class T>
Numbers<T>::Numbers() = default;

template <class T>
Numbers<T>::Numbers(const Numbers& other)
    : count_(copyOf(other.count_))
    , minimum_(copyOf(other.minimum_))
    , maximum_(copyOf(other.maximum_))
    , median_(copyOf(other.median_))
    , sum_(copyOf(other.sum_))
    , mean_(copyOf(other.mean_))
    , stddev_(copyOf(other.stddev_))
{}

template <class T>
Numbers<T>::Numbers(Numbers&& other) noexcept = default;

template <class T>
Numbers<T>::~Numbers() = default;

template <class T>
Numbers<T>& Numbers<T>::operator=(const Numbers& other)
{
    Numbers copy(other);
    std::swap(count_, copy.count_);
    std::swap(minimum_, copy.minimum_);
    std::swap(maximum_, copy.maximum_);
    std::swap(median_, copy.median_);
    std::swap(sum_, copy.sum_);
    std::swap(mean_, copy.mean_);
    std::swap(stddev_, copy.stddev_);
    return *this;
}

template <class T>
void Numbers<T>::clear()
{
    *this = Numbers();
}

template <class T>
void Numbers<T>::setCount(unsigned int value)
{
    assign(count_, value);
}

template <class T>
void Numbers<T>::setMinimum(const T& value)
{
    assign(minimum_, value);
}

template <class T>
void Numbers<T>::setMaximum(const T& value)
{
    assign(maximum_, value);
}

template <class T>
void Numbers<T>::setMedian(const T& value)
{
    assign(median_, value);
}

template <class T>
void Numbers<T>::setSum(const T& value)
{
    assign(sum_, value);
}

template <class T>
void Numbers<T>::setMean(const T& value)
{
    assign(mean_, value);
}

template <class T>
void Numbers<T>::setStddev(const T& value)
{
    assign(stddev_, value);
}

template <class T>
unsigned int Numbers<T>::getCount() const
{
    return valueOf(count_, "getCount");
}

template <class T>
const T& Numbers<T>::getMinimum() const
{
    return valueOf(minimum_, "getMinimum");
}

template <class T>
const T& Numbers<T>::getMaximum() const
{
    return valueOf(maximum_, "getMaximum");
}

template <class T>
const T& Numbers<T>::getMedian() const
{
    return valueOf(median_, "getMedian");
}

template <class T>
const T& Numbers<T>::getSum() const
{
    return valueOf(sum_, "getSum");
}

template <class T>
const T& Numbers<T>::getMean() const
{
    return valueOf(mean_, "getMean");
}

template <class T>
const T& Numbers<T>::getStddev() const
{
    return valueOf(stddev_, "getStddev");
}

std::ostream& operator<<(std::ostream& stream, const Numbers<float>& numbers)
{
    stream << "Count:   " << numbers.getCount() << "\n";
    stream << "Minimum: " << numbers.getMinimum() << "\n";
    stream << "Median:  " << numbers.getMedian() << "\n";
    stream << "Maximum: " << numbers.getMaximum() << "\n";
    stream << "Sum:     " << numbers.getSum() << "\n";
    stream << "Mean:    " << numbers.getMean() << "\n";
    stream << "StdDev:  " << numbers.getStddev() << "\n";
    return stream;
}

template class Numbers<bool>;
template class Numbers<char>;
template class Numbers<unsigned char>;
template class Numbers<short>;
template class Numbers<unsigned short>;
template class Numbers<int>;
template class Numbers<unsigned int>;
template class Numbers<long>;
template class Numbers<float>;
template class Numbers<double>;
template class Numbers<long double>;
template class Numbers<Scalar>;
