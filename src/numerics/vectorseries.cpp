// Part of `Vector`: series: running sums, differences, histograms, correlation, Householder
// reflections.

#include "numerics/elementarithmetic.h"
#include "numerics/elementtype.h"
#include "numerics/vector.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

template <class T>
T squaresAfterFirst(const Vector<T>& vector)
{
    T sum = 0;
    for (int i = 1; i < vector.getSize(); ++i) {
        sum += vector[i] * vector[i];
    }
    return sum;
}

/// The bins of a histogram. The bin of a value is the largest one whose lower edge is not above it.
template <class T>
class Bins
{
public:
    Bins(T origin, T step, int count)
        : edges_(static_cast<std::size_t>(count))
        , origin_(static_cast<double>(origin))
        , perStep_(1.0 / static_cast<double>(step))
        , isAscending_(step > 0)
        , count_(count)
    {
        for (int i = 0; i < count; ++i) {
            edges_[i] = static_cast<Edge>(origin) + static_cast<Edge>(i) * static_cast<Edge>(step);
        }
    }

    /// Bisection defines the result. Where the edges ascend, the quotient guesses it nearly always,
    /// and two comparisons prove the guess: several times faster on images.
    int binOf(T value) const
    {
        const Edge x = static_cast<Edge>(value);
        if (isAscending_) {
            const double position = (static_cast<double>(value) - origin_) * perStep_;
            const int guess = position >= count_ ? count_ - 1
                              : position > 0     ? static_cast<int>(position)
                                                 : 0;
            if ((guess == 0 || edges_[guess] <= x) &&
                (guess == count_ - 1 || edges_[guess + 1] > x)) {
                return guess;
            }
        }
        return bisect(x);
    }

private:
    /// No edge may wrap around, so those of integers are computed in a wider type.
    using Edge = std::conditional_t<std::is_floating_point_v<T>,
                                    T,
                                    std::conditional_t<sizeof(T) < 8, long long, long double>>;

    int bisect(Edge x) const
    {
        int lo = 0;
        int hi = count_;
        while (hi > lo + 1) {
            const int mid = lo + ((hi - lo) >> 1);
            if (edges_[mid] > x) {
                hi = mid;
            } else {
                lo = mid;
            }
        }
        return lo;
    }

    std::vector<Edge> edges_;
    double origin_;
    double perStep_;
    bool isAscending_;
    int count_;
};

void requireBins(int bins)
{
    if (bins < 1) {
        raise<ValueError>("Vectorui Vector<T>::histogram(...)",
                          "The number of bins must be positive");
    }
}

template <class T>
void requireOddSize(const Vector<T>& kernel, const char* where)
{
    if (kernel.getSize() % 2 == 0) {
        raise<ValueError>(where, "The kernel has an even size");
    }
}

template <class T>
Vector<T> reversed(const Vector<T>& vector)
{
    Vector<T> result(vector);
    result.reverse();
    return result;
}

} // namespace

template <class T>
Vector<T> Vector<T>::csum() const
{
    Vector result(*this);
    for (int i = 1; i < size_; ++i) {
        result.data_[i] = added(result.data_[i - 1], data_[i]);
    }
    return result;
}

template <class T>
Vector<T> Vector<T>::cprod() const
{
    Vector result(*this);
    for (int i = 1; i < size_; ++i) {
        result.data_[i] = multiplied(result.data_[i - 1], data_[i]);
    }
    return result;
}

template <class T>
Vector<T> Vector<T>::diff(int k) const
{
    const char* const where = "Vector<T> Vector<T>::diff(const int) const";
    if (k < 0) {
        raise<ValueError>(where, "The distance of the elements is negative");
    }
    if (size_ <= k) {
        raise<SizeError>(where, "This vector does not contain enough elements");
    }
    Vector result(size_);
    for (int i = 0; i < size_ - k; ++i) {
        result.data_[i] = subtracted(data_[i + k], data_[i]);
    }
    std::fill(result.data_ + size_ - k, result.data_ + size_, T(0));
    return result;
}

template <class T>
Vector<unsigned int> Vector<T>::histogram(T origin, T step, int bins) const
{
    requireBins(bins);
    const Bins<T> finder(origin, step, bins);
    Vector<unsigned int> counts;
    counts.setZeros(bins);
    for (int i = 0; i < size_; ++i) {
        ++counts[finder.binOf(data_[i])];
    }
    return counts;
}

template <class T>
Vector<unsigned int> Vector<T>::histogram(T origin, T step, int bins, const Vector& mask) const
{
    requireBins(bins);
    if (mask.size_ != size_) {
        raise<SizeError>("Vectorui Vector<T>::histogram(...)", "Incompatible mask size");
    }
    const Bins<T> finder(origin, step, bins);
    Vector<unsigned int> counts;
    counts.setZeros(bins);
    for (int i = 0; i < size_; ++i) {
        if (mask.data_[i] != T(0)) {
            ++counts[finder.binOf(data_[i])];
        }
    }
    return counts;
}

