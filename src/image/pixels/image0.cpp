#include "image/pixels/image0.h"

#include "image/values/imageerrors.h"
#include "image/values/pixelmemory.h"
#include "shape/vertices/boundingbox.h"

#include <algorithm>
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
