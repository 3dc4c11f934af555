#include "image/filters/minfilter0.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace {

/// Columns that are worked on together where the window lies across rows: few enough for the cache.
constexpr std::size_t tileColumns = 64;

/// Not below any element.
template <class T>
constexpr T neutral()
{
    return std::numeric_limits<T>::has_infinity ? std::numeric_limits<T>::infinity()
                                                : std::numeric_limits<T>::max();
}

/// values[i] = min(values[i], values[i + shift]) for ascending i.
template <class T>
void foldMinimum(T* values, std::size_t shift, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const T other = values[i + shift];
        values[i] = other < values[i] ? other : values[i];
    }
}

/// Replaces element `i` of a line by the minimum of the elements `i` to `i + window - 1`. The line
/// has `count + window - 1` elements; the first `count` hold the result. Elements of a line lie
/// `stride` apart, and so many lines lie side by side. Minima over twice as many elements come from
/// two that overlap not at all, the last ones from two that overlap.
template <class T>
void slidingMinimum(T* values, std::size_t count, std::size_t window, std::size_t stride)
{
    std::size_t size = 1;
    while (2 * size <= window) {
        foldMinimum(values, size * stride, (count + window - 2 * size) * stride);
        size *= 2;
    }
    if (size < window) {
        foldMinimum(values, (window - size) * stride, count * stride);
    }
}

/// The radius as it counts on a line of `count` elements.
std::size_t effectiveRadius(int radius, int count)
{
    return static_cast<std::size_t>(std::clamp(radius, 0, std::max(count - 1, 0)));
}

/// `count` elements of a line, the neutral one where the mask is 0.
template <class T>
void copyMasked(const T* values, const T* mask, std::size_t count, T* out)
{
    if (mask == nullptr) {
        std::copy_n(values, count, out);
        return;
    }
    for (std::size_t j = 0; j < count; ++j) {
        out[j] = mask[j] != T(0) ? values[j] : neutral<T>();
    }
}

template <class T>
void storeMasked(const T* values, const T* mask, std::size_t count, T* out)
{
    if (mask == nullptr) {
        std::copy_n(values, count, out);
        return;
    }
    for (std::size_t j = 0; j < count; ++j) {
        out[j] = mask[j] != T(0) ? values[j] : out[j];
    }
}

/// The one-dimensional filter on a row, in place. `buffer` keeps its storage from call to call.
template <class T>
void filterRow(T* row, const T* mask, int columns, int radius, std::vector<T>& buffer)
{
    const std::size_t r = effectiveRadius(radius, columns);
    const std::size_t count = static_cast<std::size_t>(columns);
    buffer.assign(count + 2 * r, neutral<T>());
    copyMasked(row, mask, count, buffer.data() + r);
    slidingMinimum(buffer.data(), count, 2 * r + 1, 1);
    storeMasked(buffer.data(), mask, count, row);
}

/// The one-dimensional filter across a pile of rows: element j of all rows is one line. `masks` is
/// empty or has as many rows.
template <class T>
void filterAcross(const std::vector<T*>& rows,
                  const std::vector<const T*>& masks,
                  int columns,
                  int radius)
{
    const std::size_t r = effectiveRadius(radius, static_cast<int>(rows.size()));
    const std::size_t width = static_cast<std::size_t>(columns);
    std::vector<T> buffer;
    for (std::size_t first = 0; first < width; first += tileColumns) {
        const std::size_t tile = std::min(tileColumns, width - first);
        buffer.assign((rows.size() + 2 * r) * tile, neutral<T>());
        const auto maskOf = [&](std::size_t i) {
            return masks.empty() ? nullptr : masks[i] + first;
        };
        for (std::size_t i = 0; i < rows.size(); ++i) {
            copyMasked(rows[i] + first, maskOf(i), tile, buffer.data() + (i + r) * tile);
        }
        slidingMinimum(buffer.data(), rows.size(), 2 * r + 1, tile);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            storeMasked(buffer.data() + i * tile, maskOf(i), tile, rows[i] + first);
        }
    }
}

