#include "numerics/squarematrix.h"

#include "numerics/elementarithmetic.h"
#include "numerics/elementtype.h"

#include <algorithm>
#include <cstdlib>

namespace {

template <class T>
void requireLength(const Vector<T>& diagonal, int size, int offset, const char* where)
{
    if (diagonal.getSize() != std::max(0, size - std::abs(offset))) {
        raise<SizeError>(where, "Incompatible matrix and vector dimensions");
    }
}

} // namespace

template <class T>
SquareMatrix<T>::SquareMatrix() = default;

template <class T>
SquareMatrix<T>::SquareMatrix(int n)
    : Matrix<T>(n, n)
{}

template <class T>
SquareMatrix<T>::SquareMatrix(const Matrix<T>& matrix)
    : Matrix<T>(matrix)
{
    if (matrix.getSize1() != matrix.getSize2()) {
        raise<SizeError>("SquareMatrix<T>::SquareMatrix(const Matrix<T>&)",
                         "This matrix is not square");
    }
}

template <class T>
SquareMatrix<T>::SquareMatrix(const Quaternion<T>& q, bool homogeneous)
    : SquareMatrix(homogeneous ? 4 : 3)
{
    const T w = q.w;
    const T x = q.x;
    const T y = q.y;
    const T z = q.z;
    setIdentity();
    const T rotation[3][3] = {
        {T(w * w + x * x - y * y - z * z), T(2 * (x * y - w * z)), T(2 * (x * z + w * y))},
        {T(2 * (x * y + w * z)), T(w * w - x * x + y * y - z * z), T(2 * (y * z - w * x))},
        {T(2 * (x * z - w * y)), T(2 * (y * z + w * x)), T(w * w - x * x - y * y + z * z)},
    };
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            (*this)[i][j] = rotation[i][j];
        }
    }
}

template <class T>
SquareMatrix<T>::SquareMatrix(const SquareMatrix& other) = default;

template <class T>
SquareMatrix<T>::SquareMatrix(SquareMatrix&& other) noexcept = default;

template <class T>
SquareMatrix<T>::~SquareMatrix() = default;

template <class T>
SquareMatrix<T>& SquareMatrix<T>::operator=(const SquareMatrix& other)
{
    Matrix<T>::operator=(other);
    return *this;
}

template <class T>
void SquareMatrix<T>::setSize(int n, int p, bool owner)
{
    if (n != p) {
        raise<SizeError>("void SquareMatrix<T>::setSize(const int, const int)",
                         "Arguments n and p have distinct values.");
    }
    Matrix<T>::setSize(n, n, owner);
}

template <class T>
void SquareMatrix<T>::setSize(int n, bool owner)
{
    setSize(n, n, owner);
}

template <class T>
void SquareMatrix<T>::setZeros(int n)
{
    Matrix<T>::setZeros(n, n);
}

template <class T>
void SquareMatrix<T>::setOnes(int n)
{
    Matrix<T>::setOnes(n, n);
}

template <class T>
void SquareMatrix<T>::setIdentity()
{
    setDiagonal(T(1));
}

template <class T>
void SquareMatrix<T>::setIdentity(int n)
{
    setZeros(n);
    setIdentity();
}

template <class T>
void SquareMatrix<T>::setDiagonal(T value)
{
    setZeros();
    for (int i = 0; i < getSize(); ++i) {
        (*this)[i][i] = value;
    }
}

template <class T>
void SquareMatrix<T>::setHilbert([[maybe_unused]] int n)
{
    if constexpr (std::is_integral_v<T>) {
        raiseNotAvailable<T>("void SquareMatrix<T>::setHilbert(const int)");
    } else {
        this->setSize(n, n, this->isOwner());
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                (*this)[i][j] = T(1) / static_cast<T>(i + j + 1);
            }
        }
    }
}

template <class T>
void SquareMatrix<T>::setDiagonal(const Vector<T>& d)
{
    setZeros(d.getSize());
    pasteDiagonal(d);
}

template <class T>
void SquareMatrix<T>::setUpperBidiagonal(const Vector<T>& d, const Vector<T>& e)
{
    requireLength(e, d.getSize(), 1, "void SquareMatrix<T>::setUpperBidiagonal(...)");
    setDiagonal(d);
    pasteUpperDiagonal(e);
}

template <class T>
void SquareMatrix<T>::setLowerBidiagonal(const Vector<T>& d, const Vector<T>& e)
{
    requireLength(e, d.getSize(), -1, "void SquareMatrix<T>::setLowerBidiagonal(...)");
    setDiagonal(d);
    pasteLowerDiagonal(e);
}

