// Part of `Vector`: element-wise arithmetic, products and distances.

#include "numerics/elementarithmetic.h"
#include "numerics/elementtype.h"
#include "numerics/matrix.h"
#include "numerics/vector.h"

#include <cmath>

namespace {

/// The element operations as objects, so that each loop below is compiled once per operation.
struct Add
{
    template <class T>
    T operator()(T a, T b) const
    {
        return added(a, b);
    }
};

struct Subtract
{
    template <class T>
    T operator()(T a, T b) const
    {
        return subtracted(a, b);
    }
};

struct Multiply
{
    template <class T>
    T operator()(T a, T b) const
    {
        return multiplied(a, b);
    }
};

struct Divide
{
    template <class T>
    T operator()(T a, T b) const
    {
        return divided(a, b);
    }
};

template <class T, class Operation>
Vector<T> combined(const Vector<T>& left, const Vector<T>& right, Operation operation)
{
    const int size = left.getSize();
    Vector<T> result(size);
    const T* a = left.data();
    const T* b = right.data();
    T* target = result.data();
    for (int i = 0; i < size; ++i) {
        target[i] = operation(a[i], b[i]);
    }
    return result;
}

template <class T, class Operation>
Vector<T> combined(const Vector<T>& left, T value, Operation operation)
{
    const int size = left.getSize();
    Vector<T> result(size);
    const T* a = left.data();
    T* target = result.data();
    for (int i = 0; i < size; ++i) {
        target[i] = operation(a[i], value);
    }
    return result;
}

template <class T, class Operation>
void combineInto(T* target, int size, const T* other, Operation operation)
{
    for (int i = 0; i < size; ++i) {
        target[i] = operation(target[i], other[i]);
    }
}

template <class T, class Operation>
void combineInto(T* target, int size, T value, Operation operation)
{
    for (int i = 0; i < size; ++i) {
        target[i] = operation(target[i], value);
    }
}

} // namespace

template <class T>
Vector<T> Vector<T>::operator-() const
{
    Vector result(size_);
    for (int i = 0; i < size_; ++i) {
        result.data_[i] = negated(data_[i]);
    }
    return result;
}

template <class T>
Vector<T> Vector<T>::operator+(const Vector& other) const
{
    requireSizeOf(other, "Vector Vector<T>::operator+(const Vector&) const");
    return combined(*this, other, Add());
}

template <class T>
Vector<T> Vector<T>::operator-(const Vector& other) const
{
    requireSizeOf(other, "Vector<T> Vector<T>::operator-(const Vector&) const");
    return combined(*this, other, Subtract());
}

template <class T>
Vector<T> Vector<T>::operator/(const Vector& other) const
{
    requireSizeOf(other, "Vector<T> Vector<T>::operator/(const Vector&) const");
    return combined(*this, other, Divide());
}

template <class T>
Vector<T> Vector<T>::pointwiseProduct(const Vector& other) const
{
    requireSizeOf(other, "Vector pointwiseProduct(const Vector&) const");
    return combined(*this, other, Multiply());
}

template <class T>
void Vector<T>::operator+=(const Vector& other)
{
    requireSizeOf(other, "void Vector<T>::operator+=(const Vector&)");
    combineInto(data_, size_, other.data(), Add());
}

template <class T>
void Vector<T>::operator-=(const Vector& other)
{
    requireSizeOf(other, "void Vector<T>::operator-=(const Vector&)");
    combineInto(data_, size_, other.data(), Subtract());
}

template <class T>
void Vector<T>::operator*=(const Vector& other)
{
    requireSizeOf(other, "void Vector<T>::operator*=(const Vector&)");
    combineInto(data_, size_, other.data(), Multiply());
}

template <class T>
void Vector<T>::operator/=(const Vector& other)
{
    requireSizeOf(other, "void Vector<T>::operator/=(const Vector&)");
    combineInto(data_, size_, other.data(), Divide());
}

template <class T>
Vector<T> Vector<T>::operator+(T value) const
{
    return combined(*this, value, Add());
}

template <class T>
Vector<T> Vector<T>::operator-(T value) const
{
    return combined(*this, value, Subtract());
}

template <class T>
Vector<T> Vector<T>::operator*(T value) const
{
    return combined(*this, value, Multiply());
}

template <class T>
Vector<T> Vector<T>::operator/(T value) const
{
    return combined(*this, value, Divide());
}

template <class T>
void Vector<T>::operator+=(T value)
{
    combineInto(data_, size_, value, Add());
}