template <class T>
Vector<T> Vector<T>::corr(const Vector& kernel) const
{
    requireOddSize(kernel, "Vector<T> Vector<T>::corr(const Vector&) const");
    Vector result;
    result.setZeros(size_);
    const int half = kernel.size_ / 2;
    // Kernel outside, vector inside: the sums keep their order, and the inner loop vectorises.
    for (int m = 0; m < kernel.size_; ++m) {
        const int offset = m - half;
        const int first = std::max(0, -offset);
        const int end = std::min(size_, size_ - offset);
        const T weight = kernel.data_[m];
        const T* samples = data_;
        T* sums = result.data_;
        for (int i = first; i < end; ++i) {
            sums[i] = added(sums[i], multiplied(samples[i + offset], weight));
        }
    }
    return result;
}

template <class T>
Vector<T> Vector<T>::conv(const Vector& kernel) const
{
    return corr(reversed(kernel));
}

template <class T>
Vector<T> Vector<T>::corr(const Vector& kernel, const Vector& mask) const
{
    const char* const where = "Vector<T> Vector<T>::corr(const Vector&, const Vector&) const";
    requireOddSize(kernel, where);
    if (mask.size_ != size_) {
        raise<SizeError>(where, "The mask is not the same length as this vector");
    }
    const auto takesPart = [&](int position) {
        return position >= 0 && position < size_ && mask.data_[position] != T(0);
    };
    const int half = kernel.size_ / 2;
    Vector result(*this);
    for (int i = 0; i < size_; ++i) {
        if (!takesPart(i)) {
            continue;
        }
        T sum = multiplied(data_[i], kernel.data_[half]);
        for (int j = 1; j <= half; ++j) {
            const bool hasLeft = takesPart(i - j);
            const bool hasRight = takesPart(i + j);
            const T left = kernel.data_[half - j];
            const T right = kernel.data_[half + j];
            if (hasLeft && hasRight) {
                sum = added(sum,
                            added(multiplied(left, data_[i - j]), multiplied(right, data_[i + j])));
            } else if (hasLeft || hasRight) {
                const T other = data_[hasLeft ? i - j : i + j];
                sum = added(sum, multiplied(added(left, right), other));
            }
        }
        result.data_[i] = sum;
    }
    return result;
}

template <class T>
Vector<T> Vector<T>::conv(const Vector& kernel, const Vector& mask) const
{
    return corr(reversed(kernel), mask);
}

template <class T>
void Vector<T>::householderVector([[maybe_unused]] T& beta)
{
    const char* const where = "void Vector<T>::householderVector(T&)";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        requireElements(where);
        T sigma = squaresAfterFirst(*this);
        // Below this the squares have lost digits, or vanished. The reflection does not depend on the
        // length, and a power of two is exact.
        constexpr T precise = std::numeric_limits<T>::min() / std::numeric_limits<T>::epsilon();
        if (sigma < precise) {
            const T largest = std::max(max(), -min());
            if (largest > 0) {
                const int exponent =
                    std::max(std::ilogb(largest), 2 - std::numeric_limits<T>::max_exponent);
                *this *= std::ldexp(T(1), -exponent);
                sigma = squaresAfterFirst(*this);
            }
        }
        const T x0 = data_[0];
        if (sigma < precise) {
            setCanonical(0);
            beta = x0 < 0 ? 2 : 0;
            return;
        }
        const T mu = std::sqrt(x0 * x0 + sigma);
        const T v0 = x0 > 0 ? -sigma / (x0 + mu) : x0 - mu;
        for (int i = 1; i < size_; ++i) {
            data_[i] /= v0;
        }
        beta = 2 * v0 * v0 / (v0 * v0 + sigma);
        data_[0] = 1;
    }
}

template <class T>
void Vector<T>::householderVector([[maybe_unused]] Vector& v, [[maybe_unused]] T& beta) const
{
    const char* const where = "void Vector<T>::householderVector(Vector&, T&) const";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        requireElements(where);
        v = *this;
        v.householderVector(beta);
    }
}

// Member by member, since vector.cpp instantiates the class with all that is defined there.
#define INSTANTIATE_VECTOR_SERIES(T)                                                               \
    template Vector<T> Vector<T>::csum() const;                                                    \
    template Vector<T> Vector<T>::cprod() const;                                                   \
    template Vector<T> Vector<T>::diff(int) const;                                                 \
    template Vector<unsigned int> Vector<T>::histogram(T, T, int) const;                           \
    template Vector<unsigned int> Vector<T>::histogram(T, T, int, const Vector&) const;            \
    template Vector<T> Vector<T>::corr(const Vector&) const;                                       \
    template Vector<T> Vector<T>::conv(const Vector&) const;                                       \
    template Vector<T> Vector<T>::corr(const Vector&, const Vector&) const;                        \
    template Vector<T> Vector<T>::conv(const Vector&, const Vector&) const;                        \
    template void Vector<T>::householderVector(T&);                                                \
    template void Vector<T>::householderVector(Vector&, T&) const;

INSTANTIATE_VECTOR_SERIES(bool)
INSTANTIATE_VECTOR_SERIES(char)
INSTANTIATE_VECTOR_SERIES(unsigned char)
INSTANTIATE_VECTOR_SERIES(short)
INSTANTIATE_VECTOR_SERIES(unsigned short)
INSTANTIATE_VECTOR_SERIES(int)
INSTANTIATE_VECTOR_SERIES(unsigned int)
INSTANTIATE_VECTOR_SERIES(long)
INSTANTIATE_VECTOR_SERIES(float)
INSTANTIATE_VECTOR_SERIES(double)
INSTANTIATE_VECTOR_SERIES(long double)
