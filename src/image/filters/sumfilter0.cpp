#include "image/filters/sumfilter0.h"

#include "numerics/elementarithmetic.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

/// Sums over a window of `2 * radius + 1` entries, cut at both ends, in place.
template <class T>
void sumRow(T* row, int columns, int radius, std::vector<T>& original)
{
    original.assign(row, row + columns);
    const T* in = original.data();
    T sum = 0;
    for (int j = 0; j < std::min(radius, columns); ++j) {
        sum = added(sum, in[j]);
    }
    for (int j = 0; j < columns; ++j) {
        if (j < columns - radius) {
            sum = added(sum, in[j + radius]);
        }
        if (j > radius) {
            sum = subtracted(sum, in[j - radius - 1]);
        }
        row[j] = sum;
    }
}

template <class T>
void addRow(T* sums, const T* row, std::size_t count)
{
    for (std::size_t j = 0; j < count; ++j) {
        sums[j] = added(sums[j], row[j]);
    }
}

template <class T>
void subtractRow(T* sums, const T* row, std::size_t count)
{
    for (std::size_t j = 0; j < count; ++j) {
        sums[j] = subtracted(sums[j], row[j]);
    }
}

/// The same sums across a pile of rows, each of `columns` entries.
template <class T>
void sumAcross(const std::vector<T*>& rows, std::size_t columns, int radius)
{
    const int count = static_cast<int>(rows.size());
    std::vector<T> original(rows.size() * columns);
    const auto originalRow = [&](int i) {
        return original.data() + static_cast<std::size_t>(i) * columns;
    };
    std::vector<T> sums(columns, T(0));
    for (int i = 0; i < count; ++i) {
        std::copy_n(rows[static_cast<std::size_t>(i)], columns, originalRow(i));
    }
    for (int i = 0; i < std::min(radius, count); ++i) {
        addRow(sums.data(), originalRow(i), columns);
    }
    for (int i = 0; i < count; ++i) {
        if (i < count - radius) {
            addRow(sums.data(), originalRow(i + radius), columns);
        }
        if (i > radius) {
            subtractRow(sums.data(), originalRow(i - radius - 1), columns);
        }
        std::copy_n(sums.data(), columns, rows[static_cast<std::size_t>(i)]);
    }
}

/// Adds row `in`, moved by `shift` columns, to the sums, as far as it reaches.
template <class T>
void addShifted(T* sums, const T* in, int columns, int shift)
{
    const int first = std::max(0, -shift);
    const int end = std::min(columns, columns - shift);
    if (first < end) {
        addRow(sums + first, in + first + shift, static_cast<std::size_t>(end - first));
    }
}

} // namespace

template <class T>
SumFilter0<T>::SumFilter0()
{
    setAcceptBallMode(true);
}

template <class T>
SumFilter0<T>::~SumFilter0() = default;

template <class T>
void SumFilter0<T>::apply(PixelMatrix<T>& matrix)
{
    if (getBallMode()) {
        applyCircularCase(matrix);
    } else {
        applySquareCase(matrix);
    }
}

template <class T>
void SumFilter0<T>::apply(VoxelMatrix<T>& matrix)
{
    if (getBallMode()) {
        applySphericalCase(matrix);
    } else {
        applyCubicCase(matrix);
    }
}

template <class T>
void SumFilter0<T>::applySquareCase(PixelMatrix<T>& matrix) const
{
    if (getRadius() < 1) {
        return;
    }
    std::vector<T> original;
    std::vector<T*> rows;
    for (int i = 0; i < matrix.getSize1(); ++i) {
        sumRow(matrix[i].data(), matrix.getSize2(), getRadius(), original);
        rows.push_back(matrix[i].data());
    }
    sumAcross(rows, static_cast<std::size_t>(matrix.getSize2()), getRadius());
}

template <class T>
void SumFilter0<T>::applyCubicCase(VoxelMatrix<T>& matrix) const
{
    if (getRadius() < 1) {
        return;
    }
    for (int k = 0; k < matrix.getSize3(); ++k) {
        applySquareCase(matrix[k]);
    }
    for (int i = 0; i < matrix.getSize1(); ++i) {
        std::vector<T*> rows;
        for (int k = 0; k < matrix.getSize3(); ++k) {
            rows.push_back(matrix[k][i].data());
        }
        sumAcross(rows, static_cast<std::size_t>(matrix.getSize2()), getRadius());
    }
}

template <class T>
void SumFilter0<T>::applyCircularCase(PixelMatrix<T>& matrix) const
{
    const int rows = matrix.getSize1();
    const int columns = matrix.getSize2();
    const Neighbourhood offsets = initCircularNeighborhood(getRadius(), rows, columns);
    PixelMatrix<T> result(rows, columns);
    result.setZeros();
    for (int i = 0; i < rows; ++i) {
        for (int n = 0; n < offsets.getSize1(); ++n) {
            const int source = i + offsets(n, 0);
            if (source >= 0 && source < rows) {
                addShifted(result[i].data(), matrix[source].data(), columns, offsets(n, 1));
            }
        }
    }
    matrix.swap(result);
}

template <class T>
void SumFilter0<T>::applySphericalCase(VoxelMatrix<T>& matrix) const
{
    const int rows = matrix.getSize1();
    const int columns = matrix.getSize2();
    const int planes = matrix.getSize3();
    const Neighbourhood offsets = initSphericalNeighborhood(getRadius(), rows, columns, planes);
    VoxelMatrix<T> result(rows, columns, planes);
    result.setVoxelCalibration(matrix.getVoxelCalibration());
    result.setZeros();
    for (int k = 0; k < planes; ++k) {
        for (int i = 0; i < rows; ++i) {
            for (int n = 0; n < offsets.getSize1(); ++n) {
                const int row = i + offsets(n, 0);
                const int plane = k + offsets(n, 2);
                if (row >= 0 && row < rows && plane >= 0 && plane < planes) {
                    addShifted(result[k][i].data(), matrix[plane][row].data(), columns,
                               offsets(n, 1));
                }
            }
        }
    }
    matrix.swap(result);
}

template class SumFilter0<char>;
template class SumFilter0<unsigned char>;
template class SumFilter0<short>;
template class SumFilter0<unsigned short>;
template class SumFilter0<int>;
template class SumFilter0<unsigned int>;
template class SumFilter0<float>;
template class SumFilter0<double>;
template class SumFilter0<long double>;
