#pragma once

#include "numerics/matrix.h"
#include "numerics/quaternion.h"

/// A matrix with as many rows as columns: diagonals, LU factors, tridiagonal systems, determinant,
/// inverse and the eigenvalues of symmetric matrices.
///
/// The factorisations and `setHilbert` raise `TypeError` for integers of every kind. Vectors of a wrong length
/// raise `SizeError`.
template <class T>
class SquareMatrix : public Matrix<T>
{
public:
    /// 0 x 0.
    SquareMatrix();
    explicit SquareMatrix(int n);

    /// `SizeError` unless `matrix` is square.
    SquareMatrix(const Matrix<T>& matrix);

    /// The rotation matrix of a unit quaternion: 3 x 3, or 4 x 4 with the last row and column of
    /// the identity if `homogeneous`.
    SquareMatrix(const Quaternion<T>& q, bool homogeneous);
    SquareMatrix(const SquareMatrix& other);
    SquareMatrix(SquareMatrix&& other) noexcept;
    ~SquareMatrix() override;
    SquareMatrix& operator=(const SquareMatrix& other);

    /// As in `Matrix`; `SizeError` if `n` and `p` differ.
    void setSize(int n, int p, bool owner = false) override;
    void setSize(int n, bool owner = false);
    using Matrix<T>::setSize;
    using Matrix<T>::getSize;

    /// The number of rows.
    int getSize() const { return this->getSize1(); }

    // Filling

    using Matrix<T>::setZeros;
    using Matrix<T>::setOnes;
    void setZeros(int n);
    void setOnes(int n);
    void setIdentity();
    void setIdentity(int n);

    /// A diagonal matrix of equal entries; the size stays.
    void setDiagonal(T value);

    /// Element (i, j) is 1 / (i + j + 1).
    void setHilbert(int n);

    /// The matrix of these diagonals, zero elsewhere, sized by the main one. Off-diagonals have one
    /// element less.
    void setDiagonal(const Vector<T>& d);
    void setUpperBidiagonal(const Vector<T>& d, const Vector<T>& e);
    void setLowerBidiagonal(const Vector<T>& d, const Vector<T>& e);

    /// Subdiagonal, main diagonal, superdiagonal.
    void setTridiagonal(const Vector<T>& a, const Vector<T>& b, const Vector<T>& c);

    /// Overwrite one diagonal: the main one, the first or second above, the first or second below.
    void pasteDiagonal(const Vector<T>& v);
    void pasteUpperDiagonal(const Vector<T>& v);
    void pasteUpperDiagonal2(const Vector<T>& v);
    void pasteLowerDiagonal(const Vector<T>& v);
    void pasteLowerDiagonal2(const Vector<T>& v);

    // Properties

    Vector<T> diagonal() const;
    Vector<T> upperDiagonal() const;
    Vector<T> lowerDiagonal() const;

    /// Exactly equal to the transpose.
    bool isSymmetrical() const;

    /// Exactly equal to the negated transpose, so with a zero diagonal.
    bool isAntiSymmetrical() const;
    T trace() const;

    /// The columns of a 3 x 3 matrix form a right-handed system: (c0 x c1) . c2 >= 0. `SizeError`
    /// for any other size.
    bool isRHSystem() const;

    // Linear systems

    /// Crout LU factors in place with scaled partial pivoting; L has a unit diagonal. `perm[j]` is
    /// the row exchanged with row `j` at step `j`. Returns +1 for an even number of exchanges, -1
    /// for an odd one. `MathError` if a pivot is not above `tolerance`; the matrix is then as
    /// before. Press et al., Numerical Recipes, section 2.3.
    int luDecomp(Vector<int>& perm, T tolerance);

    /// Solves in place with the factors of `luDecomp`, which this matrix holds.
    void luSolve(Vector<T>& b, const Vector<int>& perm) const;

    /// Thomas algorithm for the diagonal `d` (n), subdiagonal `l` and superdiagonal `u` (n - 1);
    /// the right-hand side `x` becomes the solution. No pivoting: `MathError` on a pivot within
    /// epsilon of 0.
    static void
    tridiagSolve(Vector<T>& x, const Vector<T>& d, const Vector<T>& l, const Vector<T>& u);

    /// The inverse of a tridiagonal matrix. Errors as `tridiagSolve`.
    static void tridiagInverse(SquareMatrix& inverse,
                               const Vector<T>& d,
                               const Vector<T>& l,
                               const Vector<T>& u);

    /// Tridiagonal with the corners `alpha` (bottom left) and `beta` (top right), by the
    /// Sherman-Morrison formula. `MathError` if a pivot, or the denominator, is within epsilon of
    /// 0; `SizeError` below two equations.
    static void cyclicTridiagSolve(
        Vector<T>& x, const Vector<T>& d, const Vector<T>& l, const Vector<T>& u, T alpha, T beta);

    /// By LU factors; `MathError` for a singular matrix (pivots up to 2.3841858e-6).
    SquareMatrix inverse() const;

    /// By LU factors; 0 for a matrix that counts as singular in `inverse`.
    T det() const;

    // Eigenvalues of symmetric matrices

    /// Cyclic Jacobi rotations. Eigenvector `i` is column `i` of `vectors`; `sort` puts the values
    /// in decreasing order. Only the upper triangle is read, symmetry is not checked. `MathError`
    /// if there is no convergence, as with a NaN or an infinity.
    void eigenJacobi(Vector<T>& values, SquareMatrix& vectors, bool sort) const;
    Vector<T> eigenValues(bool sort) const;

    /// Sorts in decreasing order. Each exchange reverses the sign of the vector that moves to the
    /// later position, which keeps the determinant of `vectors`.
    static void eigenSort(Vector<T>& values, SquareMatrix& vectors);

private:
    void pasteDiagonalAt(const Vector<T>& v, int offset, const char* where);
    Vector<T> diagonalAt(int offset) const;
    int factorise(Vector<int>& perm, T tolerance);
};

extern template class SquareMatrix<bool>;
extern template class SquareMatrix<char>;
extern template class SquareMatrix<unsigned char>;
extern template class SquareMatrix<short>;
extern template class SquareMatrix<unsigned short>;
extern template class SquareMatrix<int>;
extern template class SquareMatrix<unsigned int>;
extern template class SquareMatrix<float>;
extern template class SquareMatrix<double>;
extern template class SquareMatrix<long double>;
