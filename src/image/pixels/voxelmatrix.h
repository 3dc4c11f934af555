#pragma once

#include "image/pixels/pixelmatrix.h"
#include "image/values/voxelcalibration.h"

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

struct tiff;
class Image2;

/// A three-dimensional image: a sequence of planes of one size. An element is addressed as
/// (row, column, plane). Elements are not initialised.
///
/// The binary file format has the suffix `.vm`: twelve 32-bit little-endian words (three zeros, the
/// version 1, the type number, the three sizes, the power of ten of the length unit, and the voxel
/// size as three floats), then the elements plane after plane as they lie in memory. An older
/// format, of the three sizes and the elements alone, can be read. Sizes are held against the
/// length of the file before memory is taken.
template <class T>
class VoxelMatrix
{
public:
    /// Empty.
    VoxelMatrix();
    VoxelMatrix(int rows, int columns, int depth);

    /// Calls `load`; an error that passes has this constructor in its call trail.
    explicit VoxelMatrix(const std::string& path);
    VoxelMatrix(const VoxelMatrix& other);
    VoxelMatrix(VoxelMatrix&& other) noexcept;
    ~VoxelMatrix();
    VoxelMatrix& operator=(const VoxelMatrix& other);
    VoxelMatrix& operator=(VoxelMatrix&& other) noexcept;

    /// Rows, columns, planes.
    int getSize1() const { return size1; }

    int getSize2() const { return size2; }

    int getSize3() const { return size3; }

    Vector<int> getSize() const;

    /// One of the sizes, counted from 1; `ValueError` for another number.
    int getSize(int dimension) const;
    bool sameSizeAs(const VoxelMatrix& other) const;

    /// Nothing if the sizes are these already; else the elements are lost and not initialised. A
    /// negative size raises `SizeError`.
    void setSize(int rows, int columns, int depth);
    void setSize(const Vector<int>& size);

    const VoxelCalibration& getVoxelCalibration() const { return calibration; }

    void setVoxelCalibration(const VoxelCalibration& newCalibration)
    {
        calibration = newCalibration;
    }

    /// The type number that files of this element type carry.
    int dataTypeId() const;

    PixelMatrix<T>& operator[](int k) { return planes[static_cast<std::size_t>(k)]; }

    const PixelMatrix<T>& operator[](int k) const { return planes[static_cast<std::size_t>(k)]; }

    T& operator()(int i, int j, int k) { return (*this)[k](i, j); }

    const T& operator()(int i, int j, int k) const { return (*this)[k](i, j); }

    T& operator()(const Vector<int>& p) { return (*this)(p[0], p[1], p[2]); }

    const T& operator()(const Vector<int>& p) const { return (*this)(p[0], p[1], p[2]); }

    bool contains(int i, int j, int k) const
    {
        return i >= 0 && i < size1 && j >= 0 && j < size2 && k >= 0 && k < size3;
    }

    bool contains(const Vector<int>& position) const;

    void setZeros();
    void setOnes();
    void fill(const T& value);
    void apply(T (*f)(T));

    /// Reverses the order of the planes.
    void reverse();
    void swap(VoxelMatrix& other);

    void operator+=(T value);
    void operator-=(T value);
    void operator*=(T value);
    void operator/=(T value);

    /// Element by element, the product too; `SizeError` for different sizes.
    void operator+=(const VoxelMatrix& other);
    void operator-=(const VoxelMatrix& other);
    void operator*=(const VoxelMatrix& other);

    /// Sizes and elements, not the calibration.
    bool operator==(const VoxelMatrix& other) const;
    bool operator!=(const VoxelMatrix& other) const;

    /// Minimum and maximum; `SizeError` if there is no element.
    Vector<T> range() const;

    /// Projections along the planes: rows x columns; `SizeError` if there is no element.
    PixelMatrix<T> sum() const;
    PixelMatrix<T> min() const;
    PixelMatrix<T> max() const;

    /// All elements, plane after plane, row after row.
    Vector<T> cat() const;

