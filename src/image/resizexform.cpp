#include "image/resizexform.h"

#include "image/image0.h"
#include "image/matrixresize.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

/// For each column of the new image the byte offset of its source pixel.
std::vector<std::size_t> sourceOffsets(int inWidth, int outWidth, int bytesPerPixel)
{
    std::vector<std::size_t> offsets(static_cast<std::size_t>(outWidth));
    for (int i = 0; i < outWidth; ++i) {
        const float x =
            static_cast<float>(inWidth) * static_cast<float>(i) / static_cast<float>(outWidth);
        const int column = std::min(static_cast<int>(std::floor(x)), inWidth - 1);
        offsets[static_cast<std::size_t>(i)] =
            static_cast<std::size_t>(column) * static_cast<std::size_t>(bytesPerPixel);
    }
    return offsets;
}

int sourceRow(int inHeight, int outHeight, int j)
{
    const double y = static_cast<double>(inHeight) * j / outHeight;
    return std::min(static_cast<int>(std::floor(y)), inHeight - 1);
}

} // namespace

ResizeXForm::ResizeXForm(InterpolationMode mode)
    : interpolationMode_(mode)
{}

ResizeXForm::~ResizeXForm() = default;

void ResizeXForm::setSize(int width, int height)
{
    width_ = width;
    height_ = height;
}

void ResizeXForm::convertSize(int& width, int& height) const
{
    if (!aspectFriendly_ || width <= 0 || height <= 0) {
        width = width_;
        height = height_;
        return;
    }
    const long long a = static_cast<long long>(height_) * width;
    const long long b = static_cast<long long>(width_) * height;
    if (a <= b) {
        width = static_cast<int>(std::lround(static_cast<float>(a) / static_cast<float>(height)));
        height = height_;
    } else {
        height = static_cast<int>(std::lround(static_cast<float>(b) / static_cast<float>(width)));
        width = width_;
    }
}

void ResizeXForm::apply(Image0& out, const Image0& in) const
{
    const char* const where = "void ResizeXForm::apply(Image&, const Image&) const";
    if (width_ < 1 || height_ < 1) {
        raise<UsageError>(where, "The size is not set");
    }
    int width = in.getWidth();
    int height = in.getHeight();
    convertSize(width, height);
    if (width == in.getWidth() && height == in.getHeight()) {
        out = in;
        return;
    }
    if (in.getWidth() < 1 || in.getHeight() < 1) {
        raise<SizeError>(where, "The image is empty");
    }
    if (interpolationMode_ != InterpolationMode::Nearest) {
        raise<UsageError>(where, "Images can only be resized to the nearest pixel");
    }
    nearestResize(out, in);
}

void ResizeXForm::apply(Image0& image) const
{
    int width = image.getWidth();
    int height = image.getHeight();
    convertSize(width, height);
    if (width == image.getWidth() && height == image.getHeight()) {
        return;
    }
    Image0 resized;
    apply(resized, image);
    image.swap(resized);
}

void ResizeXForm::nearestResize(Image0& out, const Image0& in) const
{
    int width = in.getWidth();
    int height = in.getHeight();
    convertSize(width, height);
    Image0 resized(width, height, in.getDepth());
    if (in.isIndexed()) {
        resized.setColormap(*in.getColormap());
    }
    const int bytes = in.bytesPerPixel();
    const std::vector<std::size_t> offsets = sourceOffsets(in.getWidth(), width, bytes);
    for (int j = 0; j < height; ++j) {
        const unsigned char* source = in.getPixels()[sourceRow(in.getHeight(), height, j)];
        unsigned char* target = resized.getPixels()[j];
        for (const std::size_t offset : offsets) {
            std::memcpy(target, source + offset, static_cast<std::size_t>(bytes));
            target += bytes;
        }
    }
    out.swap(resized);
}

void ResizeXForm::halve(Image0& out, const Image0& in)
{
    const int depth = in.getDepth();
    if (depth == 24 || depth == 32) {
        halveTrueColorImage(out, in);
    } else if (depth == 8 && in.isIndexed() && !in.getColormap()->isIdentity()) {
        Image0 color(in);
        color.make24bits();
        halveTrueColorImage(out, color);
    } else if (depth == 8) {
        halveGrayscaleImage(out, in);
    }
}

void ResizeXForm::halveGrayscaleImage(Image0& out, const Image0& in)
{
    PixelMatrix<unsigned char> matrix;
    matrix.convertFromImage(in, ImageChannel::Red);
    MatrixResize<float> resize;
    resize.halve(matrix);
    matrix.convertToImage(out, 8);
}

void ResizeXForm::halveTrueColorImage(Image0& out, const Image0& in)
{
    Image0 halved(in.getWidth() / 2, in.getHeight() / 2, in.getDepth());
    MatrixResize<float> resize;
    resize.addMonitor(*this);
    for (int k = 0; k < in.bytesPerPixel(); ++k) {
        const ImageChannel channel = static_cast<ImageChannel>(k);
        PixelMatrix<unsigned char> matrix;
        matrix.convertFromImage(in, channel);
        resize.halve(matrix);
        halved.setChannel(channel, matrix);
    }
    out.swap(halved);
}
