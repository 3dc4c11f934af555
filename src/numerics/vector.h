#pragma once

#include "system/exception.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

class RandomGenerator;
template <class T>
class Matrix;
template <class T>
class Numbers;

/// A one-dimensional array of fixed length with exact size, element-wise arithmetic and statistics.
///
/// An owning vector holds an array of its own. A shallow vector is a view of storage that somebody
/// else owns and keeps alive: it never frees that storage and can't change its size, and whatever
/// writes elements reaches the outside storage. A copy always owns its elements. New elements are
/// not initialised. There is no spare capacity, so each `append` copies the whole vector.
///
/// All operations compute in the element type, with its wrap-around and truncation. Those that need
/// real numbers raise `TypeError` for integer types. An empty vector where at least one element is
/// needed, or operands of different sizes, raise `SizeError`. A failed operation changes nothing.
/// Indices and positions are not checked.
///
/// Storage operations (construction, assignment, `setSize`, `swap`, `paste`, `append`, `prepend`,
/// element access, `toStlVector`, `toType`) work for any copyable type; everything else exists for
/// the types listed at the end. Reading concurrently is safe.
template <class T>
class Vector
{
public:
    // Construction, assignment, storage

    /// Empty, owning.
    Vector() = default;

    /// Owning, `n` uninitialised elements; a negative `n` counts as 0.
    explicit Vector(int n);

    /// Shallow view of the `n` elements at `data`.
    Vector(int n, T* data);

    /// A deep, owning copy, of a shallow vector too.
    Vector(const Vector& other);

    /// Takes the array of an owning vector and leaves it empty; copies a shallow one.
    Vector(Vector&& other);
    explicit Vector(const std::vector<T>& elements);
    virtual ~Vector();

    /// Resizes as `setSize` does and copies the elements, into outside storage if this is shallow.
    Vector& operator=(const Vector& other);

    /// As the copy, but takes the array over where both own theirs and the sizes differ, so that
    /// the address of the elements changes in no case in which a copy would keep it.
    Vector& operator=(Vector&& other);

    /// With `data`: becomes a shallow view of `n` elements there. Without: nothing if the size is
    /// `n`, else new uninitialised elements; `UsageError` if this is shallow.
    void setSize(int n, T* data = nullptr);

    /// Exchanges arrays; exchanges elements if either is shallow, and the sizes must then agree
    /// (`UsageError`).
    void swap(Vector& other);

    bool isShallow() const { return shallow_; }

    int getSize() const { return size_; }

    T* data() { return data_; }

    const T* data() const { return data_; }

    T& operator[](int i) { return data_[i]; }

    const T& operator[](int i) const { return data_[i]; }

    // Editing in place

    /// Adds one element at the end. Cost: the whole vector. `UsageError` if this is shallow.
    void append(const T& element);
    void append(const Vector& other);
    void prepend(const Vector& other);

    /// Overwrites the elements from `pos` on; `SizeError` if `other` reaches beyond the end.
    void paste(int pos, const Vector& other);

    void fill(const T& value);
    void setZeros();
    void setZeros(int n);
    void setOnes();
    void setOnes(int n);

    /// All zero but element `i`, which is 1.
    void setCanonical(int i);

    /// Element `i` is `i * step`.
    void setSequence(T step);

    /// Element `i` is `start + i * step`.
    void setSequence(T start, T step);

    void apply(T (*f)(T));

    /// Every element equal to `from` becomes `to`.
    void replace(T from, T to);

    /// Ascending.
    void sort();
    void reverse();

    /// Rotates to the right by one: the last element becomes the first.
    void circShift();

    /// Exchanges two elements drawn at random, as often as there are elements.
    void shuffle(RandomGenerator& generator);

    /// New element `i` is old element `p[i]`; `p` has this vector's size.
    void shuffle(const Vector<int>& p);

    /// The inverse of `shuffle(p)`: new element `p[i]` is old element `i`.
    void unshuffle(const Vector<int>& p);

    /// Divides by `norm()`; a zero vector stays as it is. `TypeError` as `norm`.
    void normalize();