template <class T>
void filterPlane(PixelMatrix<T>& matrix, const PixelMatrix<T>* mask, int radius)
{
    std::vector<T> buffer;
    std::vector<T*> rows;
    std::vector<const T*> masks;
    for (int i = 0; i < matrix.getSize1(); ++i) {
        const T* maskRow = mask != nullptr ? (*mask)[i].data() : nullptr;
        filterRow(matrix[i].data(), maskRow, matrix.getSize2(), radius, buffer);
        rows.push_back(matrix[i].data());
        if (mask != nullptr) {
            masks.push_back(maskRow);
        }
    }
    filterAcross(rows, masks, matrix.getSize2(), radius);
}

template <class T>
void filterVolume(VoxelMatrix<T>& matrix, const VoxelMatrix<T>* mask, int radius)
{
    for (int k = 0; k < matrix.getSize3(); ++k) {
        filterPlane(matrix[k], mask != nullptr ? &(*mask)[k] : nullptr, radius);
    }
    for (int i = 0; i < matrix.getSize1(); ++i) {
        std::vector<T*> rows;
        std::vector<const T*> masks;
        for (int k = 0; k < matrix.getSize3(); ++k) {
            rows.push_back(matrix[k][i].data());
            if (mask != nullptr) {
                masks.push_back((*mask)[k][i].data());
            }
        }
        filterAcross(rows, masks, matrix.getSize2(), radius);
    }
}

/// The largest c with c^2 <= square.
int chordOf(long long square)
{
    long long c = static_cast<long long>(std::sqrt(static_cast<double>(square)));
    while (c * c > square) {
        --c;
    }
    while ((c + 1) * (c + 1) <= square) {
        ++c;
    }
    return static_cast<int>(c);
}

/// For a plane at distance `dk`, the row distances `di` at which the ball's chord reaches `c` to
/// either side, for each `c`. Row distances beyond `rows - 1` are left out.
std::vector<std::vector<int>> rowsByChord(int radius, int dk, int rows)
{
    const long long square = 1LL * radius * radius - 1LL * dk * dk;
    const int reach = chordOf(square);
    std::vector<std::vector<int>> result(static_cast<std::size_t>(reach) + 1);
    const int most = std::min(reach, rows - 1);
    for (int di = -most; di <= most; ++di) {
        result[static_cast<std::size_t>(chordOf(square - 1LL * di * di))].push_back(di);
    }
    return result;
}

template <class T>
void takeMinimum(T* row, const T* other, std::size_t count)
{
    for (std::size_t j = 0; j < count; ++j) {
        row[j] = other[j] < row[j] ? other[j] : row[j];
    }
}

/// Lowers plane `out` to the minima over that part of the ball which lies in the plane `in`. The
/// minima over growing chords of a row come from one another, and serve all rows that see it by a
/// chord of that length.
template <class T>
void lowerByPlane(PixelMatrix<T>& out,
                  const PixelMatrix<T>& in,
                  const std::vector<std::vector<int>>& distances,
                  std::vector<T>& minima)
{
    const int rows = in.getSize1();
    const std::size_t columns = static_cast<std::size_t>(in.getSize2());
    for (int i = 0; i < rows; ++i) {
        const T* row = in[i].data();
        minima.assign(row, row + columns);
        for (std::size_t c = 0; c < distances.size(); ++c) {
            if (c > 0 && c < columns) {
                takeMinimum(minima.data(), row + c, columns - c);
                takeMinimum(minima.data() + c, row, columns - c);
            }
            for (int di : distances[c]) {
                if (i + di >= 0 && i + di < rows) {
                    takeMinimum(out[i + di].data(), minima.data(), columns);
                }
            }
        }
    }
}

} // namespace

template <class T>
MinFilter0<T>::MinFilter0()
{
    setAcceptBallMode(true);
}

template <class T>
MinFilter0<T>::~MinFilter0() = default;

template <class T>
void MinFilter0<T>::apply(PixelMatrix<T>& matrix)
{
    if (getRadius() < 1) {
        return;
    }
    if (MaskPixelMatrixProcessing<T>::hasMask()) {
        maskedApply(matrix, MaskPixelMatrixProcessing<T>::getMask());
    } else {
        applySquareCase(matrix);
    }
}

