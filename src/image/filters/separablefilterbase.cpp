#include "image/filters/separablefilterbase.h"

#include "numerics/elementarithmetic.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <vector>

namespace {

template <class T>
void requireOddSize(const Vector<T>& kernel, const char* where)
{
    if (kernel.getSize() % 2 == 0 && kernel.getSize() != 0) {
        raise<ValueError>(where, "The kernel has an even size");
    }
}

/// The kernel reversed: a convolution is a correlation with that.
template <class T>
std::vector<T> reversed(const Vector<T>& kernel)
{
    std::vector<T> weights = kernel.toStlVector();
    std::reverse(weights.begin(), weights.end());
    return weights;
}

/// sums[j] += samples[j] * weight, in the element type.
template <class T>
void accumulate(T* sums, const T* samples, T weight, std::size_t count)
{
    for (std::size_t j = 0; j < count; ++j) {
        sums[j] = added(sums[j], multiplied(samples[j], weight));
    }
}

/// Convolves a row of `count` elements in place. `padded` has `weights.size() - 1` more elements and
/// is 0 outside its middle: these terms leave every sum as it is, since no sum is ever -0.
template <class T>
void convolveRow(T* row, std::vector<T>& padded, const std::vector<T>& weights, std::size_t count)
{
    std::copy_n(row, count, padded.data() + weights.size() / 2);
    std::fill_n(row, count, T(0));
    for (std::size_t m = 0; m < weights.size(); ++m) {
        accumulate(row, padded.data() + m, weights[m], count);
    }
}

template <class T>
void convolveRows(PixelMatrix<T>& matrix, const Vector<T>& kernel)
{
    if (kernel.getSize() == 0) {
        return;
    }
    const std::vector<T> weights = reversed(kernel);
    const std::size_t columns = static_cast<std::size_t>(matrix.getSize2());
    std::vector<T> padded(columns + weights.size() - 1, T(0));
    for (int i = 0; i < matrix.getSize1(); ++i) {
        convolveRow(matrix[i].data(), padded, weights, columns);
    }
}

/// Convolves across a pile of rows of `columns` elements each, in place: element j of all rows is
/// one line. Only the half kernel of rows above is kept as it was; the rows below are still so.
template <class T>
void convolveAcross(const std::vector<T*>& rows, std::size_t columns, const Vector<T>& kernel)
{
    if (kernel.getSize() == 0) {
        return;
    }
    const std::vector<T> weights = reversed(kernel);
    const std::size_t half = weights.size() / 2;
    const std::size_t kept = std::min(half, rows.size()) + 1;
    std::vector<T> original(kept * columns);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::copy_n(rows[i], columns, original.data() + (i % kept) * columns);
        std::fill_n(rows[i], columns, T(0));
        const std::size_t first = i < half ? 0 : i - half;
        const std::size_t last = std::min(i + half, rows.size() - 1);
        for (std::size_t source = first; source <= last; ++source) {
            const T* samples =
                source <= i ? original.data() + (source % kept) * columns : rows[source];
            accumulate(rows[i], samples, weights[source + half - i], columns);
        }
    }
}

template <class T>
std::vector<T*> rowsOf(PixelMatrix<T>& matrix)
{
    std::vector<T*> rows;
    for (int i = 0; i < matrix.getSize1(); ++i) {
        rows.push_back(matrix[i].data());
    }
    return rows;
}

/// Row `i` of every plane.
template <class T>
std::vector<T*> rowsAcrossPlanes(VoxelMatrix<T>& matrix, int i)
{
    std::vector<T*> rows;
    for (int k = 0; k < matrix.getSize3(); ++k) {
        rows.push_back(matrix[k][i].data());
    }
    return rows;
}

template <class T>
void convolvePlane(PixelMatrix<T>& matrix, const Vector<T>& kernel1, const Vector<T>& kernel2)
{
    convolveRows(matrix, kernel2);
    convolveAcross(rowsOf(matrix), static_cast<std::size_t>(matrix.getSize2()), kernel1);
}

template <class T>
void convolveMaskedPlane(PixelMatrix<T>& matrix,
                         const PixelMatrix<T>& mask,
                         const Vector<T>& kernel1,
                         const Vector<T>& kernel2)
{
    if (kernel2.getSize() != 0) {
        for (int i = 0; i < matrix.getSize1(); ++i) {
            matrix[i] = matrix[i].conv(kernel2, mask[i]);
        }
    }
    if (kernel1.getSize() != 0) {
        for (int j = 0; j < matrix.getSize2(); ++j) {
            matrix.setColumn(j, matrix.getColumn(j).conv(kernel1, mask.getColumn(j)));
        }
    }
}

template <class T>
Vector<T> lineAcrossPlanes(const VoxelMatrix<T>& matrix, int i, int j)
{
    Vector<T> line(matrix.getSize3());
    for (int k = 0; k < matrix.getSize3(); ++k) {
        line[k] = matrix(i, j, k);
    }
    return line;
}

} // namespace

