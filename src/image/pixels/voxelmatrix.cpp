#include "image/pixels/voxelmatrix.h"

#include "numerics/elementarithmetic.h"

#include <algorithm>
#include <iostream>
#include <type_traits>
#include <utility>

template <class T>
VoxelMatrix<T>::VoxelMatrix() = default;

template <class T>
VoxelMatrix<T>::VoxelMatrix(int rows, int columns, int depth)
{
    setSize(rows, columns, depth);
}

template <class T>
VoxelMatrix<T>::VoxelMatrix(const std::string& path)
{
    try {
        load(path);
    } catch (Exception& exception) {
        exception.addCall("VoxelMatrix<T>::VoxelMatrix(const string&)");
        throw;
    }
}

template <class T>
VoxelMatrix<T>::VoxelMatrix(const VoxelMatrix& other) = default;

template <class T>
VoxelMatrix<T>::VoxelMatrix(VoxelMatrix&& other) noexcept
{
    swap(other);
}

template <class T>
VoxelMatrix<T>::~VoxelMatrix() = default;

template <class T>
VoxelMatrix<T>& VoxelMatrix<T>::operator=(const VoxelMatrix& other) = default;

template <class T>
VoxelMatrix<T>& VoxelMatrix<T>::operator=(VoxelMatrix&& other) noexcept
{
    swap(other);
    return *this;
}

template <class T>
Vector<int> VoxelMatrix<T>::getSize() const
{
    Vector<int> size(3);
    size[0] = size1;
    size[1] = size2;
    size[2] = size3;
    return size;
}

template <class T>
int VoxelMatrix<T>::getSize(int dimension) const
{
    switch (dimension) {
    case 1:
        return size1;
    case 2:
        return size2;
    case 3:
        return size3;
    }
    raise<ValueError>("unsigned int VoxelMatrix<T>::getSize(...) const",
                      "Invalid argument value (neither 1, 2 or 3)");
}

template <class T>
bool VoxelMatrix<T>::sameSizeAs(const VoxelMatrix& other) const
{
    return size1 == other.size1 && size2 == other.size2 && size3 == other.size3;
}

/// False after `loadHeader`, which knows the sizes alone.
template <class T>
bool VoxelMatrix<T>::hasPlanes() const
{
    return planes.size() == static_cast<std::size_t>(size3);
}

template <class T>
void VoxelMatrix<T>::setSize(int rows, int columns, int depth)
{
    if (rows < 0 || columns < 0 || depth < 0) {
        raise<SizeError>("void VoxelMatrix<T>::setSize(...)", "Negative matrix size");
    }
    if (rows == size1 && columns == size2 && depth == size3 && hasPlanes()) {
        return;
    }
    planes.clear();
    size1 = size2 = size3 = 0;
    std::vector<PixelMatrix<T>> built(static_cast<std::size_t>(depth));
    for (PixelMatrix<T>& plane : built) {
        plane.setSize(rows, columns);
    }
    planes.swap(built);
    size1 = rows;
    size2 = columns;
    size3 = depth;
}

template <class T>
void VoxelMatrix<T>::setSize(const Vector<int>& size)
{
    setSize(size[0], size[1], size[2]);
}

template <class T>
int VoxelMatrix<T>::dataTypeId() const
{
    return std::is_same_v<T, int>            ? 2
           : std::is_same_v<T, unsigned int> ? 3
           : std::is_same_v<T, float>        ? 5
           : std::is_same_v<T, double>       ? 6
           : std::is_same_v<T, long double>  ? 7
                                             : 0;
}

template <class T>
bool VoxelMatrix<T>::contains(const Vector<int>& position) const
{
    return contains(position[0], position[1], position[2]);
}

template <class T>
void VoxelMatrix<T>::setZeros()
{
    fill(T(0));
}

template <class T>
void VoxelMatrix<T>::setOnes()
{
    fill(T(1));
}

template <class T>
void VoxelMatrix<T>::fill(const T& value)
{
    for (PixelMatrix<T>& plane : planes) {
        plane.fill(value);
    }
}

template <class T>
void VoxelMatrix<T>::apply(T (*f)(T))
{
    for (PixelMatrix<T>& plane : planes) {
        plane.apply(f);
    }
}