template <class T>
void MinFilter0<T>::apply(VoxelMatrix<T>& matrix)
{
    if (getRadius() < 1) {
        return;
    }
    if (MaskVoxelMatrixProcessing<T>::hasMask()) {
        maskedApply(matrix, MaskVoxelMatrixProcessing<T>::getMask());
    } else if (getBallMode()) {
        applySphericalCase(matrix);
    } else {
        applyCubicCase(matrix);
    }
}

template <class T>
void MinFilter0<T>::apply(PixelMatrix<T>& out, const PixelMatrix<T>& in) const
{
    out = in;
    applySquareCase(out);
}

template <class T>
void MinFilter0<T>::apply(VoxelMatrix<T>& out, const VoxelMatrix<T>& in) const
{
    out = in;
    if (getBallMode()) {
        applySphericalCase(out);
    } else {
        applyCubicCase(out);
    }
}

template <class T>
void MinFilter0<T>::apply(const Vector<T>& in, Vector<T>& out) const
{
    std::vector<T> buffer;
    out = in;
    filterRow<T>(out.data(), nullptr, out.getSize(), getRadius(), buffer);
}

template <class T>
void MinFilter0<T>::apply(const Vector<T>& in, Vector<T>& out, const Vector<T>& mask) const
{
    if (mask.getSize() != in.getSize()) {
        raise<SizeError>("void MinFilter<T>::apply(...) const", "Incompatible mask size");
    }
    std::vector<T> buffer;
    out = in;
    filterRow<T>(out.data(), mask.data(), out.getSize(), getRadius(), buffer);
}

template <class T>
void MinFilter0<T>::applySquareCase(PixelMatrix<T>& matrix) const
{
    if (getRadius() >= 1) {
        filterPlane<T>(matrix, nullptr, getRadius());
    }
}

template <class T>
void MinFilter0<T>::applyCubicCase(VoxelMatrix<T>& matrix) const
{
    if (getRadius() >= 1) {
        filterVolume<T>(matrix, nullptr, getRadius());
    }
}

template <class T>
void MinFilter0<T>::applySphericalCase(VoxelMatrix<T>& matrix) const
{
    const int planes = matrix.getSize3();
    const int ballRadius = getRadius();
    if (ballRadius < 1) {
        return;
    }
    const int reach = std::min(ballRadius, planes - 1);
    std::vector<std::vector<std::vector<int>>> distances;
    for (int dk = 0; dk <= reach; ++dk) {
        distances.push_back(rowsByChord(ballRadius, dk, matrix.getSize1()));
    }
    VoxelMatrix<T> result(matrix);
#pragma omp parallel for schedule(static)
    for (int k = 0; k < planes; ++k) {
        std::vector<T> minima;
        for (int source = std::max(k - reach, 0); source <= std::min(k + reach, planes - 1);
             ++source) {
            const std::size_t dk = static_cast<std::size_t>(source < k ? k - source : source - k);
            lowerByPlane(result[k], matrix[source], distances[dk], minima);
        }
    }
    matrix.swap(result);
}

template <class T>
void MinFilter0<T>::maskedApply(PixelMatrix<T>& matrix, const PixelMatrix<T>& mask) const
{
    if (mask.getSize() != matrix.getSize()) {
        raise<SizeError>("void MinFilter<T>::apply(PixelMatrix<T>&)", "Incompatible mask size");
    }
    filterPlane(matrix, &mask, getRadius());
}

template <class T>
void MinFilter0<T>::maskedApply(VoxelMatrix<T>& matrix, const VoxelMatrix<T>& mask) const
{
    if (!mask.sameSizeAs(matrix)) {
        raise<SizeError>("void MinFilter<T>::apply(VoxelMatrix<T>&)", "Incompatible mask size");
    }
    filterVolume(matrix, &mask, getRadius());
}

template class MinFilter0<char>;
template class MinFilter0<unsigned char>;
template class MinFilter0<short>;
template class MinFilter0<unsigned short>;
template class MinFilter0<int>;
template class MinFilter0<unsigned int>;
template class MinFilter0<float>;
template class MinFilter0<double>;
template class MinFilter0<long double>;
