#include "host/sliceview.h"

#include "image/image0.h"
#include "interface/itempainter.h"
#include "interface/lmxslicepixmapcache.h"
#include "interface/lmxstack.h"
#include "interface/qimageconversion.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace {

// The cache holds many pictures: none is kept larger than a large screen.
constexpr int largestSide = 2048;

constexpr int margin = 4;

QPixmap* loadPicture(const StackSlice& slice)
{
    Image0 image;
    slice.load(image);
    QImage picture = toQImage(image);
    if (std::max(picture.width(), picture.height()) > largestSide) {
        picture =
            picture.scaled(largestSide, largestSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return new QPixmap(QPixmap::fromImage(picture));
}

} // namespace

SliceView::SliceView(QWidget* parent)
    : QWidget(parent)
{
    setMinimumSize(200, 200);
    setFocusPolicy(Qt::ClickFocus);
}

void SliceView::showSlice(LMXStack* stack, int index)
{
    stack_ = stack;
    index_ = index;
    firstPoint_.reset();
    fault_.clear();
    imageSize_ = QSize();
    if (const StackSlice* shown = slice()) {
        try {
            imageSize_ = QSize(shown->width(), shown->height());
        } catch (const Exception& error) {
            fault_ = QString::fromStdString(error.getWhat());
        }
    }
    update();
}

StackSlice* SliceView::slice() const
{
    return stack_ && index_ >= 0 && index_ < stack_->getNumSlices() ? &stack_->getSlice(index_)
                                                                    : nullptr;
}

QTransform SliceView::imageToWidget() const
{
    if (imageSize_.isEmpty()) {
        return {};
    }
    const double roomX = std::max(1, width() - 2 * margin);
    const double roomY = std::max(1, height() - 2 * margin);
    const double scale = std::min(roomX / imageSize_.width(), roomY / imageSize_.height());
    return QTransform(scale, 0.0, 0.0, scale, (width() - scale * imageSize_.width()) / 2.0,
                      (height() - scale * imageSize_.height()) / 2.0);
}

const QPixmap* SliceView::picture()
{
    LMXSlicePixmapCache& cache = stack_->getSlicePixmapCache();
    const StackSlice& shown = *slice();
    if (!cache.find(shown) && fault_.isEmpty()) {
        try {
            cache.insert(shown, *loadPicture(shown));
        } catch (const FileError& error) {
            fault_ = QString::fromStdString(error.getFilename() + ": " + error.getWhat());
        } catch (const Exception& error) {
            fault_ = QString::fromStdString(error.getWhat());
        }
    }
    return cache.find(shown);
}

void SliceView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (!slice()) {
        return;
    }
    const QTransform transform = imageToWidget();
    if (const QPixmap* pixmap = picture()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(transform.mapRect(QRectF(QPointF(), QSizeF(imageSize_))), *pixmap,
                           QRectF(pixmap->rect()));
    }
    ItemPainter(transform).paintItems(painter, *slice());
    if (!fault_.isEmpty()) {
        painter.setPen(palette().color(QPalette::BrightText));
        painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap,
                         fault_);
    }
    paintPendingPoint(painter);
}

void SliceView::paintPendingPoint(QPainter& painter) const
{
    if (firstPoint_) {
        constexpr double arm = 8.0;
        const QPointF point = imageToWidget().map(QPointF(*firstPoint_) + QPointF(0.5, 0.5));
        painter.setRenderHint(QPainter::Antialiasing);
        for (const QPen& pen : {QPen(Qt::black, 3.0), QPen(Qt::yellow, 1.0)}) {
            painter.setPen(pen);
            painter.drawLine(point - QPointF(arm, 0.0), point + QPointF(arm, 0.0));
            painter.drawLine(point - QPointF(0.0, arm), point + QPointF(0.0, arm));
        }
    }
}

void SliceView::askForPairs(bool ask)
{
    asking_ = ask;
    firstPoint_.reset();
    setCursor(ask ? Qt::CrossCursor : Qt::ArrowCursor);
    update();
}

void SliceView::mousePressEvent(QMouseEvent* event)
{
    if (!asking_ || event->button() != Qt::LeftButton || imageSize_.isEmpty()) {
        QWidget::mousePressEvent(event);
        return;
    }
    const QPointF place = imageToWidget().inverted().map(event->localPos());
    const QPoint pixel(static_cast<int>(std::floor(place.x())),
                       static_cast<int>(std::floor(place.y())));
    if (!QRect(QPoint(), imageSize_).contains(pixel)) {
        return;
    }
    update();
    if (firstPoint_) {
        const QPoint first = *firstPoint_;
        firstPoint_.reset();
        emit pairClicked(first, pixel);
    } else {
        firstPoint_ = pixel;
    }
}

void SliceView::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() == stack_) {
        showSlice(nullptr, -1);
    }
}