template <class T>
void VoxelMatrix<T>::reverse()
{
    std::reverse(planes.begin(), planes.end());
}

template <class T>
void VoxelMatrix<T>::swap(VoxelMatrix& other)
{
    std::swap(size1, other.size1);
    std::swap(size2, other.size2);
    std::swap(size3, other.size3);
    planes.swap(other.planes);
    std::swap(calibration, other.calibration);
}

template <class T>
void VoxelMatrix<T>::operator+=(T value)
{
    for (PixelMatrix<T>& plane : planes) {
        plane += value;
    }
}

template <class T>
void VoxelMatrix<T>::operator-=(T value)
{
    for (PixelMatrix<T>& plane : planes) {
        plane -= value;
    }
}

template <class T>
void VoxelMatrix<T>::operator*=(T value)
{
    for (PixelMatrix<T>& plane : planes) {
        plane *= value;
    }
}

template <class T>
void VoxelMatrix<T>::operator/=(T value)
{
    for (PixelMatrix<T>& plane : planes) {
        plane /= value;
    }
}

template <class T>
void VoxelMatrix<T>::requireSizeOf(const VoxelMatrix& other,
                                   const char* where,
                                   const char* what) const
{
    if (!sameSizeAs(other)) {
        raise<SizeError>(where, what);
    }
}

template <class T>
void VoxelMatrix<T>::requireElements(const char* where, const char* what) const
{
    if (size1 == 0 || size2 == 0 || planes.empty()) {
        raise<SizeError>(where, what);
    }
}

template <class T>
void VoxelMatrix<T>::operator+=(const VoxelMatrix& other)
{
    requireSizeOf(other, "void VoxelMatrix<T>::operator+=(const VoxelMatrix&)",
                  "This matrix and matrix argument differ in size");
    for (int k = 0; k < size3; ++k) {
        (*this)[k] += other[k];
    }
}

template <class T>
void VoxelMatrix<T>::operator-=(const VoxelMatrix& other)
{
    requireSizeOf(other, "void VoxelMatrix<T>::operator-=(const VoxelMatrix&)",
                  "This matrix and matrix argument differ in size");
    for (int k = 0; k < size3; ++k) {
        (*this)[k] -= other[k];
    }
}

template <class T>
void VoxelMatrix<T>::operator*=(const VoxelMatrix& other)
{
    requireSizeOf(other, "void VoxelMatrix<T>::operator*=(const VoxelMatrix&)",
                  "This matrix and matrix argument differ in size");
    for (int k = 0; k < size3; ++k) {
        for (int i = 0; i < size1; ++i) {
            (*this)[k][i] *= other[k][i];
        }
    }
}

template <class T>
bool VoxelMatrix<T>::operator==(const VoxelMatrix& other) const
{
    return sameSizeAs(other) && planes == other.planes;
}

template <class T>
bool VoxelMatrix<T>::operator!=(const VoxelMatrix& other) const
{
    return !(*this == other);
}

template <class T>
Vector<T> VoxelMatrix<T>::range() const
{
    requireElements("Vector<T> VoxelMatrix<T>::range() const", "This matrix is empty.");
    Vector<T> range = planes.front().range();
    for (const PixelMatrix<T>& plane : planes) {
        const Vector<T> planeRange = plane.range();
        range[0] = std::min(range[0], planeRange[0]);
        range[1] = std::max(range[1], planeRange[1]);
    }
    return range;
}

/// Combines the planes, from the first to the last, element by element.
template <class T>
template <class Combine>
PixelMatrix<T> VoxelMatrix<T>::projection(Combine combine) const
{
    PixelMatrix<T> result(planes.front());
    for (std::size_t k = 1; k < planes.size(); ++k) {
        for (int i = 0; i < size1; ++i) {
            T* out = result[i].data();
            const T* in = planes[k][i].data();
            for (int j = 0; j < size2; ++j) {
                out[j] = combine(out[j], in[j]);
            }
        }
    }
    return result;
}

template <class T>
PixelMatrix<T> VoxelMatrix<T>::sum() const
{
    requireElements("PixelMatrix<T> VoxelMatrix<T>::sum() const", "This matrix is empty");
    return projection([](T a, T b) { return added(a, b); });
}

