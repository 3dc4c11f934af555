#include "numerics/vector.h"

#include "numerics/elementarithmetic.h"
#include "numerics/maths.h"
#include "system/randomgenerator.h"

#include <cstdlib>

template <class T>
void Vector<T>::requireElements(const char* where) const
{
    if (size_ == 0) {
        raise<SizeError>(where, "This vector is empty.");
    }
}

template <class T>
void Vector<T>::requireSizeOf(const Vector& other, const char* where) const
{
    if (size_ != other.size_) {
        raise<SizeError>(where, "The two vectors have different sizes");
    }
}

template <class T>
void Vector<T>::fill(const T& value)
{
    std::fill_n(data_, size_, T(value));
}

template <class T>
void Vector<T>::setZeros()
{
    fill(T(0));
}

template <class T>
void Vector<T>::setZeros(int n)
{
    setSize(n);
    setZeros();
}

template <class T>
void Vector<T>::setOnes()
{
    fill(T(1));
}

template <class T>
void Vector<T>::setOnes(int n)
{
    setSize(n);
    setOnes();
}

template <class T>
void Vector<T>::setCanonical(int i)
{
    setZeros();
    data_[i] = T(1);
}

template <class T>
void Vector<T>::setSequence(T step)
{
    setSequence(T(0), step);
}

template <class T>
void Vector<T>::setSequence(T start, T step)
{
    for (int i = 0; i < size_; ++i) {
        data_[i] = added(start, multiplied(static_cast<T>(i), step));
    }
}

template <class T>
void Vector<T>::apply(T (*f)(T))
{
    for (int i = 0; i < size_; ++i) {
        data_[i] = f(data_[i]);
    }
}

template <class T>
void Vector<T>::replace(T from, T to)
{
    std::replace(data_, data_ + size_, from, to);
}

template <class T>
int Vector<T>::__compare(const void* left, const void* right)
{
    const T a = *static_cast<const T*>(left);
    const T b = *static_cast<const T*>(right);
    if (a < b) {
        return -1;
    }
    return a == b ? 0 : 1;
}

template <class T>
void Vector<T>::sort()
{
    if (size_ > 1) {
        std::qsort(data_, static_cast<std::size_t>(size_), sizeof(T), &Vector::__compare);
    }
}

template <class T>
void Vector<T>::reverse()
{
    std::reverse(data_, data_ + size_);
}

template <class T>
void Vector<T>::circShift()
{
    if (size_ > 1) {
        std::rotate(data_, data_ + size_ - 1, data_ + size_);
    }
}

template <class T>
void Vector<T>::shuffle(RandomGenerator& generator)
{
    for (int round = 0; round < size_; ++round) {
        const long first = generator.uniformL(static_cast<long>(size_));
        const long second = generator.uniformL(static_cast<long>(size_));
        std::swap(data_[first], data_[second]);
    }
}

template <class T>
void Vector<T>::shuffle(const Vector<int>& p)
{
    const Vector old(*this);
    for (int i = 0; i < size_; ++i) {
        data_[i] = old[p[i]];
    }
}

template <class T>
void Vector<T>::unshuffle(const Vector<int>& p)
{
    const Vector old(*this);
    for (int i = 0; i < size_; ++i) {
        data_[p[i]] = old[i];
    }
}

template <class T>
Vector<T> Vector<T>::copy(int first, int last) const
{
    Vector result(last - first + 1);
    std::copy_n(data_ + first, result.size_, result.data_);
    return result;
}

template <class T>
Vector<T> Vector<T>::copy(const Vector<int>& indices) const
{
    const int count = indices.getSize();
    Vector result(count);
    for (int i = 0; i < count; ++i) {
        result.data_[i] = data_[indices[i]];
    }
    return result;
}

template <class T>
Vector<T> Vector<T>::copyFrom(int first) const
{
    return copy(first, size_ - 1);
}

template <class T>
Vector<T> Vector<T>::copyUntil(int last) const
{
    return copy(0, last);
}

template <class T>
Vector<int> Vector<T>::nonZero() const
{
    const int zeros = static_cast<int>(std::count(data_, data_ + size_, T(0)));
    Vector<int> result(size_ - zeros);
    int found = 0;
    for (int i = 0; i < size_; ++i) {
        if (data_[i] != T(0)) {
            result[found++] = i;
        }
    }
    return result;
}

template <class T>
Vector<T> Vector<T>::unique() const
{
    Vector sorted(*this);
    sorted.sort();
    const T* end = std::unique(sorted.data_, sorted.data_ + size_, [](T a, T b) {
        if constexpr (std::is_floating_point_v<T>) {
            return Maths::equal(a, b);
        } else {
            return a == b;
        }
    });
    return sorted.copyUntil(static_cast<int>(end - sorted.data_) - 1);
}

template <class T>
int Vector<T>::find(const T& value) const
{
    const T* position = std::find(data_, data_ + size_, value);
    return position == data_ + size_ ? -1 : static_cast<int>(position - data_);
}

template <class T>
bool Vector<T>::isIncreasing() const
{
    requireElements("bool Vector<T>::isIncreasing() const");
    for (int i = 1; i < size_; ++i) {
        if (data_[i - 1] > data_[i]) {
            return false;
        }
    }
    return true;
}

template <class T>
bool Vector<T>::isDecreasing() const
{
    requireElements("bool Vector<T>::isDecreasing() const");
    for (int i = 1; i < size_; ++i) {
        if (data_[i - 1] < data_[i]) {
            return false;
        }
    }
    return size_ > 1;
}

template <class T>
bool Vector<T>::isConstant() const
{
    for (int i = 1; i < size_; ++i) {
        if (data_[i] != data_[0]) {
            return false;
        }
    }
    return true;
}

template <class T>
bool Vector<T>::isSymmetrical() const
{
    if (size_ < 2) {
        return true;
    }
    for (int i = 0, mirror = size_ - 1; i <= mirror; ++i, --mirror) {
        if (!(data_[i] == data_[mirror])) {
            return false;
        }
    }
    return true;
}

template <class T>
bool Vector<T>::isAntiSymmetrical() const
{
    for (int i = 0, mirror = size_ - 1; i < mirror; ++i, --mirror) {
        if (!(data_[i] == negated(data_[mirror]))) {
            return false;
        }
    }
    return size_ > 1;
}

template <class T>
bool Vector<T>::operator==(const Vector& other) const
{
    return size_ == other.size_ && std::equal(data_, data_ + size_, other.data_);
}

template <class T>
bool Vector<T>::operator!=(const Vector& other) const
{
    return !(*this == other);
}

template <class T>
T Vector<T>::epsilon()
{
    if constexpr (std::is_same_v<T, float>) {
        return 1e-6F;
    } else if constexpr (std::is_same_v<T, double>) {
        return 1e-15;
    } else if constexpr (std::is_same_v<T, long double>) {
        return 1e-18L;
    } else {
        return T(0);
    }
}

template class Vector<bool>;
template class Vector<char>;
template class Vector<unsigned char>;
template class Vector<short>;
template class Vector<unsigned short>;
template class Vector<int>;
template class Vector<unsigned int>;
template class Vector<long>;
template class Vector<float>;
template class Vector<double>;
template class Vector<long double>;
