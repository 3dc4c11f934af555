// Part of `Matrix`: statistics, sums and products.

#include "numerics/elementarithmetic.h"
#include "numerics/elementtype.h"
#include "numerics/matrix.h"

#include <functional>

namespace {

/// Integer types that lack the statistics over all elements.
template <class T>
constexpr bool lacksMoments = isOneOf<T, bool, short, unsigned short, int, unsigned int>;

template <class T>
using Sum = std::conditional_t<std::is_same_v<T, long double>, long double, double>;

/// The positions of the extreme elements of the columns: the first of those that `isBefore` any
/// other.
template <class T, class Order>
Vector<int> extremeRows(const Matrix<T>& matrix, Order isBefore)
{
    Vector<int> positions;
    positions.setZeros(matrix.getSize2());
    for (int i = 1; i < matrix.getSize1(); ++i) {
        for (int j = 0; j < matrix.getSize2(); ++j) {
            if (isBefore(matrix[i][j], matrix[positions[j]][j])) {
                positions[j] = i;
            }
        }
    }
    return positions;
}

template <class T, class Order>
Vector<T> extremes(const Matrix<T>& matrix, Order isBefore)
{
    const Vector<int> positions = extremeRows(matrix, isBefore);
    Vector<T> result(positions.getSize());
    for (int j = 0; j < positions.getSize(); ++j) {
        result[j] = matrix[positions[j]][j];
    }
    return result;
}

/// One value for each row.
template <class Result, class T, class Operation>
Vector<Result> rowByRow(const Matrix<T>& matrix, Operation operation)
{
    Vector<Result> result(matrix.getSize1());
    for (int i = 0; i < matrix.getSize1(); ++i) {
        result[i] = operation(matrix[i]);
    }
    return result;
}

} // namespace

template <class T>
void Matrix<T>::requireElements(bool rows, const char* where) const
{
    if (rows ? n_ > 0 && p_ == 0 : p_ > 0 && n_ == 0) {
        raise<SizeError>(where, "This matrix is empty.");
    }
}

template <class T>
void Matrix<T>::requireSizeOf(const Matrix& other, const char* where) const
{
    if (!sameSizeAs(other)) {
        raise<SizeError>(where, "The dimensions of the two matrices differ");
    }
}

template <class T>
T Matrix<T>::snorm() const
{
    T result = 0;
    for (int i = 0; i < n_; ++i) {
        result = added(result, rows_[i].snorm());
    }
    return result;
}

template <class T>
Vector<T> Matrix<T>::range() const
{
    if (n_ == 0 || p_ == 0) {
        raise<SizeError>("Vector<T> Matrix<T>::range() const", "This matrix is empty.");
    }
    Vector<T> result = rows_[0].range();
    for (int i = 1; i < n_; ++i) {
        result[0] = std::min(result[0], rows_[i].min());
        result[1] = std::max(result[1], rows_[i].max());
    }
    return result;
}

template <class T>
Vector<T> Matrix<T>::min(bool rows) const
{
    requireElements(rows, "Vector<T> Matrix<T>::min(const bool) const");
    return rows ? rowByRow<T>(*this, [](const Vector<T>& row) { return row.min(); })
                : extremes(*this, std::less<T>());
}

template <class T>
Vector<T> Matrix<T>::max(bool rows) const
{
    requireElements(rows, "Vector<T> Matrix<T>::max(const bool) const");
    return rows ? rowByRow<T>(*this, [](const Vector<T>& row) { return row.max(); })
                : extremes(*this, std::greater<T>());
}

template <class T>
Vector<T> Matrix<T>::sum(bool rows) const
{
    requireElements(rows, "Vector<T> Matrix<T>::sum(const bool) const");
    if (rows) {
        return rowByRow<T>(*this, [](const Vector<T>& row) { return row.sum(); });
    }
    Vector<T> result = n_ > 0 ? rows_[0] : Vector<T>();
    for (int i = 1; i < n_; ++i) {
        result += rows_[i];
    }
    return result;
}

template <class T>
Vector<int> Matrix<T>::minPos(bool rows) const
{
    requireElements(rows, "Vector<int> Matrix<T>::minPos(const bool) const");
    return rows ? rowByRow<int>(*this, [](const Vector<T>& row) { return row.minPos(); })
                : extremeRows(*this, std::less<T>());
}

template <class T>
Vector<int> Matrix<T>::maxPos(bool rows) const
{
    requireElements(rows, "Vector<int> Matrix<T>::maxPos(const bool) const");
    return rows ? rowByRow<int>(*this, [](const Vector<T>& row) { return row.maxPos(); })
                : extremeRows(*this, std::greater<T>());
}

template <class T>
Vector<T> Matrix<T>::mean() const
{
    return rowByRow<T>(*this, [](const Vector<T>& row) { return row.mean(); });
}

template <class T>
Vector<T> Matrix<T>::var() const
{
    return rowByRow<T>(*this, [](const Vector<T>& row) { return row.var(); });
}