    // Extraction

    /// Elements `first` to `last`, both included.
    Vector copy(int first, int last) const;

    /// Element `i` of the result is element `indices[i]`.
    Vector copy(const Vector<int>& indices) const;
    Vector copyFrom(int first) const;

    /// Elements 0 to `last`, included.
    Vector copyUntil(int last) const;

    /// Each element converted to `U`.
    template <class U>
    Vector<U> toType() const;
    std::vector<T> toStlVector() const;

    /// The indices of the elements that differ from 0, ascending.
    Vector<int> nonZero() const;

    /// Sorted, with equal neighbours dropped; real numbers are compared by `Maths::equal`, and the
    /// first of a run stays.
    Vector unique() const;

    // Statistics; `SizeError` for an empty vector

    T min() const;
    T max() const;

    /// Index of the first smallest element.
    int minPos() const;
    int maxPos() const;

    /// Minimum and maximum.
    Vector range() const;

    /// Index of the first element equal to `value`, or -1.
    int find(const T& value) const;
    T sum() const;
    T prod() const;

    /// `TypeError` for integers up to `unsigned int`.
    T mean() const;

    /// For integers the mean of two middle elements is truncated. The vector need not be sorted.
    T median() const;

    /// Sum of the squared deviations from the mean. `TypeError` for integers, as the next three.
    T sse() const;

    /// `sse() / size`: divides by n, not n - 1.
    T var() const;
    T std() const;

    /// Standard error of the mean: of a sample (n - 1 in the denominator; `SizeError` for a single
    /// value) or of a whole population.
    T sem(bool sample) const;

    /// Median absolute deviation from the median, without a scale factor. `TypeError` for unsigned
    /// and short integers.
    T mad() const;

    /// Nearest rank of `p` percent, not interpolated. The vector must be sorted ascending
    /// (`UsageError`) and `p` lie in [0, 100] (not checked).
    T percentile(float p) const;

    /// Count, minimum, maximum, median, sum and mean (numerics/numbers.h); the mean of integers is
    /// truncated.
    Numbers<T> numbers() const;

    /// No element is greater than its successor; equal neighbours pass. True for one element.
    bool isIncreasing() const;

    /// No element is smaller than its successor. False for one element.
    bool isDecreasing() const;

    // Properties of vectors of any size

    bool isConstant() const;

    /// Equal to its reverse; true below 2 elements.
    bool isSymmetrical() const;

    /// Equal to its negated reverse, a middle element left out; false below 2 elements.
    bool isAntiSymmetrical() const;

    /// Index of the component with the largest absolute value, the first on ties; -1 if there is
    /// none. `TypeError` for `bool`.
    int closestAxis() const;
    bool operator==(const Vector& other) const;
    bool operator!=(const Vector& other) const;

    /// The working tolerance of the type: 0 for integers, 1e-6, 1e-15 and 1e-18 for the real types.
    static T epsilon();

    // Geometry; 0 for empty vectors

    T scalarProduct(const Vector& other) const;

    /// Squared Euclidean norm.
    T snorm() const;

    /// `TypeError` for integers up to `unsigned int`.
    T norm() const;

    /// Squared Euclidean distance.
    T sdistance(const Vector& other) const;

    /// `TypeError` for integers but `bool`, `char` and `long`.
    T distance(const Vector& other) const;

    /// Sum of the absolute differences.
    T manhattanDistance(const Vector& other) const;

    /// In radians, not clamped: rounding can make the angle of parallel vectors NaN.
    T angle(const Vector& other) const;

    /// Cross product; `SizeError` unless both have 3 elements.
    Vector vectorProduct(const Vector& other) const;

    /// Rows x columns = this size x other size (numerics/matrix.h). Not for `long`, of which there
    /// are no matrices.
    Matrix<T> outerProduct(const Vector& other) const;

    // Arithmetic; a division by an integer 0 is not checked

    Vector operator-() const;
    Vector operator+(const Vector& other) const;
    Vector operator-(const Vector& other) const;
    Vector operator/(const Vector& other) const;
    Vector pointwiseProduct(const Vector& other) const;
    void operator+=(const Vector& other);
    void operator-=(const Vector& other);

