#include "image/regions/thresholding0.h"

#include "image/regions/outlinetrace.h"
#include "numerics/elementtype.h"
#include "shape/curves/curve.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using outlinetrace::Position;

template <class T>
Curve<T> closedCurve(const std::vector<Position>& positions)
{
    const int size = static_cast<int>(positions.size());
    Curve<T> curve(2, size, size, 0, false);
    for (int i = 0; i < size; ++i) {
        const Position& position = positions[static_cast<std::size_t>(i)];
        curve[i][0] = static_cast<T>(position.row);
        curve[i][1] = static_cast<T>(position.column);
    }
    return curve;
}

/// Clears the inner pixels of `row`, given copies of the row `above` and of this one as they were, and the
/// row `below`. `inner` is scratch.
template <class T>
void clearInnerPixels(T* row,
                      const std::vector<T>& above,
                      const std::vector<T>& current,
                      const T* below,
                      std::vector<unsigned char>& inner,
                      T foreground,
                      T background)
{
    const std::size_t columns = current.size();
    for (std::size_t j = 0; j < columns; ++j) {
        inner[j] = static_cast<unsigned char>(
            (above[j] == foreground) & (current[j] == foreground) & (below[j] == foreground));
    }
    for (std::size_t j = 1; j + 1 < columns; ++j) {
        const int isInner = inner[j - 1] & inner[j] & inner[j + 1];
        row[j] = isInner != 0 ? background : row[j];
    }
}

} // namespace

template <class T>
Thresholding0<T>::Thresholding0()
    : threshold(0)
    , foreground(static_cast<T>(255))
    , background(0)
{}

template <class T>
Thresholding0<T>::~Thresholding0() = default;

template <class T>
void Thresholding0<T>::thresholdRow(T* row, int columns) const
{
    const T above = foregroundAbove ? foreground : background;
    const T below = foregroundAbove ? background : foreground;
    const T limit = threshold;
    for (int j = 0; j < columns; ++j) {
        row[j] = row[j] < limit ? below : above;
    }
}

template <class T>
void Thresholding0<T>::apply(PixelMatrix<T>& matrix)
{
    const int rows = matrix.getSize1();
    this->notifyStarted("");
    for (int i = 0; i < rows; ++i) {
        thresholdRow(matrix[i].data(), matrix.getSize2());
        this->notifyProgressed(i + 1, rows);
    }
    this->notifyFinished("");
}

template <class T>
void Thresholding0<T>::apply(VoxelMatrix<T>& matrix)
{
    const int planes = matrix.getSize3();
    this->notifyStarted("");
    for (int k = 0; k < planes; ++k) {
        for (int i = 0; i < matrix.getSize1(); ++i) {
            thresholdRow(matrix[k][i].data(), matrix.getSize2());
        }
        this->notifyProgressed(k + 1, planes);
    }
    this->notifyFinished("");
}

template <class T>
void Thresholding0<T>::levelSetMask(PixelMatrix<T>& matrix, T level) const
{
    for (int i = 0; i < matrix.getSize1(); ++i) {
        T* row = matrix[i].data();
        for (int j = 0; j < matrix.getSize2(); ++j) {
            row[j] = row[j] == level ? foreground : background;
        }
    }
}

template <class T>
void Thresholding0<T>::levelSetMask(VoxelMatrix<T>& matrix, T level) const
{
    for (int k = 0; k < matrix.getSize3(); ++k) {
        levelSetMask(matrix[k], level);
    }
}

template <class T>
void Thresholding0<T>::contours(PixelMatrix<T>& matrix) const
{
    const int rows = matrix.getSize1();
    const int columns = matrix.getSize2();
    if (rows < 3 || columns < 3) {
        return;
    }
    const auto copyRow = [&](int i) {
        return std::vector<T>(matrix[i].data(), matrix[i].data() + columns);
    };
    std::vector<T> above = copyRow(0);
    std::vector<T> current = copyRow(1);
    std::vector<unsigned char> inner(static_cast<std::size_t>(columns));
    for (int i = 1; i + 1 < rows; ++i) {
        T* row = matrix[i].data();
        std::copy_n(row, columns, current.begin());
        clearInnerPixels(row, above, current, matrix[i + 1].data(), inner, foreground, background);
        std::swap(above, current);
    }
}

template <class T>
void Thresholding0<T>::extractCurve([[maybe_unused]] Curve<T>& curve,
                                    [[maybe_unused]] int row,
                                    [[maybe_unused]] int column,
                                    [[maybe_unused]] const PixelMatrix<T>& image,
                                    [[maybe_unused]] int tolerance) const
{
    const char* const where = "void Thresholding<T>::extractCurve(...) const";
    if constexpr (!isOneOf<T, int, float, double, long double>) {
        raiseNotAvailable<T>(where);
    } else {
        if (!image.contains(row, column)) {
            raise<ValueError>(where, "The start lies outside the image");
        }
        const auto isForeground = [&](const Position& p) {
            return image.contains(p.row, p.column) && image(p.row, p.column) == foreground;
        };
        // What the curve held before, an open flag too, goes: the trace is one closed curve.
        curve = closedCurve<T>(outlinetrace::follow({row, column}, tolerance, isForeground));
    }
}

template class Thresholding0<char>;
template class Thresholding0<unsigned char>;
template class Thresholding0<short>;
template class Thresholding0<unsigned short>;
template class Thresholding0<int>;
template class Thresholding0<unsigned int>;
template class Thresholding0<float>;
template class Thresholding0<double>;
template class Thresholding0<long double>;
