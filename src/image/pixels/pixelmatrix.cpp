#include "image/pixels/pixelmatrix.h"

#include "image/pixels/image0.h"
#include "image/values/imageerrors.h"
#include "numerics/elementarithmetic.h"
#include "system/randomgenerator.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace {

/// `value` truncated to an integer and wrapped into `U`; 0 if no 64-bit integer can hold it.
template <class U, class T>
U truncated(T value)
{
    if constexpr (std::is_floating_point_v<T>) {
        const T limit = static_cast<T>(9223372036854775808.0);
        if (!(value >= -limit && value < limit)) {
            return 0;
        }
        return static_cast<U>(static_cast<std::int64_t>(value));
    } else {
        return static_cast<U>(value);
    }
}

} // namespace

template <class T>
PixelMatrix<T>::PixelMatrix(int rows, int columns)
{
    setSize(rows, columns);
}

template <class T>
PixelMatrix<T>::PixelMatrix(const Matrix<T>& matrix)
{
    Matrix<T>::operator=(matrix);
}

template <class T>
PixelMatrix<T>::PixelMatrix(const PixelMatrix& other) = default;

template <class T>
PixelMatrix<T>::PixelMatrix(PixelMatrix&& other) noexcept
    : Matrix<T>(std::move(other))
    , calibration_(other.calibration_)
{}

template <class T>
PixelMatrix<T>::PixelMatrix(const Image0& image)
{
    convertFromImage(image);
}

template <class T>
PixelMatrix<T>::~PixelMatrix() = default;

template <class T>
PixelMatrix<T>& PixelMatrix<T>::operator=(const PixelMatrix& other) = default;

template <class T>
PixelMatrix<T>& PixelMatrix<T>::operator=(PixelMatrix&& other) noexcept
{
    this->swap(other);
    calibration_ = other.calibration_;
    return *this;
}

template <class T>
void PixelMatrix<T>::setSize(int rows, int columns, bool)
{
    Matrix<T>::setSize(rows, columns, true);
}

template <class T>
void PixelMatrix<T>::randomise(int min, int max, RandomGenerator& generator)
{
    for (int i = 0; i < this->getSize1(); ++i) {
        T* row = (*this)[i].data();
        for (int j = 0; j < this->getSize2(); ++j) {
            row[j] = static_cast<T>(generator.uniformL(min, max));
        }
    }
}

template <class T>
void PixelMatrix<T>::randomise(int min, int max)
{
    RandomGenerator generator;
    randomise(min, max, generator);
}

template <class T>
void PixelMatrix<T>::randomise(int max)
{
    randomise(0, max);
}

template <class T>
void PixelMatrix<T>::randomise()
{
    randomise(0, 255);
}

template <class T>
void PixelMatrix<T>::fillBorder(T value)
{
    fillBorder(1, value);
}

template <class T>
void PixelMatrix<T>::fillBorder(int width, T value)
{
    const int rows = this->getSize1();
    const int columns = this->getSize2();
    const int side = std::clamp(width, 0, columns);
    for (int i = 0; i < rows; ++i) {
        T* row = (*this)[i].data();
        if (i < width || i >= rows - width) {
            std::fill_n(row, columns, value);
        } else {
            std::fill_n(row, side, value);
            std::fill_n(row + columns - side, side, value);
        }
    }
}

template <class T>
bool PixelMatrix<T>::contains(const Vector<int>& position) const
{
    return contains(position[0], position[1]);
}

template <class T>
Vector<unsigned int> PixelMatrix<T>::histogram(float origin,
                                               float step,
                                               unsigned int bins,
                                               const PixelMatrix& mask) const
{
    const char* const where = "Vectorui PixelMatrix<T>::histogram(...)";
    if (mask.getSize1() != this->getSize1() || mask.getSize2() != this->getSize2()) {
        raise<SizeError>(where, "Incompatible mask size");
    }
    if (bins > static_cast<unsigned int>(std::numeric_limits<int>::max())) {
        raise<ValueError>(where, "Too many bins");
    }
    using Edge = std::conditional_t<std::is_integral_v<T>, double, T>;
    const Edge first = static_cast<Edge>(origin);
    const Edge width = static_cast<Edge>(step);
    const int count = static_cast<int>(bins);
    Vector<unsigned int> counts = Vector<Edge>().histogram(first, width, count);
    for (int i = 0; i < this->getSize1(); ++i) {
        if constexpr (std::is_integral_v<T>) {
            counts += (*this)[i].template toType<double>().histogram(
                first, width, count, mask[i].template toType<double>());
        } else {
            counts += (*this)[i].histogram(first, width, count, mask[i]);
        }
    }
    return counts;
}

/// Replaces `image` by one plane of `Sample` values with this calibration.
template <class T>
template <class Sample, class Convert>
void PixelMatrix<T>::writeSamples(Image0& image, Convert convert) const
{
    Image0 plane(this->getSize2(), this->getSize1(), 8 * static_cast<int>(sizeof(Sample)));
    ImageHeader header(plane.getHeader());
    header.setPlanes(1);
    header.setPixelCalibration(calibration_);
    plane.setHeader(header);
    for (int i = 0; i < this->getSize1(); ++i) {
        const T* row = (*this)[i].data();
        unsigned char* pixel = plane.getPixels()[i];
        for (int j = 0; j < this->getSize2(); ++j, pixel += sizeof(Sample)) {
            const Sample sample = convert(row[j]);
            std::memcpy(pixel, &sample, sizeof(Sample));
        }
    }
    image.swap(plane);
}

