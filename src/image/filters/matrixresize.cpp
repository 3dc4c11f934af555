#include "image/filters/matrixresize.h"

#include "image/filters/sumfilter0.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

template <class T>
void cut(PixelMatrix<T>& matrix, int rows, int columns)
{
    PixelMatrix<T> result(rows, columns);
    for (int i = 0; i < rows; ++i) {
        std::copy_n(matrix[i].data(), columns, result[i].data());
    }
    matrix.swap(result);
}

float enlargementScale(int oldSize, int newSize)
{
    return newSize > 1 ? static_cast<float>(oldSize - 1) / static_cast<float>(newSize - 1) : 0.0F;
}

float reductionScale(int oldSize, int newSize)
{
    return static_cast<float>(oldSize) / static_cast<float>(newSize);
}

int floorIndex(float x, int size)
{
    return std::clamp(static_cast<int>(std::floor(x)), 0, size - 1);
}

/// Entry `j` of a line that is read at `j * scale`, `in` being the old line.
template <class T>
T nearestEntry(const std::vector<T>& in, int j, float scale)
{
    const int i = floorIndex(static_cast<float>(j) * scale, static_cast<int>(in.size()));
    return in[static_cast<std::size_t>(i)];
}

template <class T>
T bilinearEntry(const std::vector<T>& in, int j, float scale)
{
    const int size = static_cast<int>(in.size());
    const float x = static_cast<float>(j) * scale;
    const int i = floorIndex(x, size);
    if (i + 1 >= size) {
        return in.back();
    }
    const double f = static_cast<double>(x) - i;
    const std::size_t k = static_cast<std::size_t>(i);
    return static_cast<T>(f * in[k + 1] + in[k] * (1 - f));
}

} // namespace

template <class T>
MatrixResize<T>::MatrixResize()
{
    size.setZeros(2);
}

template <class T>
MatrixResize<T>::~MatrixResize() = default;

template <class T>
void MatrixResize<T>::setSize(const Vector<int>& newSize)
{
    if (newSize.getSize() != 2 || newSize[0] < 0 || newSize[1] < 0) {
        raise<SizeError>("void MatrixResize<T>::setSize(const Vector<int>&)",
                         "The size is not that of a matrix");
    }
    size = newSize;
}

template <class T>
void MatrixResize<T>::apply(PixelMatrix<T>& matrix)
{
    const Vector<int> oldSize = matrix.getSize();
    const Vector<int> newSize = size;
    if (oldSize == newSize) {
        return;
    }
    if (oldSize[0] >= newSize[0] && newSize[1] <= oldSize[1]) {
        reduction(matrix, oldSize, newSize);
    } else if (oldSize[0] <= newSize[0] && newSize[1] >= oldSize[1]) {
        enlargement(matrix, oldSize, newSize);
    } else {
        mixedResize(matrix, oldSize, newSize);
    }
}

template <class T>
void MatrixResize<T>::enlargement(PixelMatrix<T>& matrix,
                                  const Vector<int>& oldSize,
                                  const Vector<int>& newSize)
{
    if (oldSize[0] == 0 || oldSize[1] == 0) {
        raise<SizeError>("void MatrixResize<T>::enlargement(...)",
                         "A matrix without pixels cannot be enlarged");
    }
    PixelMatrix<T> enlarged(newSize[0], newSize[1]);
    enlarged.paste(0, 0, matrix);
    matrix.swap(enlarged);
    if (interpolationMode == InterpolationMode::Nearest) {
        enlargementUsingNearestInterpolation(matrix, oldSize, newSize);
    } else {
        enlargementUsingBilinearInterpolation(matrix, oldSize, newSize);
    }
}

template <class T>
void MatrixResize<T>::reduction(PixelMatrix<T>& matrix,
                                const Vector<int>& oldSize,
                                const Vector<int>& newSize)
{
    if (newSize[0] == 0 || newSize[1] == 0) {
        matrix.setSize(newSize[0], newSize[1]);
        return;
    }
    T norm = 1;
    if (lowPassFiltering) {
        SumFilter0<T> filter;
        const int half = static_cast<int>(std::floor(std::max(
            reductionScale(oldSize[0], newSize[0]), reductionScale(oldSize[1], newSize[1]))));
        filter.setRadius(half);
        filter.apply(matrix);
        norm = static_cast<T>(2 * half + 1) * static_cast<T>(2 * half + 1);
    }
    if (interpolationMode == InterpolationMode::Nearest) {
        reductionUsingNearestInterpolation(matrix, oldSize, newSize);
    } else {
        reductionUsingBilinearInterpolation(matrix, oldSize, newSize);
    }
    cut(matrix, newSize[0], newSize[1]);
    if (lowPassFiltering) {
        matrix /= norm;
    }
}

