#include "image/image0.h"

#include "image/imageerrors.h"
#include "image/imagereader.h"
#include "image/imagewriter.h"
#include "image/pixelmatrix.h"
#include "image/pixelmemory.h"
#include "shape/boundingbox.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <utility>

namespace {

bool isValidDepth(int depth)
{
    return depth == 8 || depth == 16 || depth == 24 || depth == 32;
}

bool sameColormap(const Colormap* a, const Colormap* b)
{
    return a == nullptr || b == nullptr ? a == b : *a == *b;
}

std::uint16_t sample16(const unsigned char* pixel)
{
    std::uint16_t value;
    std::memcpy(&value, pixel, sizeof(value));
    return value;
}

void printPixel(const unsigned char* pixel, int depth)
{
    char text[32];
    switch (depth) {
    case 8:
        std::snprintf(text, sizeof(text), "%4d", pixel[0]);
        break;
    case 16:
        std::snprintf(text, sizeof(text), "%4d", sample16(pixel));
        break;
    case 24:
        std::snprintf(text, sizeof(text), "(%3d.%3d.%3d) ", pixel[0], pixel[1], pixel[2]);
        break;
    default:
        std::snprintf(text, sizeof(text), "(%3d.%3d.%3d.%3d) ", pixel[0], pixel[1], pixel[2],
                      pixel[3]);
    }
    std::cout << text;
}

} // namespace

Image0::Image0() = default;

Image0::Image0(int width, int height, int depth)
{
    init(width, height, depth);
}

Image0::Image0(const std::string& name, const std::string& directory)
{
    readFile(name, directory);
}

Image0::Image0(const Image0& other)
{
    *this = other;
}

Image0& Image0::operator=(const Image0& other)
{
    if (this == &other) {
        return *this;
    }
    if (other.data_ == nullptr) {
        destroy();
    } else {
        init(other.getWidth(), other.getHeight(), other.getDepth());
        std::copy_n(other.data_, other.dataLength(), data_);
    }
    header_ = other.header_;
    return *this;
}

Image0::~Image0()
{
    destroy();
}

void Image0::reset()
{
    data_ = nullptr;
    rows_ = nullptr;
    header_.clear();
}

void Image0::destroy()
{
    std::free(data_);
    delete[] rows_;
    reset();
}

void Image0::init(int width, int height, int depth)
{
    if (data_ != nullptr && width == getWidth() && height == getHeight() && depth == getDepth()) {
        return;
    }
    destroy();
    if (!isValidDepth(depth)) {
        raise<DepthError>("void Image::init(...)", "Invalid depth value");
    }
    if (width < 0 || height < 0) {
        raise<SizeError>("void Image::init(...)", "Negative image size");
    }
    header_.setWidth(width);
    header_.setHeight(height);
    header_.setDepth(depth);
    try {
        allocatePixels();
    } catch (...) {
        destroy();
        throw;
    }
}

void Image0::allocatePixels()
{
    std::free(data_);
    delete[] rows_;
    data_ = nullptr;
    rows_ = nullptr;
    const std::size_t line = bytesPerLine();
    const std::size_t rows = static_cast<std::size_t>(getHeight());
    data_ = allocatePixelMemory(rows * line);
    rows_ = new unsigned char*[rows];
    for (std::size_t i = 0; i < rows; ++i) {
        rows_[i] = data_ + i * line;
    }
}

void Image0::setHeader(const ImageHeader& header)
{
    if (&header == &header_) {
        return;
    }
    if (header.getDepth() == 0) {
        destroy();
    } else {
        init(header.getWidth(), header.getHeight(), header.getDepth());
    }
    header_ = header;
}

Vector<int> Image0::getSize() const
{
    Vector<int> size(2);
    size[0] = getHeight();
    size[1] = getWidth();
    return size;
}

BoundingBox<int> Image0::boundingBox() const
{
    Vector<int> first(2);
    first.setZeros();
    Vector<int> last(2);
    last[0] = getWidth() - 1;
    last[1] = getHeight() - 1;
    return BoundingBox<int>(first, last);
}

int Image0::bytesPerPixel() const
{
    return isValidDepth(getDepth()) ? getDepth() / 8 : 0;
}

std::size_t Image0::bytesPerLine() const
{
    return static_cast<std::size_t>(getWidth()) * static_cast<std::size_t>(bytesPerPixel());
}

std::size_t Image0::dataLength() const
{
    return static_cast<std::size_t>(getHeight()) * bytesPerLine();
}

void Image0::clear()
{
    if (data_ != nullptr) {
        std::fill_n(data_, dataLength(), static_cast<unsigned char>(0));
    }
}

void Image0::swap(Image0& other)
{
    header_.swap(other.header_);
    std::swap(data_, other.data_);
    std::swap(rows_, other.rows_);
}

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

void Image0::paste(const Image0& source, int x, int y)
{
    const char* const where = "void Image::paste(...)";
    if (source.getDepth() != getDepth()) {
        raise<DepthError>(where, "Incompatible image depths");
    }
    if (isIndexed() && !sameColormap(getColormap(), source.getColormap())) {
        raise<ColormapError>(where, "Incompatible image colormaps");
    }
    if (x < 0 || y < 0 || x > getWidth() - source.getWidth() ||
        y > getHeight() - source.getHeight()) {
        raise<SizeError>(where, "Incompatible size and position");
    }
    const std::size_t offset =
        static_cast<std::size_t>(x) * static_cast<std::size_t>(bytesPerPixel());
    for (int i = 0; i < source.getHeight(); ++i) {
        std::memmove(rows_[y + i] + offset, source.rows_[i], source.bytesPerLine());
    }
}

void Image0::readFile(const std::string& name, const std::string& directory)
{
    ImageReader().read(*this, directory + name);
}

void Image0::writeFile(const std::string& name, const std::string& directory, bool overwrite) const
{
    ImageWriter().write(*this, directory.empty() ? name : directory + "/" + name, overwrite);
}

void Image0::print(const std::string& title, bool showData) const
{
    if (!title.empty()) {
        std::cout << title << '\n';
    }
    const PixelCalibration& calibration = header_.getPixelCalibration();
    std::cout << "Rows:     " << getHeight() << "\nCols:     " << getWidth()
              << "\nDepth:    " << getDepth() << "\nColormap: ";
    if (header_.hasColormap()) {
        std::cout << getColormap()->getSize() << " cells";
    } else {
        std::cout << " none";
    }
    std::cout << "\nSize:     " << dataLength() << " octets"
              << "\nFormat:   " << imageFormatText(header_.getImageFormat())
              << "\nPixel width:  " << calibration.getPixelWidth()
              << "\nPixel height: " << calibration.getPixelHeight()
              << "\nLength unit:  " << calibration.getLengthUnit().name() << '\n';
    if (!showData) {
        std::cout << "Data: (not shown).\n";
        return;
    }
    if (data_ == nullptr) {
        std::cout << "[No data allocated yet.]\n";
        return;
    }
    for (int i = 0; i < getHeight(); ++i) {
        for (int j = 0; j < getWidth(); ++j) {
            printPixel(rows_[i] + j * bytesPerPixel(), getDepth());
        }
        std::cout << '\n';
    }
}
