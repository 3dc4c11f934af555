// Part of `Matrix`: orthogonal transforms, singular values and what rests on them.

#include "numerics/elementarithmetic.h"
#include "numerics/elementtype.h"
#include "numerics/squarematrix.h"

#include <cmath>
#include <limits>

namespace {

template <class T>
void requireHouseholderSize(const Vector<T>& v, int size, const char* where)
{
    if (v.getSize() != size) {
        raise<SizeError>(where, "Incompatible block and Householder vector dimensions");
    }
}

constexpr const char* leftTransform = "Matrix<T> Matrix<T>::leftHouseholderTransform(...)";
constexpr const char* rightTransform = "Matrix<T> Matrix<T>::rightHouseholderTransform(...)";

/// The iteration that makes an upper bidiagonal matrix diagonal by Givens rotations, which it
/// applies to the factors too. Golub and Van Loan, Matrix Computations, section 8.6.
template <class T>
class BidiagonalIteration
{
public:
    BidiagonalIteration(Matrix<T>& b, SquareMatrix<T>* u, SquareMatrix<T>* v)
        : b_(b)
        , u_(u)
        , v_(v)
        , size_(b.getSize2())
        , negligible_(Vector<T>::epsilon() * static_cast<T>(std::sqrt(b.snorm())))
    {}

    /// False if the matrix isn't diagonal after a number of steps that no real input needs.
    bool run()
    {
        const long maximumSteps = 100L * size_ + 1000;
        for (long step = 0; step < maximumSteps; ++step) {
            dropSmallSuperdiagonal();
            if (!findBlock()) {
                return true;
            }
            const int zero = findZeroOnDiagonal();
            if (zero < 0) {
                chaseBulge();
            } else if (zero < last_) {
                clearRow(zero);
            } else {
                clearLastColumn();
            }
        }
        return false;
    }

private:
    void dropSmallSuperdiagonal()
    {
        for (int i = 0; i + 1 < size_; ++i) {
            const T neighbours = std::abs(b_[i][i]) + std::abs(b_[i + 1][i + 1]);
            if (std::abs(b_[i][i + 1]) < Vector<T>::epsilon() * neighbours) {
                b_[i][i + 1] = 0;
            }
        }
    }

    /// Finds the last unreduced block, `first_` to `last_`; false if the matrix is diagonal.
    bool findBlock()
    {
        last_ = size_ - 1;
        while (last_ > 0 && b_[last_ - 1][last_] == 0) {
            --last_;
        }
        first_ = last_;
        while (first_ > 0 && b_[first_ - 1][first_] != 0) {
            --first_;
        }
        return first_ < last_;
    }

    int findZeroOnDiagonal() const
    {
        for (int i = first_; i <= last_; ++i) {
            if (std::abs(b_[i][i]) < negligible_) {
                return i;
            }
        }
        return -1;
    }

    /// Turns the rows `i`, `j` so that the element (`j`, `column`) vanishes.
    void rotateRows(int i, int j, int column)
    {
        T c = 1;
        T s = 0;
        Matrix<T>::givens(c, s, b_[i][column], b_[j][column]);
        b_.leftGivensRotate(c, s, i, j);
        b_[j][column] = 0;
        if (u_ != nullptr) {
            u_->leftGivensRotate(c, s, i, j);
        }
    }

    /// Turns the columns `i`, `j` by the angle that takes (`a`, `b`) to (r, 0).
    void rotateColumns(int i, int j, T a, T b)
    {
        T c = 1;
        T s = 0;
        Matrix<T>::givens(c, s, a, b);
        b_.rightGivensRotate(c, s, i, j);
        if (v_ != nullptr) {
            v_->rightGivensRotate(c, s, i, j);
        }
    }

    void clearRow(int zero)
    {
        b_[zero][zero] = 0;
        for (int k = zero + 1; k <= last_; ++k) {
            rotateRows(k, zero, k);
        }
    }

    void clearLastColumn()
    {
        b_[last_][last_] = 0;
        for (int k = last_ - 1; k >= first_; --k) {
            rotateColumns(k, last_, b_[k][k], b_[k][last_]);
            b_[k][last_] = 0;
        }
    }