template <class T>
PixelMatrix<T> VoxelMatrix<T>::min() const
{
    requireElements("PixelMatrix<T> VoxelMatrix<T>::min() const", "This matrix is empty");
    return projection([](T a, T b) { return std::min(a, b); });
}

template <class T>
PixelMatrix<T> VoxelMatrix<T>::max() const
{
    requireElements("PixelMatrix<T> VoxelMatrix<T>::max() const", "This matrix is empty");
    return projection([](T a, T b) { return std::max(a, b); });
}

template <class T>
Vector<T> VoxelMatrix<T>::cat() const
{
    Vector<T> result(size1 * size2 * static_cast<int>(planes.size()));
    T* out = result.data();
    for (const PixelMatrix<T>& plane : planes) {
        for (int i = 0; i < size1; ++i) {
            out = std::copy_n(plane[i].data(), size2, out);
        }
    }
    return result;
}

template <class T>
VoxelMatrix<T> VoxelMatrix<T>::copy(int i1, int i2, int j1, int j2, int k1, int k2) const
{
    VoxelMatrix result(i2 - i1 + 1, j2 - j1 + 1, k2 - k1 + 1);
    result.setVoxelCalibration(calibration);
    for (int k = k1; k <= k2; ++k) {
        for (int i = i1; i <= i2; ++i) {
            std::copy_n((*this)[k][i].data() + j1, result.size2, result[k - k1][i - i1].data());
        }
    }
    return result;
}

template <class T>
void VoxelMatrix<T>::paste(int i, int j, int k, const VoxelMatrix& other)
{
    if (i < 0 || j < 0 || k < 0 || i > size1 - other.size1 || j > size2 - other.size2 ||
        k > size3 - other.size3) {
        raise<SizeError>("void VoxelMatrix<T>::paste(...)",
                         "Cannot paste matrix at specified position");
    }
    for (int plane = 0; plane < other.size3; ++plane) {
        (*this)[k + plane].paste(i, j, other[plane]);
    }
}

template <class T>
Vector<unsigned int> VoxelMatrix<T>::histogram(float origin, float step, unsigned int bins) const
{
    using Edge = std::conditional_t<std::is_integral_v<T>, double, T>;
    const Edge first = static_cast<Edge>(origin);
    const Edge width = static_cast<Edge>(step);
    const int count = static_cast<int>(std::min(bins, 0x7fffffffU));
    Vector<unsigned int> counts = Vector<Edge>().histogram(first, width, count);
    for (const PixelMatrix<T>& plane : planes) {
        for (int i = 0; i < size1; ++i) {
            counts += plane[i].template toType<Edge>().histogram(first, width, count);
        }
    }
    return counts;
}

template <class T>
Vector<unsigned int> VoxelMatrix<T>::histogram(float origin,
                                               float step,
                                               unsigned int bins,
                                               const VoxelMatrix& mask) const
{
    requireSizeOf(mask, "Vectorui VoxelMatrix<T>::histogram(...)", "Incompatible mask size");
    Vector<unsigned int> counts = VoxelMatrix().histogram(origin, step, bins);
    for (int k = 0; k < size3; ++k) {
        counts += (*this)[k].histogram(origin, step, bins, mask[k]);
    }
    return counts;
}

template <class T>
void VoxelMatrix<T>::print(const std::string& title) const
{
    if (!title.empty()) {
        std::cout << title << '\n';
    }
    for (std::size_t k = 0; k < planes.size(); ++k) {
        std::cout << "-- Plane " << k << '\n';
        for (int i = 0; i < size1; ++i) {
            for (int j = 0; j < size2; ++j) {
                std::cout << (j > 0 ? " " : "");
                if constexpr (sizeof(T) == 1) {
                    std::cout << static_cast<int>(planes[k](i, j));
                } else {
                    std::cout << planes[k](i, j);
                }
            }
            std::cout << '\n';
        }
    }
}

template class VoxelMatrix<char>;
template class VoxelMatrix<unsigned char>;
template class VoxelMatrix<short>;
template class VoxelMatrix<unsigned short>;
template class VoxelMatrix<int>;
template class VoxelMatrix<unsigned int>;
template class VoxelMatrix<float>;
template class VoxelMatrix<double>;
template class VoxelMatrix<long double>;