template <class T>
void Vector<T>::operator-=(T value)
{
    combineInto(data_, size_, value, Subtract());
}

template <class T>
void Vector<T>::operator*=(T value)
{
    combineInto(data_, size_, value, Multiply());
}

template <class T>
void Vector<T>::operator/=(T value)
{
    combineInto(data_, size_, value, Divide());
}

template <class T>
Vector<T> Vector<T>::pmax(const Vector& a, const Vector& b)
{
    if (a.size_ != b.size_) {
        raise<UsageError>("Vector<T> Vector<T>::pmax(const Vector&, const Vector&)",
                          "The two vectors have different sizes");
    }
    return combined(a, b, [](T x, T y) { return x < y ? y : x; });
}

template <class T>
Vector<T> Vector<T>::pmin(const Vector& a, const Vector& b)
{
    if (a.size_ != b.size_) {
        raise<UsageError>("Vector<T> Vector<T>::pmin(const Vector&, const Vector&)",
                          "The two vectors have different sizes");
    }
    return combined(a, b, [](T x, T y) { return y < x ? y : x; });
}

template <class T>
T Vector<T>::scalarProduct(const Vector& other) const
{
    requireSizeOf(other, "T Vector<T>::scalarProduct(const Vector&) const");
    T result = 0;
    for (int i = 0; i < size_; ++i) {
        result = added(result, multiplied(data_[i], other.data_[i]));
    }
    return result;
}

template <class T>
T Vector<T>::snorm() const
{
    return scalarProduct(*this);
}

template <class T>
T Vector<T>::norm() const
{
    if constexpr (isOneOf<T, char, unsigned char, short, unsigned short, int, unsigned int>) {
        raiseNotAvailable<T>("T Vector<T>::norm() const");
    } else {
        return squareRoot(snorm());
    }
}

template <class T>
void Vector<T>::normalize()
{
    if constexpr (isOneOf<T, char, unsigned char, short, unsigned short, int, unsigned int>) {
        raiseNotAvailable<T>("void Vector<T>::normalize()");
    } else {
        const T length = norm();
        if (length > 0) {
            *this /= length;
        }
    }
}

template <class T>
T Vector<T>::sdistance(const Vector& other) const
{
    requireSizeOf(other, "T Vector<T>::sdistance(const Vector&) const");
    T result = 0;
    for (int i = 0; i < size_; ++i) {
        const T difference = subtracted(data_[i], other.data_[i]);
        result = added(result, multiplied(difference, difference));
    }
    return result;
}

template <class T>
T Vector<T>::distance([[maybe_unused]] const Vector& other) const
{
    if constexpr (isOneOf<T, unsigned char, short, unsigned short, int, unsigned int>) {
        raiseNotAvailable<T>("T Vector<T>::distance(const Vector&) const");
    } else {
        return squareRoot(sdistance(other));
    }
}

template <class T>
T Vector<T>::manhattanDistance(const Vector& other) const
{
    requireSizeOf(other, "T Vector<T>::manhattanDistance(const Vector&) const");
    T result = 0;
    for (int i = 0; i < size_; ++i) {
        const T a = data_[i];
        const T b = other.data_[i];
        result = added(result, a < b ? subtracted(b, a) : subtracted(a, b));
    }
    return result;
}

template <class T>
T Vector<T>::angle(const Vector& other) const
{
    using Real = RealOf<T>;
    const Real product = static_cast<Real>(scalarProduct(other));
    return static_cast<T>(
        std::acos(product / (static_cast<Real>(norm()) * static_cast<Real>(other.norm()))));
}

template <class T>
int Vector<T>::closestAxis() const
{
    if constexpr (std::is_same_v<T, bool>) {
        raise<TypeError>("int Vector<bool>::closestAxis() const",
                         "method not available for type 'bool'");
    } else {
        // The smallest integer has no absolute value of its own type, but one of the unsigned type.
        const auto magnitude = [](T x) {
            if constexpr (std::is_floating_point_v<T>) {
                return std::abs(x);
            } else {
                return static_cast<std::make_unsigned_t<T>>(absolute(x));
            }
        };
        int result = size_ == 0 ? -1 : 0;
        for (int i = 1; i < size_; ++i) {
            if (magnitude(data_[i]) > magnitude(data_[result])) {
                result = i;
            }
        }
        return result;
    }
}