    /// The eigenvalue of the last 2 x 2 block of B^T B that is nearer to its last entry.
    T shift() const
    {
        const T d = b_[last_ - 1][last_ - 1];
        const T e = b_[last_ - 1][last_];
        const T above = last_ - 1 > first_ ? b_[last_ - 2][last_ - 1] : T(0);
        const T before = d * d + above * above;
        const T offDiagonal = d * e;
        const T end = b_[last_][last_] * b_[last_][last_] + e * e;
        const T difference = (before - end) / 2;
        const T scale = std::max(std::abs(difference), std::abs(offDiagonal));
        if (scale == 0) {
            return end;
        }
        const T x = difference / scale;
        const T y = offDiagonal / scale;
        const T root = scale * std::sqrt(x * x + y * y);
        const T middle = (before + end) / 2;
        return difference > 0 ? middle - root : middle + root;
    }

    void chaseBulge()
    {
        const T d = b_[first_][first_];
        T y = d * d - shift();
        T z = d * b_[first_][first_ + 1];
        for (int k = first_; k < last_; ++k) {
            rotateColumns(k, k + 1, y, z);
            if (k > first_) {
                b_[k - 1][k + 1] = 0;
            }
            rotateRows(k, k + 1, k);
            y = b_[k][k + 1];
            z = k + 1 < last_ ? b_[k][k + 2] : T(0);
        }
    }

    Matrix<T>& b_;
    SquareMatrix<T>* u_;
    SquareMatrix<T>* v_;
    int size_;
    T negligible_;
    int first_ = 0;
    int last_ = 0;
};

template <class T>
void requireFinite(const Matrix<T>& matrix, const char* where)
{
    for (int i = 0; i < matrix.getSize1(); ++i) {
        for (int j = 0; j < matrix.getSize2(); ++j) {
            if (!std::isfinite(matrix[i][j])) {
                raise<MathError>(where, "No convergence");
            }
        }
    }
}

/// The power of two next below the largest absolute value, 1 for a zero matrix. Dividing by it is
/// exact, and keeps squares of the elements from overflowing.
template <class T>
T exactScale(const Matrix<T>& matrix)
{
    T largest = 0;
    for (int i = 0; i < matrix.getSize1(); ++i) {
        for (int j = 0; j < matrix.getSize2(); ++j) {
            largest = std::max(largest, std::abs(matrix[i][j]));
        }
    }
    // The inverse of the largest power would be subnormal, that of the smallest infinite.
    const int limit = std::numeric_limits<T>::max_exponent - 2;
    const int exponent = largest > 0 ? std::ilogb(largest) : 0;
    return std::ldexp(T(1), std::max(-limit, std::min(limit, exponent)));
}

} // namespace

template <class T>
void Matrix<T>::leftHouseholderTransform(const Vector<T>& v, T beta)
{
    requireHouseholderSize(v, n_, leftTransform);
    Vector<T> w;
    w.setZeros(p_);
    for (int i = 0; i < n_; ++i) {
        for (int j = 0; j < p_; ++j) {
            w[j] = added(w[j], multiplied(v[i], rows_[i][j]));
        }
    }
    *this -= v.outerProduct(w) * beta;
}

template <class T>
void Matrix<T>::rightHouseholderTransform(const Vector<T>& v, T beta)
{
    requireHouseholderSize(v, p_, rightTransform);
    *this -= (*this * v).outerProduct(v) * beta;
}

template <class T>
void Matrix<T>::leftHouseholderTransform(const Vector<T>& v, T beta, int i1, int i2, int j1, int j2)
{
    requireHouseholderSize(v, i2 - i1 + 1, leftTransform);
    if (j2 < j1) {
        return;
    }
    const int columns = j2 - j1 + 1;
    Vector<T> sums;
    sums.setZeros(columns);
    T* w = sums.data();
    for (int i = i1; i <= i2; ++i) {
        const T factor = v[i - i1];
        const T* row = rows_[i].data() + j1;
        for (int j = 0; j < columns; ++j) {
            w[j] = added(w[j], multiplied(factor, row[j]));
        }
    }
    sums *= beta;
    for (int i = i1; i <= i2; ++i) {
        const T factor = v[i - i1];
        T* row = rows_[i].data() + j1;
        for (int j = 0; j < columns; ++j) {
            row[j] = subtracted(row[j], multiplied(factor, w[j]));
        }
    }
}

template <class T>
void Matrix<T>::rightHouseholderTransform(
    const Vector<T>& v, T beta, int i1, int i2, int j1, int j2)
{
    requireHouseholderSize(v, j2 - j1 + 1, rightTransform);
    for (int i = i1; i <= i2; ++i) {
        T* row = rows_[i].data() + j1;
        T sum = 0;
        for (int j = 0; j < v.getSize(); ++j) {
            sum = added(sum, multiplied(v[j], row[j]));
        }
        const T w = multiplied(beta, sum);
        for (int j = 0; j < v.getSize(); ++j) {
            row[j] = subtracted(row[j], multiplied(v[j], w));
        }
    }
}