template <class T>
SeparableFilterBase<T>::SeparableFilterBase()
    : scale(1)
{}

template <class T>
SeparableFilterBase<T>::~SeparableFilterBase() = default;

template <class T>
void SeparableFilterBase<T>::setKernel1(const Vector<T>& kernel)
{
    requireOddSize(kernel, "void SeparableFilterBase<T>::setKernel1(const Vector<T>&)");
    kernel1 = kernel;
}

template <class T>
void SeparableFilterBase<T>::setKernel2(const Vector<T>& kernel)
{
    requireOddSize(kernel, "void SeparableFilterBase<T>::setKernel2(const Vector<T>&)");
    kernel2 = kernel;
}

template <class T>
void SeparableFilterBase<T>::setKernel3(const Vector<T>& kernel)
{
    requireOddSize(kernel, "void SeparableFilterBase<T>::setKernel3(const Vector<T>&)");
    kernel3 = kernel;
}

template <class T>
void SeparableFilterBase<T>::setDivideBy(const T& value)
{
    scale = value;
    divide = true;
}

template <class T>
void SeparableFilterBase<T>::setMultiplyBy(const T& value)
{
    scale = value;
    divide = false;
}

template <class T>
Matrix<T> SeparableFilterBase<T>::kernel2D() const
{
    return kernel1.outerProduct(kernel2);
}

template <class T>
void SeparableFilterBase<T>::applyScale(PixelMatrix<T>& matrix) const
{
    if (scale == T(1)) {
        return;
    }
    if (divide) {
        if (!std::is_floating_point_v<T> && scale == T(0)) {
            raise<MathError>("void SeparableFilterBase<T>::apply(...)", "Division by zero");
        }
        matrix /= scale;
    } else {
        matrix *= scale;
    }
}

template <class T>
void SeparableFilterBase<T>::apply(PixelMatrix<T>& matrix)
{
    if (MaskPixelMatrixProcessing<T>::hasMask()) {
        maskedApply(matrix);
        return;
    }
    convolvePlane(matrix, kernel1, kernel2);
    applyScale(matrix);
}

template <class T>
void SeparableFilterBase<T>::apply(VoxelMatrix<T>& matrix)
{
    if (MaskVoxelMatrixProcessing<T>::hasMask()) {
        maskedApply(matrix);
        return;
    }
    for (int k = 0; k < matrix.getSize3(); ++k) {
        convolvePlane(matrix[k], kernel1, kernel2);
    }
    for (int i = 0; i < matrix.getSize1(); ++i) {
        convolveAcross(rowsAcrossPlanes(matrix, i), static_cast<std::size_t>(matrix.getSize2()),
                       kernel3);
    }
    for (int k = 0; k < matrix.getSize3(); ++k) {
        applyScale(matrix[k]);
    }
}

template <class T>
void SeparableFilterBase<T>::maskedApply(PixelMatrix<T>& matrix)
{
    const char* const where = "void SeparableFilterBase<T>::maskedApply(PixelMatrix<T>&)";
    if (!MaskPixelMatrixProcessing<T>::hasMask()) {
        raise<UsageError>(where, "There is no mask");
    }
    const PixelMatrix<T>& mask = MaskPixelMatrixProcessing<T>::getMask();
    if (mask.getSize() != matrix.getSize()) {
        raise<SizeError>(where, "Incompatible mask size");
    }
    convolveMaskedPlane(matrix, mask, kernel1, kernel2);
}

template <class T>
void SeparableFilterBase<T>::maskedApply(VoxelMatrix<T>& matrix)
{
    const char* const where = "void SeparableFilterBase<T>::maskedApply(VoxelMatrix<T>&)";
    if (!MaskVoxelMatrixProcessing<T>::hasMask()) {
        raise<UsageError>(where, "There is no mask");
    }
    const VoxelMatrix<T>& mask = MaskVoxelMatrixProcessing<T>::getMask();
    if (!mask.sameSizeAs(matrix)) {
        raise<SizeError>(where, "Incompatible mask size");
    }
    for (int k = 0; k < matrix.getSize3(); ++k) {
        convolveMaskedPlane(matrix[k], mask[k], kernel1, kernel2);
    }
    if (kernel3.getSize() == 0) {
        return;
    }
    for (int i = 0; i < matrix.getSize1(); ++i) {
        for (int j = 0; j < matrix.getSize2(); ++j) {
            const Vector<T> line =
                lineAcrossPlanes(matrix, i, j).conv(kernel3, lineAcrossPlanes(mask, i, j));
            for (int k = 0; k < matrix.getSize3(); ++k) {
                matrix(i, j, k) = line[k];
            }
        }
    }
}

template class SeparableFilterBase<char>;
template class SeparableFilterBase<unsigned char>;
template class SeparableFilterBase<short>;
template class SeparableFilterBase<unsigned short>;
template class SeparableFilterBase<int>;
template class SeparableFilterBase<unsigned int>;
template class SeparableFilterBase<float>;
template class SeparableFilterBase<double>;
template class SeparableFilterBase<long double>;
