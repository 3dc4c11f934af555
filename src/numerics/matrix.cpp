#include "numerics/matrix.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

template <class T>
void Matrix<T>::build(int n, int p, bool owner)
{
    const int rowCount = std::max(n, 0);
    const int columnCount = std::max(p, 0);
    std::unique_ptr<Vector<T>[]> rows;
    std::unique_ptr<T[]> block;
    if (rowCount > 0) {
        rows.reset(new Vector<T>[static_cast<std::size_t>(rowCount)]);
    }
    if (owner && rowCount > 0 && columnCount > 0) {
        block.reset(
            new T[static_cast<std::size_t>(rowCount) * static_cast<std::size_t>(columnCount)]);
    }
    for (int i = 0; i < rowCount; ++i) {
        const std::size_t offset =
            static_cast<std::size_t>(i) * static_cast<std::size_t>(columnCount);
        rows[i].setSize(columnCount, block ? block.get() + offset : nullptr);
    }
    rows_ = rows.release();
    block.release();
    n_ = rowCount;
    p_ = columnCount;
    owner_ = owner;
}

template <class T>
void Matrix<T>::copyRows(const Matrix& other)
{
    for (int i = 0; i < n_; ++i) {
        rows_[i] = other.rows_[i];
    }
}

template <class T>
Matrix<T>::Matrix() = default;

template <class T>
Matrix<T>::Matrix(int n, int p, bool owner)
{
    build(n, p, owner && n <= 0);
}

template <class T>
Matrix<T>::Matrix(const Matrix& other)
{
    build(other.n_, other.p_, other.owner_);
    copyRows(other);
}

template <class T>
Matrix<T>::Matrix(Matrix&& other) noexcept
{
    swap(other);
}

template <class T>
Matrix<T>::Matrix(const Vector<T>& v, bool isRow)
    : Matrix(isRow ? 1 : v.getSize(), isRow ? v.getSize() : 1)
{
    if (isRow) {
        setRow(0, v);
    } else {
        setColumn(0, v);
    }
}

template <class T>
Matrix<T>::~Matrix()
{
    clear();
}

template <class T>
Matrix<T>& Matrix<T>::operator=(const Matrix& other)
{
    if (this != &other) {
        setSize(other.n_, other.p_, other.owner_);
        copyRows(other);
    }
    return *this;
}

template <class T>
void Matrix<T>::setSize(int n, int p, bool owner)
{
    if (n != n_ || p != p_) {
        clear();
        build(n, p, owner);
    }
}

template <class T>
void Matrix<T>::setSize(const Vector<int>& size)
{
    setSize(size[0], size[1], owner_);
}

template <class T>
void Matrix<T>::clear()
{
    // The result of `copy` reports a block that it doesn't have: what tells is the first row.
    if (owner_ && n_ > 0 && rows_[0].isShallow()) {
        delete[] rows_[0].data();
    }
    delete[] rows_;
    rows_ = nullptr;
    n_ = 0;
    p_ = 0;
    owner_ = false;
}

template <class T>
Vector<int> Matrix<T>::getSize() const
{
    Vector<int> size(2);
    getSize(size[0], size[1]);
    return size;
}

template <class T>
void Matrix<T>::getSize(int& rows, int& columns) const
{
    rows = n_;
    columns = p_;
}

template <class T>
int Matrix<T>::getSize(int dim) const
{
    if (dim != 1 && dim != 2) {
        raise<ValueError>("int Matrix<T>::getSize(const int) const",
                          "A matrix has the dimensions 1 and 2");
    }
    return dim == 1 ? n_ : p_;
}

template <class T>
void Matrix<T>::fill(T value)
{
    for (int i = 0; i < n_; ++i) {
        rows_[i].fill(value);
    }
}

template <class T>
void Matrix<T>::setZeros()
{
    fill(T(0));
}

template <class T>
void Matrix<T>::setZeros(int n, int p)
{
    setSize(n, p, owner_);
    setZeros();
}

template <class T>
void Matrix<T>::setOnes()
{
    fill(T(1));
}

template <class T>
void Matrix<T>::setOnes(int n, int p)
{
    setSize(n, p, owner_);
    setOnes();
}

template <class T>
void Matrix<T>::apply(T (*f)(T))
{
    for (int i = 0; i < n_; ++i) {
        rows_[i].apply(f);
    }
}

template <class T>
void Matrix<T>::setRow(int i, const Vector<T>& v)
{
    if (v.getSize() != p_) {
        raise<SizeError>("void Matrix<T>::setRow(const int,const Vector<T>&)",
                         "Incompatible matrix row and vector dimensions");
    }
    rows_[i] = v;
}

template <class T>
void Matrix<T>::setColumn(int j, const Vector<T>& v)
{
    if (v.getSize() != n_) {
        raise<SizeError>("void Matrix<T>::setColumn(const int,const Vector<T>&)",
                         "Incompatible matrix column and vector dimensions");
    }
    for (int i = 0; i < n_; ++i) {
        rows_[i][j] = v[i];
    }
}