template <class T>
void Matrix<T>::givens([[maybe_unused]] T& c,
                       [[maybe_unused]] T& s,
                       [[maybe_unused]] T a,
                       [[maybe_unused]] T b)
{
    if constexpr (isOneOf<T, bool, short, unsigned short, int, unsigned int>) {
        raiseNotAvailable<T>("void Matrix<T>::givens(T&, T&, const T, const T)");
    } else if (b == 0) {
        c = 1;
        s = 0;
    } else if (absolute(a) > absolute(b)) {
        const T t = divided(negated(b), a);
        c = static_cast<T>(1 / std::sqrt(static_cast<double>(1 + t * t)));
        s = multiplied(c, t);
    } else {
        const T t = divided(negated(a), b);
        s = static_cast<T>(1 / std::sqrt(static_cast<double>(1 + t * t)));
        c = multiplied(s, t);
    }
}

template <class T>
void Matrix<T>::leftGivensRotate(T c, T s, int i, int j)
{
    T* first = rows_[i].data();
    T* second = rows_[j].data();
    for (int k = 0; k < p_; ++k) {
        const T x = first[k];
        const T y = second[k];
        first[k] = subtracted(multiplied(c, x), multiplied(s, y));
        second[k] = added(multiplied(s, x), multiplied(c, y));
    }
}

template <class T>
void Matrix<T>::rightGivensRotate(T c, T s, int i, int j)
{
    for (int k = 0; k < n_; ++k) {
        T* row = rows_[k].data();
        const T x = row[i];
        const T y = row[j];
        row[i] = subtracted(multiplied(c, x), multiplied(s, y));
        row[j] = added(multiplied(s, x), multiplied(c, y));
    }
}

template <class T>
void Matrix<T>::householderBidiag([[maybe_unused]] SquareMatrix<T>* U,
                                  [[maybe_unused]] SquareMatrix<T>* V)
{
    const char* const where = "Matrix<T> Matrix<T>::householderBidiag(...) const";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        if (p_ > n_) {
            raise<SizeError>(where, "Cannot perform bidiagonalization of (n,p) matrix with p > n");
        }
        if (U != nullptr) {
            U->setIdentity(n_);
        }
        if (V != nullptr) {
            V->setIdentity(p_);
        }
        T beta = 0;
        for (int j = 0; j < p_; ++j) {
            Vector<T> v = getColumn(j).copyFrom(j);
            v.householderVector(beta);
            leftHouseholderTransform(v, beta, j, n_ - 1, j, p_ - 1);
            for (int i = j + 1; i < n_; ++i) {
                rows_[i][j] = 0;
            }
            if (U != nullptr) {
                U->leftHouseholderTransform(v, beta, j, n_ - 1, 0, n_ - 1);
            }
            if (j <= p_ - 3) {
                v = rows_[j].copyFrom(j + 1);
                v.householderVector(beta);
                rightHouseholderTransform(v, beta, j, n_ - 1, j + 1, p_ - 1);
                std::fill(rows_[j].data() + j + 2, rows_[j].data() + p_, T(0));
                if (V != nullptr) {
                    V->rightHouseholderTransform(v, beta, 0, p_ - 1, j + 1, p_ - 1);
                }
            }
        }
    }
}

template <class T>
Vector<T> Matrix<T>::svd([[maybe_unused]] SquareMatrix<T>* U,
                         [[maybe_unused]] SquareMatrix<T>* V) const
{
    const char* const where = "Vector<T> Matrix<T>::svd(...) const";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        if (p_ > n_) {
            raise<SizeError>(where, "Cannot perform svd of (n,p) matrix with p > n");
        }
        requireFinite(*this, where);
        const T scale = exactScale(*this);
        Matrix b = *this / scale;
        SquareMatrix<T> left;
        SquareMatrix<T> right;
        SquareMatrix<T>* const leftFactor = U != nullptr ? &left : nullptr;
        SquareMatrix<T>* const rightFactor = V != nullptr ? &right : nullptr;
        b.householderBidiag(leftFactor, rightFactor);
        Matrix upper = b.copy(0, p_ - 1, 0, p_ - 1);
        if (!BidiagonalIteration<T>(upper, leftFactor, rightFactor).run()) {
            raise<MathError>(where, "No convergence");
        }
        Vector<T> values = upper.getDiagonal();
        for (int i = 0; i < p_; ++i) {
            if (values[i] < 0) {
                values[i] = -values[i];
                if (U != nullptr) {
                    left[i] *= T(-1);
                }
            }
        }
        if (U != nullptr) {
            U->swap(left);
        }
        if (V != nullptr) {
            V->swap(right);
        }
        values *= scale;
        return values;
    }
}

