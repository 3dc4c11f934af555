#include "host/view/slicepicture.h"

#include "image/pixels/image0.h"
#include "interface/qimageconversion.h"
#include "stack/slice.h"
#include "system/exception.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <new>

namespace {

QImage read(const Slice& slice)
{
    Image0 image;
    slice.load(image);
    // The painter is fastest with 32 bits a pixel.
    return toQImage(image).convertToFormat(QImage::Format_RGB32);
}

} // namespace

SlicePicture::SlicePicture(const Slice& slice)
{
    try {
        levels_.push_back(read(slice));
        if (levels_.front().isNull()) {
            raise<SizeError>("SlicePicture::SlicePicture(const Slice&)",
                             "The image has no pixels, or too many to be shown");
        }
        constexpr int smallest = 512;
        while (std::max(levels_.back().width(), levels_.back().height()) > smallest) {
            const QImage& last = levels_.back();
            levels_.push_back(last.scaled((last.width() + 1) / 2, (last.height() + 1) / 2,
                                          Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        }
        return;
    } catch (const FileError& error) {
        fault_ = QString::fromStdString(error.getFilename() + ": " + error.getWhat());
    } catch (const Exception& error) {
        fault_ = QString::fromStdString(error.getWhat());
    } catch (const std::bad_alloc&) {
        fault_ = "There is not enough memory for the image";
    }
    levels_.clear();
}

/// The smallest picture that is drawn reduced, by less than a half, or the full one.
const QImage& SlicePicture::levelFor(double scale) const
{
    const double halvings = std::floor(std::log2(1.0 / std::min(1.0, scale)));
    return levels_[std::min(levels_.size() - 1, static_cast<std::size_t>(halvings))];
}

void SlicePicture::paint(QPainter& painter,
                         const QTransform& imageToView,
                         const QRectF& exposed) const
{
    if (levels_.empty() || levels_.front().isNull()) {
        return;
    }
    const QImage& full = levels_.front();
    // Whole pixels, lest the edges of neighbouring parts be mixed differently.
    const QRect part =
        imageToView.inverted().mapRect(exposed).toAlignedRect().adjusted(-1, -1, 1, 1) &
        full.rect();
    if (part.isEmpty()) {
        return;
    }
    const double scale = imageToView.m11() * painter.device()->devicePixelRatioF();
    const QImage& level = levelFor(scale);
    const QTransform toLevel =
        QTransform::fromScale(static_cast<double>(level.width()) / full.width(),
                              static_cast<double>(level.height()) / full.height());
    constexpr double sharpFrom = 2.0;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, scale < sharpFrom);
    painter.drawImage(imageToView.mapRect(QRectF(part)), level, toLevel.mapRect(QRectF(part)));
}