template <class T>
Vector<T> Vector<T>::vectorProduct(const Vector& other) const
{
    if (size_ != 3 || other.size_ != 3) {
        raise<SizeError>("Vector<T> Vector<T>::vectorProduct(const Vector&) const",
                         "At least one vector have a size different from 3");
    }
    const T* a = data_;
    const T* b = other.data_;
    Vector result(3);
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3;
        const int k = (i + 2) % 3;
        result.data_[i] = subtracted(multiplied(a[j], b[k]), multiplied(a[k], b[j]));
    }
    return result;
}

template <class T>
Matrix<T> Vector<T>::outerProduct(const Vector& other) const
{
    Matrix<T> result(size_, other.size_);
    for (int i = 0; i < size_; ++i) {
        for (int j = 0; j < other.size_; ++j) {
            result[i][j] = multiplied(data_[i], other.data_[j]);
        }
    }
    return result;
}

// Member by member, since vector.cpp instantiates the class with all that is defined there.
#define INSTANTIATE_VECTOR_ARITHMETIC(T)                                                           \
    template Vector<T> Vector<T>::operator-() const;                                               \
    template Vector<T> Vector<T>::operator+(const Vector&) const;                                  \
    template Vector<T> Vector<T>::operator-(const Vector&) const;                                  \
    template Vector<T> Vector<T>::operator/(const Vector&) const;                                  \
    template Vector<T> Vector<T>::pointwiseProduct(const Vector&) const;                           \
    template void Vector<T>::operator+=(const Vector&);                                            \
    template void Vector<T>::operator-=(const Vector&);                                            \
    template void Vector<T>::operator*=(const Vector&);                                            \
    template void Vector<T>::operator/=(const Vector&);                                            \
    template Vector<T> Vector<T>::operator+(T) const;                                              \
    template Vector<T> Vector<T>::operator-(T) const;                                              \
    template Vector<T> Vector<T>::operator*(T) const;                                              \
    template Vector<T> Vector<T>::operator/(T) const;                                              \
    template void Vector<T>::operator+=(T);                                                        \
    template void Vector<T>::operator-=(T);                                                        \
    template void Vector<T>::operator*=(T);                                                        \
    template void Vector<T>::operator/=(T);                                                        \
    template Vector<T> Vector<T>::pmax(const Vector&, const Vector&);                              \
    template Vector<T> Vector<T>::pmin(const Vector&, const Vector&);                              \
    template T Vector<T>::scalarProduct(const Vector&) const;                                      \
    template T Vector<T>::snorm() const;                                                           \
    template T Vector<T>::norm() const;                                                            \
    template void Vector<T>::normalize();                                                          \
    template T Vector<T>::sdistance(const Vector&) const;                                          \
    template T Vector<T>::distance(const Vector&) const;                                           \
    template T Vector<T>::manhattanDistance(const Vector&) const;                                  \
    template T Vector<T>::angle(const Vector&) const;                                              \
    template int Vector<T>::closestAxis() const;                                                   \
    template Vector<T> Vector<T>::vectorProduct(const Vector&) const;

INSTANTIATE_VECTOR_ARITHMETIC(bool)
INSTANTIATE_VECTOR_ARITHMETIC(char)
INSTANTIATE_VECTOR_ARITHMETIC(unsigned char)
INSTANTIATE_VECTOR_ARITHMETIC(short)
INSTANTIATE_VECTOR_ARITHMETIC(unsigned short)
INSTANTIATE_VECTOR_ARITHMETIC(int)
INSTANTIATE_VECTOR_ARITHMETIC(unsigned int)
INSTANTIATE_VECTOR_ARITHMETIC(long)
INSTANTIATE_VECTOR_ARITHMETIC(float)
INSTANTIATE_VECTOR_ARITHMETIC(double)
INSTANTIATE_VECTOR_ARITHMETIC(long double)

template Matrix<bool> Vector<bool>::outerProduct(const Vector&) const;
template Matrix<char> Vector<char>::outerProduct(const Vector&) const;
template Matrix<unsigned char> Vector<unsigned char>::outerProduct(const Vector&) const;
template Matrix<short> Vector<short>::outerProduct(const Vector&) const;
template Matrix<unsigned short> Vector<unsigned short>::outerProduct(const Vector&) const;
template Matrix<int> Vector<int>::outerProduct(const Vector&) const;
template Matrix<unsigned int> Vector<unsigned int>::outerProduct(const Vector&) const;
template Matrix<float> Vector<float>::outerProduct(const Vector&) const;
template Matrix<double> Vector<double>::outerProduct(const Vector&) const;
template Matrix<long double> Vector<long double>::outerProduct(const Vector&) const;