template <class T>
T Matrix<T>::dropTolerance(const Vector<T>& singularValues) const
{
    const T largest = singularValues.getSize() == 0 ? T(0) : singularValues.max();
    return multiplied(multiplied(static_cast<T>(n_), largest), Vector<T>::epsilon());
}

template <class T>
Matrix<T> Matrix<T>::pinverse() const
{
    const char* const where = "Matrix<T> Matrix<T>::pinverse() const";
    if constexpr (isOneOf<T, bool, short, unsigned short, int, unsigned int>) {
        raiseNotAvailable<T>(where);
    } else {
        try {
            SquareMatrix<T> u;
            SquareMatrix<T> v;
            const Vector<T> s = svd(&u, &v);
            const T tolerance = dropTolerance(s);
            Matrix scaled(p_, n_);
            for (int i = 0; i < p_; ++i) {
                if (s[i] < tolerance || s[i] == 0) {
                    scaled[i].setZeros();
                } else {
                    scaled[i] = u[i] / s[i];
                }
            }
            return v * scaled;
        } catch (Exception& exception) {
            exception.addCall(where);
            throw;
        }
    }
}

template <class T>
Vector<T> Matrix<T>::solve(const Vector<T>& b) const
{
    const char* const where = "Vector<T> Matrix<T>::solve(...) const";
    if (b.getSize() != n_) {
        raise<SizeError>(where, "Incompatible vector and matrix dimensions");
    }
    try {
        SquareMatrix<T> u;
        SquareMatrix<T> v;
        const Vector<T> s = svd(&u, &v);
        const T tolerance = dropTolerance(s);
        Vector<T> y(p_);
        for (int i = 0; i < p_; ++i) {
            const bool isDropped = s[i] < tolerance || s[i] == 0;
            y[i] = isDropped ? T(0) : divided(u[i].scalarProduct(b), s[i]);
        }
        return v * y;
    } catch (Exception& exception) {
        exception.addCall(where);
        throw;
    }
}

// Member by member, since matrix.cpp instantiates the class with all that is defined there.
#define INSTANTIATE_MATRIX_DECOMPOSITIONS(T)                                                       \
    template void Matrix<T>::leftHouseholderTransform(const Vector<T>&, T);                        \
    template void Matrix<T>::rightHouseholderTransform(const Vector<T>&, T);                       \
    template void Matrix<T>::leftHouseholderTransform(const Vector<T>&, T, int, int, int, int);    \
    template void Matrix<T>::rightHouseholderTransform(const Vector<T>&, T, int, int, int, int);   \
    template void Matrix<T>::givens(T&, T&, T, T);                                                 \
    template void Matrix<T>::leftGivensRotate(T, T, int, int);                                     \
    template void Matrix<T>::rightGivensRotate(T, T, int, int);                                    \
    template void Matrix<T>::householderBidiag(SquareMatrix<T>*, SquareMatrix<T>*);                \
    template Vector<T> Matrix<T>::svd(SquareMatrix<T>*, SquareMatrix<T>*) const;                   \
    template T Matrix<T>::dropTolerance(const Vector<T>&) const;                                   \
    template Matrix<T> Matrix<T>::pinverse() const;                                                \
    template Vector<T> Matrix<T>::solve(const Vector<T>&) const;

INSTANTIATE_MATRIX_DECOMPOSITIONS(bool)
INSTANTIATE_MATRIX_DECOMPOSITIONS(char)
INSTANTIATE_MATRIX_DECOMPOSITIONS(unsigned char)
INSTANTIATE_MATRIX_DECOMPOSITIONS(short)
INSTANTIATE_MATRIX_DECOMPOSITIONS(unsigned short)
INSTANTIATE_MATRIX_DECOMPOSITIONS(int)
INSTANTIATE_MATRIX_DECOMPOSITIONS(unsigned int)
INSTANTIATE_MATRIX_DECOMPOSITIONS(float)
INSTANTIATE_MATRIX_DECOMPOSITIONS(double)
INSTANTIATE_MATRIX_DECOMPOSITIONS(long double)
