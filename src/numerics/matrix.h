#pragma once

#include "numerics/vector.h"

#include <utility>

template <class T>
class SquareMatrix;

/// A table of `n` rows and `p` columns, stored as an array of `Vector<T>` rows.
///
/// Row by row (the default) each row owns its elements, and rows are exchanged by pointer. In
/// contiguous mode, which images use, the matrix owns one block of `n * p` elements in row order,
/// and the rows are shallow vectors into it. Elements are not initialised.
///
/// Operations compute in the element type, as those of `Vector`; decompositions raise `TypeError`
/// for integers. Indices are not checked. A failed operation changes nothing.
template <class T>
class Matrix
{
public:
    // Construction and storage

    /// 0 x 0.
    Matrix();

    /// Row by row, whatever `owner` says, unless `n` is 0. A matrix of 0 rows keeps its `p`.
    Matrix(int n, int p, bool owner = false);

    /// A deep copy in the same storage mode.
    Matrix(const Matrix& other);
    Matrix(Matrix&& other) noexcept;

    /// One row, or one column.
    Matrix(const Vector<T>& v, bool isRow);
    virtual ~Matrix();

    /// Takes size and mode by `setSize`, then copies the rows.
    Matrix& operator=(const Matrix& other);

    /// Nothing if the size is `n` x `p` already, whatever the mode. Else releases everything and
    /// builds it anew, contiguous if `owner`; the elements are not initialised.
    virtual void setSize(int n, int p, bool owner = false);

    /// Rows and columns from a vector of two; the storage mode stays.
    void setSize(const Vector<int>& size);

    /// Releases all: 0 x 0.
    void clear();

    /// Rows and columns.
    Vector<int> getSize() const;
    void getSize(int& rows, int& columns) const;

    /// Rows for `dim` 1, columns for 2; `ValueError` for any other.
    int getSize(int dim) const;

    int getSize1() const { return n_; }

    int getSize2() const { return p_; }

    bool isOwner() const { return owner_; }

    Vector<T>& operator[](int i) { return rows_[i]; }

    const Vector<T>& operator[](int i) const { return rows_[i]; }

    T& operator()(int i, int j) { return rows_[i][j]; }

    const T& operator()(int i, int j) const { return rows_[i][j]; }

    T& operator()(const Vector<int>& position) { return rows_[position[0]][position[1]]; }

    const T& operator()(const Vector<int>& position) const
    {
        return rows_[position[0]][position[1]];
    }

    // Filling and editing

    void fill(T value);
    void setZeros();
    void setZeros(int n, int p);
    void setOnes();
    void setOnes(int n, int p);

    /// Element by element, row by row.
    void apply(T (*f)(T));

    /// `SizeError` unless `v` has as many elements as a row.
    void setRow(int i, const Vector<T>& v);

    /// `SizeError` unless `v` has as many elements as a column.
    void setColumn(int j, const Vector<T>& v);

    /// Writes `m` with its first element at row `i`, column `j`; `SizeError` if it does not fit.
    void paste(int i, int j, const Matrix& m);

    /// Exchanges everything in constant time.
    void swap(Matrix& other);
    void swapRows(int i, int j);

    /// Sorts the rows ascending by the value in `column`, NaN last; rows with equal values come in
    /// no particular order.
    void sortRows(int column);

    /// The same for the rows between `first` and `last`, both included, in either order.
    void sortRows(int first, int last, int column);

    // Extraction

    Vector<T> getRow(int i) const;
    Vector<T> getColumn(int j) const;
    void getColumn(Vector<T>& column, int j) const;

    /// The first min(n, p) elements of the main diagonal. The flag has no effect.
    Vector<T> getDiagonal(bool main = true) const;
    void getDiagonal(Vector<T>& diagonal, bool main = true) const;

    /// Rows `i1` to `i2` and columns `j1` to `j2`, all included. The result reports this matrix's
    /// `isOwner()`, but is stored row by row.
    Matrix copy(int i1, int i2, int j1, int j2) const;

    /// Element (i, j) of the result is element (rows[i], columns[j]).
    Matrix copy(const Vector<int>& rows, const Vector<int>& columns) const;

    /// All rows joined.
    Vector<T> cat() const;
    Matrix transpose() const;

    /// Each element converted to `U`; row by row.
    template <class U>
    Matrix<U> toType() const;

    // Statistics. Where `rows` is asked for: one value for each row (true) or column (false);
    // `SizeError` where these are empty.

    /// Sum of the squares of all elements.
    T snorm() const;

    /// Smallest and largest element; `SizeError` if there is none.
    Vector<T> range() const;
    Vector<T> min(bool rows) const;
    Vector<T> max(bool rows) const;
    Vector<T> sum(bool rows) const;

    /// Position of the first smallest element.
    Vector<int> minPos(bool rows) const;
    Vector<int> maxPos(bool rows) const;

    /// One value for each row, by the vector operation of the same name, as the next three.
    Vector<T> mean() const;
    Vector<T> var() const;
    Vector<T> std() const;
    Vector<T> prod() const;

    /// Mean of all elements, summed in at least double precision; 0 for an empty matrix.
    /// `TypeError` for integers but `char` and `unsigned char`, as the next two.
    T mean2() const;

