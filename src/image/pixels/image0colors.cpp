// Part of `Image0`: colours: colormap, content, conversions between depths, single samples.

#include "image/pixels/image0.h"
#include "image/pixels/pixelmatrix.h"
#include "image/values/imageerrors.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

std::uint16_t sample16(const unsigned char* pixel)
{
    std::uint16_t value;
    std::memcpy(&value, pixel, sizeof(value));
    return value;
}

} // namespace

bool Image0::isIndexed() const
{
    return getDepth() == 8 && header_.hasColormap();
}

void Image0::setColormap(const Colormap& colormap)
{
    header_.setColormap(colormap);
}

void Image0::setGrayscale(int cells)
{
    if (getDepth() != 8) {
        return;
    }
    if (cells < 1) {
        header_.deleteColormap();
        return;
    }
    Colormap colormap(cells);
    colormap.makeGrayscale();
    header_.setColormap(colormap);
}

ImageColorContent Image0::colorContent(unsigned char red, unsigned char green, unsigned char blue)
{
    if (red == green && green == blue) {
        return ImageColorContent::Gray;
    }
    if (red != 0) {
        return green == 0 && blue == 0 ? ImageColorContent::Red : ImageColorContent::Mixed;
    }
    if (green != 0) {
        return blue == 0 ? ImageColorContent::Green : ImageColorContent::Mixed;
    }
    return ImageColorContent::Blue;
}

ImageColorContent Image0::colorContent() const
{
    if (isIndexed() || getDepth() < 24) {
        return isGrayscale()   ? ImageColorContent::Gray
               : isRedOnly()   ? ImageColorContent::Red
               : isGreenOnly() ? ImageColorContent::Green
               : isBlueOnly()  ? ImageColorContent::Blue
                               : ImageColorContent::Mixed;
    }
    if (dataLength() == 0) {
        return ImageColorContent::Gray;
    }
    const ImageColorContent first = colorContent(data_[0], data_[1], data_[2]);
    const bool same = allPixels(
        [first](const unsigned char* p) { return colorContent(p[0], p[1], p[2]) == first; });
    return same ? first : ImageColorContent::Mixed;
}

/// Whether the test holds for every pixel; stops at the first that fails.
template <class Test>
bool Image0::allPixels(Test test) const
{
    const int step = bytesPerPixel();
    const unsigned char* const end = data_ + dataLength();
    for (const unsigned char* pixel = data_; pixel != end; pixel += step) {
        if (!test(pixel)) {
            return false;
        }
    }
    return true;
}

bool Image0::isGrayscale() const
{
    if (isIndexed()) {
        return getColormap()->isGrayscale();
    }
    return getDepth() < 24 ||
           allPixels([](const unsigned char* p) { return p[0] == p[1] && p[1] == p[2]; });
}

bool Image0::isRedOnly() const
{
    if (isIndexed()) {
        return getColormap()->isRedOnly();
    }
    return getDepth() >= 24 &&
           allPixels([](const unsigned char* p) { return p[1] == 0 && p[2] == 0; });
}

bool Image0::isGreenOnly() const
{
    if (isIndexed()) {
        return getColormap()->isGreenOnly();
    }
    return getDepth() >= 24 &&
           allPixels([](const unsigned char* p) { return p[0] == 0 && p[2] == 0; });
}

bool Image0::isBlueOnly() const
{
    if (isIndexed()) {
        return getColormap()->isBlueOnly();
    }
    return getDepth() >= 24 &&
           allPixels([](const unsigned char* p) { return p[0] == 0 && p[1] == 0; });
}

/// Takes the pixels of an image of the same width and height, and keeps the rest of the header; the
/// argument is spent.
void Image0::replacePixels(Image0& other)
{
    ImageHeader header(header_);
    header.setDepth(other.getDepth());
    header.deleteColormap();
    other.header_.swap(header);
    swap(other);
}