    /// Rows `i1` to `i2`, columns `j1` to `j2`, planes `k1` to `k2`, all included.
    VoxelMatrix copy(int i1, int i2, int j1, int j2, int k1, int k2) const;

    /// Writes `other` with its first element at (i, j, k). `SizeError` as this operation, before any
    /// plane is written, if it does not fit.
    void paste(int i, int j, int k, const VoxelMatrix& other);

    /// Sum of the histograms of the planes, with edges as those of `PixelMatrix`.
    Vector<unsigned int> histogram(float origin, float step, unsigned int bins) const;

    /// The same over the voxels whose mask is not 0; `SizeError` for a mask of another size.
    Vector<unsigned int>
    histogram(float origin, float step, unsigned int bins, const VoxelMatrix& mask) const;

    /// Each element converted to `U`; the calibration goes along.
    template <class U>
    VoxelMatrix<U> toType() const;

    /// An image of one channel and one timepoint with the voxel size and unit of this matrix. Its
    /// value type is that of `T`, or double where images have no such type.
    Image2 toImage() const;

    /// Lists the planes on the standard output, below `title` if there is one.
    void print(const std::string& title) const;

    /// Writes a `.vm` file; the suffix is added where it is missing. `FileWriteError` if the file
    /// exists and `overwrite` is false, or if it can't be written; an older file then stays.
    void save(const std::string& path, bool overwrite) const;

    /// Reads a `.vm` file or, by its suffix, a TIFF stack. Raises `FileReadError` if the file can't
    /// be opened or ends early, `FileFormatError` if its header makes no sense, `TypeError` if it
    /// holds another element type. What was read before an error stays.
    void load(const std::string& path);

    /// Takes sizes and calibration alone, with the errors of `load`. There are no planes, and no
    /// element may be touched, before `setSize` or `load` makes them.
    void loadHeader(const std::string& path);

    /// Writes a TIFF file of 8-bit pages that ImageJ opens as a stack with its voxel size. Values
    /// are truncated to bytes, not scaled. Nothing but an empty file comes of no planes.
    /// `FileWriteError` as in `save`.
    void saveAsTiff(const std::string& path, bool compress, bool overwrite) const;

private:
    struct Header;

    bool hasPlanes() const;
    void requirePlanes(const char* where) const;
    void requireSizeOf(const VoxelMatrix& other, const char* where, const char* what) const;
    void requireElements(const char* where, const char* what) const;
    template <class Combine>
    PixelMatrix<T> projection(Combine combine) const;

    void read(const std::string& path, bool withElements, const char* where);
    void readTiff(const std::string& path, bool withElements);
    Header readHeader(std::ifstream& stream, const std::string& path, const char* where) const;
    void readRows(std::ifstream& stream, const std::string& path, const char* where);
    void takeSizes(int rows, int columns, int depth, bool withElements);
    void saveUnderFormat1(std::ofstream& stream) const;
    std::string tiffDescription() const;
    void writeTiffPage(tiff* tif, int k, const std::string& description, bool compress) const;

    int size1 = 0;
    int size2 = 0;
    int size3 = 0;
    std::vector<PixelMatrix<T>> planes;
    VoxelCalibration calibration;
};

template <class T>
template <class U>
VoxelMatrix<U> VoxelMatrix<T>::toType() const
{
    VoxelMatrix<U> result(size1, size2, size3);
    result.setVoxelCalibration(calibration);
    for (std::size_t k = 0; k < planes.size(); ++k) {
        for (int i = 0; i < size1; ++i) {
            const T* source = planes[k][i].data();
            U* target = result[static_cast<int>(k)][i].data();
            for (int j = 0; j < size2; ++j) {
                target[j] = static_cast<U>(source[j]);
            }
        }
    }
    return result;
}

extern template class VoxelMatrix<char>;
extern template class VoxelMatrix<unsigned char>;
extern template class VoxelMatrix<short>;
extern template class VoxelMatrix<unsigned short>;
extern template class VoxelMatrix<int>;
extern template class VoxelMatrix<unsigned int>;
extern template class VoxelMatrix<float>;
extern template class VoxelMatrix<double>;
extern template class VoxelMatrix<long double>;