template <class T>
void SquareMatrix<T>::setTridiagonal(const Vector<T>& a, const Vector<T>& b, const Vector<T>& c)
{
    const char* const where = "void SquareMatrix<T>::setTridiagonal(...)";
    requireLength(a, b.getSize(), -1, where);
    requireLength(c, b.getSize(), 1, where);
    setDiagonal(b);
    pasteLowerDiagonal(a);
    pasteUpperDiagonal(c);
}

template <class T>
void SquareMatrix<T>::pasteDiagonalAt(const Vector<T>& v, int offset, const char* where)
{
    requireLength(v, getSize(), offset, where);
    for (int k = 0; k < v.getSize(); ++k) {
        (*this)[k + std::max(0, -offset)][k + std::max(0, offset)] = v[k];
    }
}

template <class T>
void SquareMatrix<T>::pasteDiagonal(const Vector<T>& v)
{
    pasteDiagonalAt(v, 0, "void SquareMatrix<T>::pasteDiagonal(...)");
}

template <class T>
void SquareMatrix<T>::pasteUpperDiagonal(const Vector<T>& v)
{
    pasteDiagonalAt(v, 1, "void SquareMatrix<T>::pasteUpperDiagonal(...)");
}

template <class T>
void SquareMatrix<T>::pasteUpperDiagonal2(const Vector<T>& v)
{
    pasteDiagonalAt(v, 2, "void SquareMatrix<T>::pasteUpperDiagonal2(...)");
}

template <class T>
void SquareMatrix<T>::pasteLowerDiagonal(const Vector<T>& v)
{
    pasteDiagonalAt(v, -1, "void SquareMatrix<T>::pasteLowerDiagonal(...)");
}

template <class T>
void SquareMatrix<T>::pasteLowerDiagonal2(const Vector<T>& v)
{
    pasteDiagonalAt(v, -2, "void SquareMatrix<T>::pasteLowerDiagonal2(...)");
}

template <class T>
Vector<T> SquareMatrix<T>::diagonalAt(int offset) const
{
    Vector<T> result(std::max(0, getSize() - std::abs(offset)));
    for (int k = 0; k < result.getSize(); ++k) {
        result[k] = (*this)[k + std::max(0, -offset)][k + std::max(0, offset)];
    }
    return result;
}

template <class T>
Vector<T> SquareMatrix<T>::diagonal() const
{
    return diagonalAt(0);
}

template <class T>
Vector<T> SquareMatrix<T>::upperDiagonal() const
{
    return diagonalAt(1);
}

template <class T>
Vector<T> SquareMatrix<T>::lowerDiagonal() const
{
    return diagonalAt(-1);
}

template <class T>
bool SquareMatrix<T>::isSymmetrical() const
{
    for (int i = 0; i < getSize(); ++i) {
        for (int j = 0; j <= i; ++j) {
            if (!((*this)[i][j] == (*this)[j][i])) {
                return false;
            }
        }
    }
    return true;
}

template <class T>
bool SquareMatrix<T>::isAntiSymmetrical() const
{
    for (int i = 0; i < getSize(); ++i) {
        for (int j = 0; j <= i; ++j) {
            if (!((*this)[i][j] == negated((*this)[j][i]))) {
                return false;
            }
        }
    }
    return true;
}

template <class T>
T SquareMatrix<T>::trace() const
{
    T result = 0;
    for (int i = 0; i < getSize(); ++i) {
        result = added(result, (*this)[i][i]);
    }
    return result;
}

template <class T>
bool SquareMatrix<T>::isRHSystem() const
{
    if (getSize() != 3) {
        raise<SizeError>("bool SquareMatrix<T>::isRHSystem() const", "This matrix is not 3 x 3");
    }
    const Vector<T> normal = this->getColumn(0).vectorProduct(this->getColumn(1));
    return static_cast<RealOf<T>>(normal.scalarProduct(this->getColumn(2))) >= 0;
}

template class SquareMatrix<bool>;
template class SquareMatrix<char>;
template class SquareMatrix<unsigned char>;
template class SquareMatrix<short>;
template class SquareMatrix<unsigned short>;
template class SquareMatrix<int>;
template class SquareMatrix<unsigned int>;
template class SquareMatrix<float>;
template class SquareMatrix<double>;
template class SquareMatrix<long double>;