template <class T>
void Matrix<T>::paste(int i, int j, const Matrix& m)
{
    if (i < 0 || j < 0 || m.n_ > n_ - i || m.p_ > p_ - j) {
        raise<SizeError>("void Matrix<T>::paste(...)", "Cannot paste matrix at specified position");
    }
    for (int row = 0; row < m.n_; ++row) {
        rows_[i + row].paste(j, m.rows_[row]);
    }
}

template <class T>
void Matrix<T>::swap(Matrix& other)
{
    std::swap(n_, other.n_);
    std::swap(p_, other.p_);
    std::swap(rows_, other.rows_);
    std::swap(owner_, other.owner_);
}

template <class T>
void Matrix<T>::swapRows(int i, int j)
{
    rows_[i].swap(rows_[j]);
}

template <class T>
void Matrix<T>::sortRows(int column)
{
    sortRows(0, n_ - 1, column);
}

template <class T>
void Matrix<T>::sortRows(int first, int last, int column)
{
    struct Entry
    {
        int row;
        const T* key;
    };

    const int begin = std::min(first, last);
    const int count = n_ == 0 ? 0 : std::max(first, last) - begin + 1;
    std::vector<Entry> order;
    order.reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row) {
        order.push_back({row, &rows_[begin + row][column]});
    }
    const auto isNaN = [](T x) { return x != x; };
    std::sort(order.begin(), order.end(), [&](const Entry& a, const Entry& b) {
        return *a.key < *b.key || (isNaN(*b.key) && !isNaN(*a.key));
    });

    std::vector<int> rowAt(order.size());
    std::vector<int> positionOf(order.size());
    for (int row = 0; row < count; ++row) {
        rowAt[row] = row;
        positionOf[row] = row;
    }
    for (int target = 0; target < count; ++target) {
        const int position = positionOf[order[target].row];
        if (position != target) {
            swapRows(begin + target, begin + position);
            const int displaced = rowAt[target];
            rowAt[position] = displaced;
            positionOf[displaced] = position;
        }
    }
}

template <class T>
Vector<T> Matrix<T>::getRow(int i) const
{
    return rows_[i];
}

template <class T>
Vector<T> Matrix<T>::getColumn(int j) const
{
    Vector<T> column(n_);
    getColumn(column, j);
    return column;
}

template <class T>
void Matrix<T>::getColumn(Vector<T>& column, int j) const
{
    column.setSize(n_);
    for (int i = 0; i < n_; ++i) {
        column[i] = rows_[i][j];
    }
}

template <class T>
Vector<T> Matrix<T>::getDiagonal(bool main) const
{
    Vector<T> diagonal;
    getDiagonal(diagonal, main);
    return diagonal;
}

template <class T>
void Matrix<T>::getDiagonal(Vector<T>& diagonal, bool /*main*/) const
{
    const int length = std::min(n_, p_);
    diagonal.setSize(length);
    for (int i = 0; i < length; ++i) {
        diagonal[i] = rows_[i][i];
    }
}

template <class T>
Matrix<T> Matrix<T>::copy(int i1, int i2, int j1, int j2) const
{
    Matrix result(i2 - i1 + 1, j2 - j1 + 1);
    result.owner_ = owner_;
    for (int i = 0; i < result.n_; ++i) {
        std::copy_n(rows_[i1 + i].data() + j1, result.p_, result.rows_[i].data());
    }
    return result;
}

template <class T>
Matrix<T> Matrix<T>::copy(const Vector<int>& rows, const Vector<int>& columns) const
{
    Matrix result(rows.getSize(), columns.getSize());
    for (int i = 0; i < result.n_; ++i) {
        for (int j = 0; j < result.p_; ++j) {
            result.rows_[i][j] = rows_[rows[i]][columns[j]];
        }
    }
    return result;
}

template <class T>
Vector<T> Matrix<T>::cat() const
{
    Vector<T> result(n_ * p_);
    for (int i = 0; i < n_; ++i) {
        result.paste(i * p_, rows_[i]);
    }
    return result;
}

template <class T>
Matrix<T> Matrix<T>::transpose() const
{
    Matrix result(p_, n_);
    for (int j = 0; j < p_; ++j) {
        T* row = result.rows_[j].data();
        for (int i = 0; i < n_; ++i) {
            row[i] = rows_[i][j];
        }
    }
    return result;
}

template <class T>
bool Matrix<T>::operator==(const Matrix& other) const
{
    return n_ == other.n_ && std::equal(rows_, rows_ + n_, other.rows_);
}

template <class T>
bool Matrix<T>::operator!=(const Matrix& other) const
{
    return !(*this == other);
}

template class Matrix<bool>;
template class Matrix<char>;
template class Matrix<unsigned char>;
template class Matrix<short>;
template class Matrix<unsigned short>;
template class Matrix<int>;
template class Matrix<unsigned int>;
template class Matrix<float>;
template class Matrix<double>;
template class Matrix<long double>;