void Image0::make8bitsGrayscale()
{
    if (isIndexed()) {
        header_.getColormap()->convertToGrayscale();
        return;
    }
    if (getDepth() == 8 || getDepth() == 0) {
        return;
    }
    Image0 gray(getWidth(), getHeight(), 8);
    unsigned char* out = gray.data_;
    const std::size_t step = static_cast<std::size_t>(bytesPerPixel());
    const unsigned char* const end = data_ + dataLength();
    if (getDepth() == 16) {
        int largest = 0;
        for (const unsigned char* pixel = data_; pixel != end; pixel += step) {
            largest = std::max<int>(largest, sample16(pixel));
        }
        const double scale = largest < 256 ? 1.0 : 255.0 / largest;
        for (const unsigned char* pixel = data_; pixel != end; pixel += step) {
            *out++ = static_cast<unsigned char>(std::lround(sample16(pixel) * scale));
        }
    } else {
        for (const unsigned char* pixel = data_; pixel != end; pixel += step) {
            *out++ = static_cast<unsigned char>((pixel[0] + pixel[1] + pixel[2]) / 3);
        }
    }
    replacePixels(gray);
}

void Image0::make24bits()
{
    if (getDepth() == 24) {
        return;
    }
    if (getDepth() != 8) {
        raise<DepthError>("void Image::make24bits()", "Cannot convert non-8 bits images");
    }
    Image0 color(getWidth(), getHeight(), 24);
    for (int c = 0; c < 3; ++c) {
        const Image0 plane = channel(static_cast<ImageChannel>(c));
        const std::size_t pixels = plane.dataLength();
        for (std::size_t i = 0; i < pixels; ++i) {
            color.data_[3 * i + static_cast<std::size_t>(c)] = plane.data_[i];
        }
    }
    replacePixels(color);
}

void Image0::make32bits()
{
    if (getDepth() != 24) {
        return;
    }
    Image0 color(getWidth(), getHeight(), 32);
    unsigned char* out = color.data_;
    const unsigned char* const end = data_ + dataLength();
    for (const unsigned char* pixel = data_; pixel != end; pixel += 3) {
        *out++ = pixel[0];
        *out++ = pixel[1];
        *out++ = pixel[2];
        *out++ = 0;
    }
    replacePixels(color);
}

Image0 Image0::channel(ImageChannel channel) const
{
    Image0 result(getWidth(), getHeight(), 8);
    result.header_.setPixelCalibration(header_.getPixelCalibration());
    const std::size_t pixels = result.dataLength();
    const int offset = static_cast<int>(channel);
    if (getDepth() != 8) {
        const std::size_t step = static_cast<std::size_t>(bytesPerPixel());
        if (offset >= bytesPerPixel()) {
            result.clear();
            return result;
        }
        const unsigned char* in = data_ + offset;
        for (std::size_t i = 0; i < pixels; ++i) {
            result.data_[i] = in[i * step];
        }
    } else if (channel == ImageChannel::Fourth) {
        result.clear();
    } else if (isIndexed()) {
        const Colormap& map = *getColormap();
        const Vector<unsigned char>& table = channel == ImageChannel::Red     ? map.getRed()
                                             : channel == ImageChannel::Green ? map.getGreen()
                                                                              : map.getBlue();
        for (std::size_t i = 0; i < pixels; ++i) {
            result.data_[i] = data_[i] < table.getSize() ? table[data_[i]] : 0;
        }
    } else {
        std::copy_n(data_, pixels, result.data_);
    }
    return result;
}

void Image0::setChannel(ImageChannel channel, const PixelMatrix<unsigned char>& matrix)
{
    if (matrix.getSize1() != getHeight() || matrix.getSize2() != getWidth()) {
        raise<SizeError>("void Image::setChannel(...)",
                         "This image and pixelMatrix have different sizes");
    }
    const int offset = static_cast<int>(channel);
    if (getDepth() < 24 || offset >= bytesPerPixel()) {
        return;
    }
    const int step = bytesPerPixel();
    for (int i = 0; i < getHeight(); ++i) {
        unsigned char* out = rows_[i] + offset;
        const auto& row = matrix[i];
        for (int j = 0; j < getWidth(); ++j, out += step) {
            *out = row[j];
        }
    }
}