template <class T>
void PixelMatrix<T>::convertToImage(Image0& image, int depth) const
{
    if (depth == 8) {
        writeSamples<unsigned char>(image, truncated<unsigned char, T>);
    } else if (depth == 16) {
        writeSamples<std::uint16_t>(image, truncated<std::uint16_t, T>);
    } else {
        raise<DepthError>("void PixelMatrix<T>::convertToImage(Image&, const int) const",
                          "The depth is neither 8 nor 16");
    }
}

template <class T>
void PixelMatrix<T>::convertToImage(Image0& image, unsigned char lo, unsigned char hi) const
{
    using Real = RealOf<T>;
    const Vector<T> range = this->range();
    const Real min = static_cast<Real>(range[0]);
    const Real width = static_cast<Real>(range[1]) - min;
    const Real scale = width > 0 ? static_cast<Real>(hi - lo) / width : 0;
    writeSamples<unsigned char>(image, [min, scale, lo](T value) {
        const int offset = truncated<int>((static_cast<Real>(value) - min) * scale);
        return static_cast<unsigned char>(offset + lo);
    });
}

template <class T>
void PixelMatrix<T>::convertToImage(
    Image0& image, T min, T max, unsigned char lo, unsigned char hi) const
{
    using Real = RealOf<T>;
    const Real first = static_cast<Real>(min);
    const Real width = static_cast<Real>(max) - first;
    const Real height = static_cast<Real>(hi - lo);
    writeSamples<unsigned char>(image, [=](T value) {
        if (value <= min) {
            return lo;
        }
        if (value >= max) {
            return hi;
        }
        const int offset = truncated<int>((static_cast<Real>(value) - first) * height / width);
        return static_cast<unsigned char>(offset + lo);
    });
}

template <class T>
void PixelMatrix<T>::takeGeometry(const Image0& image)
{
    setSize(image.getHeight(), image.getWidth());
    calibration_ = image.getHeader().getPixelCalibration();
}

template <class T>
void PixelMatrix<T>::convertFromImage(const Image0& image)
{
    const int depth = image.getDepth();
    if (depth != 8 && depth != 16 && depth != 0) {
        raise<DepthError>("void PixelMatrix<T>::convertFromImage(const Image&)",
                          "An image of several samples a pixel needs a channel");
    }
    takeGeometry(image);
    for (int i = 0; i < this->getSize1(); ++i) {
        T* row = (*this)[i].data();
        const unsigned char* pixels = image.getPixels()[i];
        for (int j = 0; j < this->getSize2(); ++j) {
            if (depth == 8) {
                row[j] = static_cast<T>(pixels[j]);
            } else {
                std::uint16_t sample;
                std::memcpy(&sample, pixels + 2 * j, sizeof(sample));
                row[j] = static_cast<T>(sample);
            }
        }
    }
}

template <class T>
void PixelMatrix<T>::convertFromImage(const Image0& image, ImageChannel channel)
{
    if (image.isIndexed()) {
        takeIndexed(image, channel);
        return;
    }
    if (image.getDepth() < 24) {
        convertFromImage(image);
        return;
    }
    const int offset = static_cast<int>(channel);
    const int step = image.bytesPerPixel();
    if (offset < 0 || offset >= step) {
        raise<DepthError>("void PixelMatrix<T>::convertFromImage(const Image&, ImageChannel)",
                          "The image has no such channel");
    }
    takeGeometry(image);
    for (int i = 0; i < this->getSize1(); ++i) {
        T* row = (*this)[i].data();
        const unsigned char* sample = image.getPixels()[i] + offset;
        for (int j = 0; j < this->getSize2(); ++j, sample += step) {
            row[j] = static_cast<T>(*sample);
        }
    }
}

/// Pixels beyond the end of the colormap are black.
template <class T>
void PixelMatrix<T>::takeIndexed(const Image0& image, ImageChannel channel)
{
    takeGeometry(image);
    if (channel == ImageChannel::Fourth) {
        return;
    }
    const Colormap& map = *image.getColormap();
    const Vector<unsigned char>& table = channel == ImageChannel::Red     ? map.getRed()
                                         : channel == ImageChannel::Green ? map.getGreen()
                                                                          : map.getBlue();
    for (int i = 0; i < this->getSize1(); ++i) {
        T* row = (*this)[i].data();
        const unsigned char* pixels = image.getPixels()[i];
        for (int j = 0; j < this->getSize2(); ++j) {
            row[j] = static_cast<T>(pixels[j] < table.getSize() ? table[pixels[j]] : 0);
        }
    }
}

template class PixelMatrix<bool>;
template class PixelMatrix<char>;
template class PixelMatrix<unsigned char>;
template class PixelMatrix<short>;
template class PixelMatrix<unsigned short>;
template class PixelMatrix<int>;
template class PixelMatrix<unsigned int>;
template class PixelMatrix<float>;
template class PixelMatrix<double>;
template class PixelMatrix<long double>;