    /// Variance over all elements, divided by their number.
    T var2() const;
    T std2() const;

    /// Sum of the histograms of the rows.
    Vector<unsigned int> histogram(T origin, T step, int bins) const;

    // Arithmetic

    /// The number of rows and every row equal.
    bool operator==(const Matrix& other) const;
    bool operator!=(const Matrix& other) const;

    /// `SizeError` for different sizes, as the next four.
    Matrix operator+(const Matrix& other) const;
    Matrix operator-(const Matrix& other) const;
    Matrix pointwiseProduct(const Matrix& other) const;
    void operator+=(const Matrix& other);
    void operator-=(const Matrix& other);

    /// Matrix product, (n x p)(p x q); `SizeError` unless the inner sizes agree.
    Matrix operator*(const Matrix& other) const;
    void operator*=(const Matrix& other);

    /// `SizeError` unless `v` has `p` elements.
    Vector<T> operator*(const Vector<T>& v) const;

    Matrix operator-() const;
    Matrix operator+(T value) const;
    Matrix operator-(T value) const;
    Matrix operator*(T value) const;
    Matrix operator/(T value) const;
    void operator+=(T value);
    void operator-=(T value);
    void operator*=(T value);
    void operator/=(T value);

    // Orthogonal transforms and decompositions

    /// Replaces A by (I - beta v v^T) A, with `v` and `beta` from `Vector::householderVector`; `v`
    /// has `n` elements (`SizeError`).
    void leftHouseholderTransform(const Vector<T>& v, T beta);

    /// Replaces A by A (I - beta v v^T); `v` has `p` elements (`SizeError`).
    void rightHouseholderTransform(const Vector<T>& v, T beta);

    /// The left transform of the block of rows `i1` to `i2`, columns `j1` to `j2`, all included;
    /// `v` has as many elements as the block has rows (`SizeError`).
    void leftHouseholderTransform(const Vector<T>& v, T beta, int i1, int i2, int j1, int j2);

    /// The right transform of a block; `v` has as many elements as the block has columns.
    void rightHouseholderTransform(const Vector<T>& v, T beta, int i1, int i2, int j1, int j2);

    /// Cosine and sine of the rotation that turns (a, b) into (r, 0): c a - s b = r, s a + c b = 0.
    /// Golub and Van Loan, Matrix Computations, algorithm 5.1.3. `TypeError` for integers but
    /// `char` and `unsigned char`.
    static void givens(T& c, T& s, T a, T b);

    /// Rows `i`, `j` become c r_i - s r_j and s r_i + c r_j.
    void leftGivensRotate(T c, T s, int i, int j);

    /// Columns `i`, `j` become c r_i - s r_j and s r_i + c r_j.
    void rightGivensRotate(T c, T s, int i, int j);

    /// Golub-Kahan bidiagonalisation in place, for n >= p (`SizeError`): this matrix M becomes the
    /// upper bidiagonal U M V. Null pointers leave out `U` (n x n) or `V` (p x p). `TypeError` for
    /// integers.
    void householderBidiag(SquareMatrix<T>* U, SquareMatrix<T>* V);

    /// The `p` singular values, unsorted and not negative, for n >= p (`SizeError`), with U A V
    /// diagonal: A = U^T S V^T. Null pointers leave out `U` (n x n) or `V` (p x p). Golub and Van
    /// Loan, Matrix Computations, algorithm 8.6.2. `MathError` if there is no convergence, as with
    /// a NaN or an infinity. `TypeError` for integers.
    Vector<T> svd(SquareMatrix<T>* U, SquareMatrix<T>* V) const;

    /// Moore-Penrose inverse, p x n; singular values below n max(s) epsilon count as 0. Errors as
    /// `svd`.
    Matrix pinverse() const;

    /// The x of minimum norm that minimises |A x - b|; `b` has `n` elements (`SizeError`). Singular
    /// values as in `pinverse`.
    Vector<T> solve(const Vector<T>& b) const;

private:
    void build(int n, int p, bool owner);
    void copyRows(const Matrix& other);

    bool sameSizeAs(const Matrix& other) const { return n_ == other.n_ && p_ == other.p_; }

    void requireSizeOf(const Matrix& other, const char* where) const;
    void requireElements(bool rows, const char* where) const;
    T dropTolerance(const Vector<T>& singularValues) const;

    int n_ = 0;
    int p_ = 0;
    Vector<T>* rows_ = nullptr;
    bool owner_ = false;
};

template <class T>
template <class U>
Matrix<U> Matrix<T>::toType() const
{
    Matrix<U> result(n_, p_);
    for (int i = 0; i < n_; ++i) {
        const T* source = rows_[i].data();
        U* target = result[i].data();
        for (int j = 0; j < p_; ++j) {
            target[j] = static_cast<U>(source[j]);
        }
    }
    return result;
}

extern template class Matrix<bool>;
extern template class Matrix<char>;
extern template class Matrix<unsigned char>;
extern template class Matrix<short>;
extern template class Matrix<unsigned short>;
extern template class Matrix<int>;
extern template class Matrix<unsigned int>;
extern template class Matrix<float>;
extern template class Matrix<double>;
extern template class Matrix<long double>;
