#include "host/view/sliceviewport.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int margin = 4;
constexpr double largestScale = 64.0;

} // namespace

void SliceViewport::setImageSize(const QSize& size)
{
    imageSize_ = size;
    fit();
}

void SliceViewport::setViewSize(const QSize& size)
{
    viewSize_ = size;
    if (fitted_) {
        fit();
    }
}

double SliceViewport::fittingScale() const
{
    if (imageSize_.isEmpty()) {
        return 1.0;
    }
    const double roomX = std::max(1, viewSize_.width() - 2 * margin);
    const double roomY = std::max(1, viewSize_.height() - 2 * margin);
    return std::min(roomX / imageSize_.width(), roomY / imageSize_.height());
}

void SliceViewport::fit()
{
    fitted_ = true;
    scale_ = fittingScale();
    centre_ = QPointF(imageSize_.width() / 2.0, imageSize_.height() / 2.0);
}

void SliceViewport::zoomTo(double scale, const QPointF& anchor)
{
    if (imageSize_.isEmpty()) {
        return;
    }
    const double smallest = std::min(1.0, fittingScale()) / 2.0;
    const QPointF kept = toImage(anchor);
    scale_ = std::clamp(scale, smallest, std::max(largestScale, smallest));
    fitted_ = false;
    centre_ += kept - toImage(anchor);
    keepInSight();
}

void SliceViewport::pan(const QPointF& shift)
{
    if (!imageSize_.isEmpty()) {
        fitted_ = false;
        centre_ -= shift / scale_;
        keepInSight();
    }
}

void SliceViewport::reveal(const QPointF& imagePoint)
{
    const QPointF place = imageToView().map(imagePoint);
    const auto overhang = [](double at, double room) {
        constexpr double border = 20.0;
        const double edge = std::min(border, room / 4.0);
        return std::min(at - edge, 0.0) + std::max(at - (room - edge), 0.0);
    };
    const QPointF shift(overhang(place.x(), viewSize_.width()),
                        overhang(place.y(), viewSize_.height()));
    const bool visible = QRectF(QPointF(), QSizeF(viewSize_)).contains(place);
    if (!shift.isNull() && !(fitted_ && visible)) {
        pan(-shift);
    }
}

void SliceViewport::keepInSight()
{
    centre_.setX(std::clamp(centre_.x(), 0.0, static_cast<double>(imageSize_.width())));
    centre_.setY(std::clamp(centre_.y(), 0.0, static_cast<double>(imageSize_.height())));
}

QTransform SliceViewport::imageToView() const
{
    if (imageSize_.isEmpty()) {
        return {};
    }
    return QTransform(scale_, 0.0, 0.0, scale_, viewSize_.width() / 2.0 - scale_ * centre_.x(),
                      viewSize_.height() / 2.0 - scale_ * centre_.y());
}

QPointF SliceViewport::toImage(const QPointF& viewPoint) const
{
    return imageToView().inverted().map(viewPoint);
}
