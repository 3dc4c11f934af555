#include "image/filters/resizexform.h"

#include "image/filters/matrixresize.h"
#include "image/pixels/image0.h"
#include "image/values/imageerrors.h"

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

const char* const applyWhere = "void ResizeXForm::apply(Image&, const Image&) const";

void requirePixels(const Image0& image)
{
    if (image.getWidth() < 1 || image.getHeight() < 1) {
        raise<SizeError>(applyWhere, "The image is empty");
    }
}

int sourceRow(int inHeight, int outHeight, int j)
{
    const double y = static_cast<double>(inHeight) * j / outHeight;
    return std::min(static_cast<int>(std::floor(y)), inHeight - 1);
}

} // namespace

ResizeXForm::ResizeXForm(InterpolationMode mode)
    : interpolationMode(mode)
{}

ResizeXForm::~ResizeXForm() = default;

void ResizeXForm::setSize(int newWidth, int newHeight)
{
    width = newWidth;
    height = newHeight;
}

void ResizeXForm::convertSize(int& columns, int& rows) const
{
    if (!aspectFriendly || columns <= 0 || rows <= 0) {
        columns = width;
        rows = height;
        return;
    }
    const long long a = static_cast<long long>(height) * columns;
    const long long b = static_cast<long long>(width) * rows;
    if (a <= b) {
        columns = static_cast<int>(std::lround(static_cast<float>(a) / static_cast<float>(rows)));
        rows = height;
    } else {
        rows = static_cast<int>(std::lround(static_cast<float>(b) / static_cast<float>(columns)));
        columns = width;
    }
}

void ResizeXForm::requireTarget() const
{
    if (width < 1 || height < 1) {
        raise<UsageError>(applyWhere, "The size is not set");
    }
}

void ResizeXForm::apply(Image0& out, const Image0& in) const
{
    requireTarget();
    int columns = in.getWidth();
    int rows = in.getHeight();
    convertSize(columns, rows);
    if (columns == in.getWidth() && rows == in.getHeight()) {
        out = in;
        return;
    }
    requirePixels(in);
    if (interpolationMode != InterpolationMode::Nearest) {
        raise<UsageError>(applyWhere, "Images can only be resized to the nearest pixel");
    }
    nearestResize(out, in);
}

void ResizeXForm::apply(Image0& image) const
{
    int columns = image.getWidth();
    int rows = image.getHeight();
    convertSize(columns, rows);
    if (columns == image.getWidth() && rows == image.getHeight()) {
        return;
    }
    Image0 resized;
    apply(resized, image);
    image.swap(resized);
}

void ResizeXForm::nearestResize(Image0& out, const Image0& in) const
{
    requireTarget();
    requirePixels(in);
    int columns = in.getWidth();
    int rows = in.getHeight();
    convertSize(columns, rows);
    Image0 resized(columns, rows, in.getDepth());
    if (in.isIndexed()) {
        resized.setColormap(*in.getColormap());
    }
    const int bytes = in.bytesPerPixel();
    const std::vector<std::size_t> offsets = sourceOffsets(in.getWidth(), columns, bytes);
    for (int j = 0; j < rows; ++j) {
        const unsigned char* source = in.getPixels()[sourceRow(in.getHeight(), rows, j)];
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
    if (in.getDepth() == 16) {
        raise<DepthError>("void ResizeXForm::halveGrayscaleImage(Image&, const Image&)",
                          "The samples have not 8 bits");
    }
    PixelMatrix<unsigned char> matrix;
    matrix.convertFromImage(in, ImageChannel::Red);
    MatrixResize<float> resize;
    resize.halve(matrix);
    matrix.convertToImage(out, 8);
}

void ResizeXForm::halveTrueColorImage(Image0& out, const Image0& in)
{
    if (in.getDepth() < 24) {
        raise<DepthError>("void ResizeXForm::halveTrueColorImage(Image&, const Image&)",
                          "The image has no colours");
    }
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