template <class T>
void MatrixResize<T>::mixedResize(PixelMatrix<T>& matrix,
                                  const Vector<int>& oldSize,
                                  const Vector<int>& newSize)
{
    const auto step = [&](const Vector<int>& target) {
        MatrixResize resize;
        resize.setInterpolationMode(interpolationMode);
        resize.setLowPassFilteringEnabled(lowPassFiltering);
        resize.setSize(target);
        resize.apply(matrix);
    };
    step(Vector<int>::pmin(oldSize, newSize));
    step(newSize);
}

/// `resample(line, j, oldLength, newLength)` is entry `j` of the new line. The rows that the matrix
/// had are resampled first, then all columns that it is to have.
template <class T>
template <class Resample>
void MatrixResize<T>::resampleAxes(PixelMatrix<T>& matrix,
                                   const Vector<int>& oldSize,
                                   const Vector<int>& newSize,
                                   Resample resample)
{
    const int total = oldSize[0] + newSize[1];
    std::vector<T> line;
    this->notifyStarted("");
    for (int i = 0; i < oldSize[0]; ++i) {
        T* row = matrix[i].data();
        line.assign(row, row + oldSize[1]);
        for (int j = 0; j < newSize[1]; ++j) {
            row[j] = resample(line, j, oldSize[1], newSize[1]);
        }
        this->notifyProgressed(i + 1, total);
    }
    line.resize(static_cast<std::size_t>(oldSize[0]));
    for (int j = 0; j < newSize[1]; ++j) {
        for (int i = 0; i < oldSize[0]; ++i) {
            line[static_cast<std::size_t>(i)] = matrix(i, j);
        }
        for (int i = 0; i < newSize[0]; ++i) {
            matrix(i, j) = resample(line, i, oldSize[0], newSize[0]);
        }
        this->notifyProgressed(oldSize[0] + j + 1, total);
    }
    this->notifyFinished("");
}

template <class T>
void MatrixResize<T>::enlargementUsingNearestInterpolation(PixelMatrix<T>& matrix,
                                                           const Vector<int>& oldSize,
                                                           const Vector<int>& newSize)
{
    resampleAxes(matrix, oldSize, newSize, [](const std::vector<T>& line, int j, int from, int to) {
        return nearestEntry(line, j, enlargementScale(from, to));
    });
}

template <class T>
void MatrixResize<T>::enlargementUsingBilinearInterpolation(PixelMatrix<T>& matrix,
                                                            const Vector<int>& oldSize,
                                                            const Vector<int>& newSize)
{
    resampleAxes(matrix, oldSize, newSize, [](const std::vector<T>& line, int j, int from, int to) {
        return j == to - 1 ? line.back() : bilinearEntry(line, j, enlargementScale(from, to));
    });
}

template <class T>
void MatrixResize<T>::reductionUsingNearestInterpolation(PixelMatrix<T>& matrix,
                                                         const Vector<int>& oldSize,
                                                         const Vector<int>& newSize)
{
    resampleAxes(matrix, oldSize, newSize, [](const std::vector<T>& line, int j, int from, int to) {
        return nearestEntry(line, j, reductionScale(from, to));
    });
}

template <class T>
void MatrixResize<T>::reductionUsingBilinearInterpolation(PixelMatrix<T>& matrix,
                                                          const Vector<int>& oldSize,
                                                          const Vector<int>& newSize)
{
    resampleAxes(matrix, oldSize, newSize, [](const std::vector<T>& line, int j, int from, int to) {
        return from <= to ? line[static_cast<std::size_t>(j)]
                          : bilinearEntry(line, j, reductionScale(from, to));
    });
}

template <class T>
void MatrixResize<T>::halve(PixelMatrix<unsigned char>& matrix)
{
    const int rows = matrix.getSize1() / 2;
    const int columns = matrix.getSize2() / 2;
    this->notifyStarted("");
    for (int i = 0; i < rows && !this->isCanceled(); ++i) {
        const unsigned char* upper = matrix[2 * i].data();
        const unsigned char* lower = matrix[2 * i + 1].data();
        unsigned char* out = matrix[i].data();
        for (int j = 0; j < columns; ++j) {
            const int sum = upper[2 * j] + upper[2 * j + 1] + lower[2 * j] + lower[2 * j + 1];
            out[j] = static_cast<unsigned char>(sum >> 2);
        }
        this->notifyProgressed(i + 1, rows);
    }
    cut(matrix, rows, columns);
    if (this->isCanceled()) {
        this->notifyCanceled("");
    } else {
        this->notifyFinished("");
    }
}

template class MatrixResize<float>;
template class MatrixResize<double>;
template class MatrixResize<long double>;