template <class T>
Vector<T> Matrix<T>::std() const
{
    return rowByRow<T>(*this, [](const Vector<T>& row) { return row.std(); });
}

template <class T>
Vector<T> Matrix<T>::prod() const
{
    return rowByRow<T>(*this, [](const Vector<T>& row) { return row.prod(); });
}

template <class T>
T Matrix<T>::mean2() const
{
    if constexpr (lacksMoments<T>) {
        raiseNotAvailable<T>("T Matrix<T>::mean2() const");
    } else {
        if (n_ == 0 || p_ == 0) {
            return 0;
        }
        Sum<T> sum = 0;
        for (int i = 0; i < n_; ++i) {
            for (int j = 0; j < p_; ++j) {
                sum += rows_[i][j];
            }
        }
        return static_cast<T>(sum / (static_cast<Sum<T>>(n_) * p_));
    }
}

template <class T>
T Matrix<T>::var2() const
{
    if constexpr (lacksMoments<T>) {
        raiseNotAvailable<T>("T Matrix<T>::var2() const");
    } else {
        if (n_ == 0 || p_ == 0) {
            return 0;
        }
        const T average = mean2();
        Sum<T> sum = 0;
        for (int i = 0; i < n_; ++i) {
            for (int j = 0; j < p_; ++j) {
                const Sum<T> deviation = static_cast<Sum<T>>(rows_[i][j]) - average;
                sum += deviation * deviation;
            }
        }
        return static_cast<T>(sum / (static_cast<Sum<T>>(n_) * p_));
    }
}

template <class T>
T Matrix<T>::std2() const
{
    if constexpr (lacksMoments<T>) {
        raiseNotAvailable<T>("T Matrix<T>::std2() const");
    } else {
        return squareRoot(var2());
    }
}

template <class T>
Vector<unsigned int> Matrix<T>::histogram(T origin, T step, int bins) const
{
    Vector<unsigned int> counts = Vector<T>().histogram(origin, step, bins);
    for (int i = 0; i < n_; ++i) {
        counts += rows_[i].histogram(origin, step, bins);
    }
    return counts;
}

template <class T>
Matrix<T> Matrix<T>::operator+(const Matrix& other) const
{
    requireSizeOf(other, "Matrix<T> Matrix<T>::operator+(const Matrix&) const");
    Matrix result(*this);
    result += other;
    return result;
}

template <class T>
Matrix<T> Matrix<T>::operator-(const Matrix& other) const
{
    requireSizeOf(other, "Matrix<T> Matrix<T>::operator-(const Matrix&) const");
    Matrix result(*this);
    result -= other;
    return result;
}

template <class T>
Matrix<T> Matrix<T>::pointwiseProduct(const Matrix& other) const
{
    requireSizeOf(other, "Matrix<T> Matrix<T>::pointwiseProduct(const Matrix&) const");
    Matrix result(*this);
    for (int i = 0; i < n_; ++i) {
        result.rows_[i] *= other.rows_[i];
    }
    return result;
}

template <class T>
void Matrix<T>::operator+=(const Matrix& other)
{
    requireSizeOf(other, "void Matrix<T>::operator+=(const Matrix&)");
    for (int i = 0; i < n_; ++i) {
        rows_[i] += other.rows_[i];
    }
}

template <class T>
void Matrix<T>::operator-=(const Matrix& other)
{
    requireSizeOf(other, "void Matrix<T>::operator-=(const Matrix&)");
    for (int i = 0; i < n_; ++i) {
        rows_[i] -= other.rows_[i];
    }
}

template <class T>
Matrix<T> Matrix<T>::operator*(const Matrix& other) const
{
    if (p_ != other.n_) {
        raise<SizeError>("Matrix<T> Matrix<T>::operator*(const Matrix&) const",
                         "The dimensions of the two matrices are not compatible");
    }
    Matrix result(n_, other.p_);
    result.setZeros();
    for (int i = 0; i < n_; ++i) {
        T* sums = result.rows_[i].data();
        for (int k = 0; k < p_; ++k) {
            const T factor = rows_[i][k];
            const T* row = other.rows_[k].data();
            for (int j = 0; j < other.p_; ++j) {
                sums[j] = added(sums[j], multiplied(factor, row[j]));
            }
        }
    }
    return result;
}

template <class T>
void Matrix<T>::operator*=(const Matrix& other)
{
    if (p_ != other.n_) {
        raise<SizeError>("void Matrix<T>::operator*=(const Matrix&)",
                         "The dimensions of the two matrices are not compatible");
    }
    const Matrix product = *this * other;
    setSize(product.n_, product.p_, owner_);
    copyRows(product);
}

template <class T>
Vector<T> Matrix<T>::operator*(const Vector<T>& v) const
{
    if (v.getSize() != p_) {
        raise<SizeError>("Vector<T> Matrix<T>::operator*(const Vector<T>&)",
                         "Incompatible vector and matrix dimensions");
    }
    return rowByRow<T>(*this, [&v](const Vector<T>& row) { return row.scalarProduct(v); });
}