    /// The point-wise product.
    void operator*=(const Vector& other);
    void operator/=(const Vector& other);
    Vector operator+(T value) const;
    Vector operator-(T value) const;
    Vector operator*(T value) const;
    Vector operator/(T value) const;
    void operator+=(T value);
    void operator-=(T value);
    void operator*=(T value);
    void operator/=(T value);

    /// Point-wise maximum; `UsageError` for different sizes.
    static Vector pmax(const Vector& a, const Vector& b);
    static Vector pmin(const Vector& a, const Vector& b);

    // Series

    /// Running sum.
    Vector csum() const;

    /// Running product.
    Vector cprod() const;

    /// Element `i` is `v[i + k] - v[i]`, the last `k` elements are 0. `SizeError` unless there are
    /// more than `k` elements, `ValueError` for a negative `k`.
    Vector diff(int k) const;

    /// Counts of the elements by intervals of width `step` from `origin` on. What lies below the
    /// first or beyond the last edge counts in the first or last bin, a NaN in the last.
    /// `ValueError` without bins.
    Vector<unsigned int> histogram(T origin, T step, int bins) const;

    /// The same over the elements whose `mask` entry is not 0; `SizeError` for a mask of another
    /// size.
    Vector<unsigned int> histogram(T origin, T step, int bins, const Vector& mask) const;

    /// Correlation with a kernel of odd size (`ValueError`), centred on its middle element; outside
    /// the vector everything counts as 0. Same size as this.
    Vector corr(const Vector& kernel) const;

    /// Correlation with the reversed kernel.
    Vector conv(const Vector& kernel) const;

    /// Correlation in which elements with a mask entry of 0 take no part and stay unfiltered. Of a
    /// pair of samples around the centre of which one is masked or outside, the other one gets both
    /// weights. `SizeError` for a mask of another size.
    Vector corr(const Vector& kernel, const Vector& mask) const;
    Vector conv(const Vector& kernel, const Vector& mask) const;

    /// Replaces this vector x by the Householder vector v with v[0] = 1 and sets `beta`, so that
    /// x - beta v (v . x) is a multiple of the first canonical vector. Golub and Van Loan, Matrix
    /// Computations, algorithm 5.1.1. `TypeError` for integers of every kind; `SizeError` for an
    /// empty vector.
    void householderVector(T& beta);

    /// The same written into `v`.
    void householderVector(Vector& v, T& beta) const;

private:
    static T* allocate(int n);
    static int __compare(const void* left, const void* right);
    void requireSizeOf(const Vector& other, const char* where) const;
    void requireElements(const char* where) const;
    T elementMean() const;
    void release();
    void replaceArray(Vector& other);

    int size_ = 0;
    T* data_ = nullptr;
    bool shallow_ = false;
};

template <class T>
T* Vector<T>::allocate(int n)
{
    return n > 0 ? new T[static_cast<std::size_t>(n)] : nullptr;
}

template <class T>
void Vector<T>::release()
{
    if (!shallow_) {
        delete[] data_;
    }
    size_ = 0;
    data_ = nullptr;
    shallow_ = false;
}

template <class T>
Vector<T>::Vector(int n)
    : size_(n > 0 ? n : 0)
    , data_(allocate(n))
{}

template <class T>
Vector<T>::Vector(int n, T* data)
    : size_(n > 0 ? n : 0)
    , data_(data)
    , shallow_(true)
{}

template <class T>
Vector<T>::Vector(const Vector& other)
    : Vector(other.size_)
{
    std::copy_n(other.data_, other.size_, data_);
}

template <class T>
Vector<T>::Vector(Vector&& other)
    : Vector(other.shallow_ ? other.size_ : 0)
{
    if (other.shallow_) {
        std::copy_n(other.data_, other.size_, data_);
    } else {
        replaceArray(other);
    }
}

template <class T>
Vector<T>::Vector(const std::vector<T>& elements)
    : Vector(static_cast<int>(elements.size()))
{
    std::copy(elements.begin(), elements.end(), data_);
}

