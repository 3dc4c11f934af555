#include "cli/pixelscale.h"

#include "image/sources/imagesource.h"
#include "stack/stackslice.h"

#include <cmath>

namespace {

double scaled(int place, int to, int from)
{
    return static_cast<double>(place) * to / from;
}

} // namespace

PixelScale::PixelScale(const StackSlice& slice)
{
    if (slice.isEmpty() || slice.getImageSource().getSize1() < 1 ||
        slice.getImageSource().getSize2() < 1 || slice.width() < 1 || slice.height() < 1) {
        return;
    }
    columns_ = slice.getImageSource().getSize2();
    rows_ = slice.getImageSource().getSize1();
    width_ = slice.width();
    height_ = slice.height();
}

JunctionPoints PixelScale::toSlice(const JunctionPoints& points) const
{
    JunctionPoints result{};
    for (int i = 0; i < 2; ++i) {
        result.x[i] = static_cast<int>(std::floor(scaled(points.x[i], width_, columns_)));
        result.y[i] = static_cast<int>(std::floor(scaled(points.y[i], height_, rows_)));
    }
    return result;
}

JunctionPoints PixelScale::toFile(const JunctionPoints& points) const
{
    JunctionPoints result{};
    for (int i = 0; i < 2; ++i) {
        result.x[i] = static_cast<int>(std::ceil(scaled(points.x[i], columns_, width_)));
        result.y[i] = static_cast<int>(std::ceil(scaled(points.y[i], rows_, height_)));
    }
    return result;
}