template <class T>
Matrix<T> Matrix<T>::operator-() const
{
    Matrix result(n_, p_);
    for (int i = 0; i < n_; ++i) {
        result.rows_[i] = -rows_[i];
    }
    return result;
}

template <class T>
Matrix<T> Matrix<T>::operator+(T value) const
{
    Matrix result(*this);
    result += value;
    return result;
}

template <class T>
Matrix<T> Matrix<T>::operator-(T value) const
{
    Matrix result(*this);
    result -= value;
    return result;
}

template <class T>
Matrix<T> Matrix<T>::operator*(T value) const
{
    Matrix result(*this);
    result *= value;
    return result;
}

template <class T>
Matrix<T> Matrix<T>::operator/(T value) const
{
    Matrix result(*this);
    result /= value;
    return result;
}

template <class T>
void Matrix<T>::operator+=(T value)
{
    for (int i = 0; i < n_; ++i) {
        rows_[i] += value;
    }
}

template <class T>
void Matrix<T>::operator-=(T value)
{
    for (int i = 0; i < n_; ++i) {
        rows_[i] -= value;
    }
}

template <class T>
void Matrix<T>::operator*=(T value)
{
    for (int i = 0; i < n_; ++i) {
        rows_[i] *= value;
    }
}

template <class T>
void Matrix<T>::operator/=(T value)
{
    for (int i = 0; i < n_; ++i) {
        rows_[i] /= value;
    }
}

// Member by member, since matrix.cpp instantiates the class with all that is defined there.
#define INSTANTIATE_MATRIX_ARITHMETIC(T)                                                           \
    template void Matrix<T>::requireElements(bool, const char*) const;                             \
    template void Matrix<T>::requireSizeOf(const Matrix&, const char*) const;                      \
    template T Matrix<T>::snorm() const;                                                           \
    template Vector<T> Matrix<T>::range() const;                                                   \
    template Vector<T> Matrix<T>::min(bool) const;                                                 \
    template Vector<T> Matrix<T>::max(bool) const;                                                 \
    template Vector<T> Matrix<T>::sum(bool) const;                                                 \
    template Vector<int> Matrix<T>::minPos(bool) const;                                            \
    template Vector<int> Matrix<T>::maxPos(bool) const;                                            \
    template Vector<T> Matrix<T>::mean() const;                                                    \
    template Vector<T> Matrix<T>::var() const;                                                     \
    template Vector<T> Matrix<T>::std() const;                                                     \
    template Vector<T> Matrix<T>::prod() const;                                                    \
    template T Matrix<T>::mean2() const;                                                           \
    template T Matrix<T>::var2() const;                                                            \
    template T Matrix<T>::std2() const;                                                            \
    template Vector<unsigned int> Matrix<T>::histogram(T, T, int) const;                           \
    template Matrix<T> Matrix<T>::operator+(const Matrix&) const;                                  \
    template Matrix<T> Matrix<T>::operator-(const Matrix&) const;                                  \
    template Matrix<T> Matrix<T>::pointwiseProduct(const Matrix&) const;                           \
    template void Matrix<T>::operator+=(const Matrix&);                                            \
    template void Matrix<T>::operator-=(const Matrix&);                                            \
    template Matrix<T> Matrix<T>::operator*(const Matrix&) const;                                  \
    template void Matrix<T>::operator*=(const Matrix&);                                            \
    template Vector<T> Matrix<T>::operator*(const Vector<T>&) const;                               \
    template Matrix<T> Matrix<T>::operator-() const;                                               \
    template Matrix<T> Matrix<T>::operator+(T) const;                                              \
    template Matrix<T> Matrix<T>::operator-(T) const;                                              \
    template Matrix<T> Matrix<T>::operator*(T) const;                                              \
    template Matrix<T> Matrix<T>::operator/(T) const;                                              \
    template void Matrix<T>::operator+=(T);                                                        \
    template void Matrix<T>::operator-=(T);                                                        \
    template void Matrix<T>::operator*=(T);                                                        \
    template void Matrix<T>::operator/=(T);

INSTANTIATE_MATRIX_ARITHMETIC(bool)
INSTANTIATE_MATRIX_ARITHMETIC(char)
INSTANTIATE_MATRIX_ARITHMETIC(unsigned char)
INSTANTIATE_MATRIX_ARITHMETIC(short)
INSTANTIATE_MATRIX_ARITHMETIC(unsigned short)
INSTANTIATE_MATRIX_ARITHMETIC(int)
INSTANTIATE_MATRIX_ARITHMETIC(unsigned int)
INSTANTIATE_MATRIX_ARITHMETIC(float)
INSTANTIATE_MATRIX_ARITHMETIC(double)
INSTANTIATE_MATRIX_ARITHMETIC(long double)