template <class T>
Vector<T>::~Vector()
{
    release();
}

template <class T>
Vector<T>& Vector<T>::operator=(const Vector& other)
{
    if (this != &other) {
        setSize(other.size_);
        std::copy_n(other.data_, other.size_, data_);
    }
    return *this;
}

template <class T>
Vector<T>& Vector<T>::operator=(Vector&& other)
{
    if (shallow_ || other.shallow_ || size_ == other.size_) {
        return *this = static_cast<const Vector&>(other);
    }
    replaceArray(other);
    return *this;
}

template <class T>
void Vector<T>::replaceArray(Vector& other)
{
    std::swap(size_, other.size_);
    std::swap(data_, other.data_);
    other.release();
}

template <class T>
void Vector<T>::setSize(int n, T* data)
{
    const int size = n > 0 ? n : 0;
    if (data != nullptr) {
        release();
        size_ = size;
        data_ = data;
        shallow_ = true;
        return;
    }
    if (size == size_) {
        return;
    }
    if (shallow_) {
        raise<UsageError>("void Vector<T>::setSize(const int,T*)",
                          "This is a shallow vector, cannot be resized without data");
    }
    release();
    data_ = allocate(size);
    size_ = size;
}

template <class T>
void Vector<T>::swap(Vector& other)
{
    if (!shallow_ && !other.shallow_) {
        std::swap(size_, other.size_);
        std::swap(data_, other.data_);
        return;
    }
    if (size_ != other.size_) {
        raise<UsageError>("void Vector<T>::swap(Vector&)",
                          "Vector size differ and at least one of them is shallow");
    }
    std::swap_ranges(data_, data_ + size_, other.data_);
}

template <class T>
void Vector<T>::append(const T& element)
{
    if (shallow_) {
        raise<UsageError>("void Vector<T>::append(const T&)",
                          "This is a shallow vector (cannot be resized)");
    }
    Vector grown(size_ + 1);
    std::copy_n(data_, size_, grown.data_);
    grown.data_[size_] = element;
    replaceArray(grown);
}

template <class T>
void Vector<T>::append(const Vector& other)
{
    if (shallow_) {
        raise<UsageError>("void Vector<T>::append(const Vector&)",
                          "This is a shallow vector (cannot be resized)");
    }
    Vector grown(size_ + other.size_);
    std::copy_n(data_, size_, grown.data_);
    std::copy_n(other.data_, other.size_, grown.data_ + size_);
    replaceArray(grown);
}

template <class T>
void Vector<T>::prepend(const Vector& other)
{
    if (shallow_) {
        raise<UsageError>("void Vector<T>::prepend(const Vector&)",
                          "This is a shallow vector (cannot be resized)");
    }
    Vector grown(size_ + other.size_);
    std::copy_n(other.data_, other.size_, grown.data_);
    std::copy_n(data_, size_, grown.data_ + other.size_);
    replaceArray(grown);
}

template <class T>
void Vector<T>::paste(int pos, const Vector& other)
{
    if (pos + other.size_ > size_) {
        raise<SizeError>("Vector Vector<T>::paste(...)",
                         "Vector too large to be pasted at specified position");
    }
    std::copy_n(other.data_, other.size_, data_ + pos);
}

template <class T>
template <class U>
Vector<U> Vector<T>::toType() const
{
    Vector<U> result(size_);
    for (int i = 0; i < size_; ++i) {
        result[i] = static_cast<U>(data_[i]);
    }
    return result;
}

template <class T>
std::vector<T> Vector<T>::toStlVector() const
{
    return std::vector<T>(data_, data_ + size_);
}

extern template class Vector<bool>;
extern template class Vector<char>;
extern template class Vector<unsigned char>;
extern template class Vector<short>;
extern template class Vector<unsigned short>;
extern template class Vector<int>;
extern template class Vector<unsigned int>;
extern template class Vector<long>;
extern template class Vector<float>;
extern template class Vector<double>;
extern template class Vector<long double>;
