// Part of `SliceView`: what it shows: the picture, the items, the selection, a proposal, and the
// tool's marks.

#include "host/view/landmarkpicker.h"
#include "host/view/slicepicture.h"
#include "host/view/slicetool.h"
#include "host/view/sliceview.h"
#include "interface/itempainter.h"
#include "interface/lmxslicepixmapcache.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>

namespace {

// The same under light and dark palettes: a photograph is judged by its surroundings.
const QColor ground(48, 48, 48);
const QColor textColour(235, 235, 235);

} // namespace

void SliceView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), ground);
    if (!slice()) {
        return;
    }
    paintPicture(painter, event->rect());
    paintLines(painter);
    paintLandmarks(painter);
    paintProposal(painter);
    currentTool().paint(painter);
}

void SliceView::paintPicture(QPainter& painter, const QRectF& exposed)
{
    if (!fault_.isEmpty()) {
        paintText(painter, fault_);
        return;
    }
    const StackSlice& shown = *slice();
    if (const std::shared_ptr<const SlicePicture> picture = loader_.request(shown)) {
        picture->paint(painter, imageToWidget(), exposed);
        paintText(painter, picture->fault());
        return;
    }
    const QRectF target = imageToWidget().mapRect(QRectF(QPointF(), QSizeF(imageSize())));
    if (const QPixmap* small = stack_->getSlicePixmapCache().find(shown)) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(target, *small, QRectF(small->rect()));
    } else {
        painter.fillRect(target, ground.lighter());
        paintText(painter, "Loading the picture");
    }
}

void SliceView::paintText(QPainter& painter, const QString& text) const
{
    if (!text.isEmpty()) {
        painter.setPen(textColour);
        painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap,
                         text);
    }
}

/// Selected ones stand out, but cover no landmark.
void SliceView::paintLines(QPainter& painter) const
{
    paintItems(painter, false);
    const LandmarkPicker known = picker();
    for (const VertexPlace& place : selection_) {
        // Processes may delete items without a word before they tell of new ones.
        if (!place.isWholeItem() || !known.exists(place)) {
            continue;
        }
        QPolygonF line;
        const ModelItem& item = slice()->getItem(place.item);
        for (int i = 0; i < item.getSize(); ++i) {
            line.append(known.position({place.item, i}));
        }
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::NoBrush);
        for (const QPen& pen : {QPen(Qt::black, 4.0), QPen(Qt::yellow, 2.0)}) {
            painter.setPen(pen);
            painter.drawPolyline(line);
        }
    }
}

void SliceView::paintLandmarks(QPainter& painter) const
{
    constexpr double radius = 11.0;
    paintItems(painter, true);
    const LandmarkPicker known = picker();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const VertexPlace& place : selection_) {
        if (!place.isWholeItem() && known.exists(place)) {
            for (const QPen& pen : {QPen(Qt::black, 4.0), QPen(Qt::yellow, 2.0)}) {
                painter.setPen(pen);
                painter.drawEllipse(known.position(place), radius, radius);
            }
        }
    }
}

void SliceView::paintItems(QPainter& painter, bool points) const
{
    const ItemPainter items(imageToWidget());
    for (int i = 0; i < slice()->getNumItems(); ++i) {
        const ModelItem& item = slice()->getItem(i);
        if (LandmarkPicker::isPoints(item) == points && LandmarkPicker::isVisible(item)) {
            items.paintItem(painter, item);
        }
    }
}

void SliceView::paintProposal(QPainter& painter) const
{
    if (!proposal_) {
        return;
    }
    constexpr double radius = 9.0;
    QPointF points[2];
    for (int i = 0; i < 2; ++i) {
        points[i] = imageToWidget().map(QPointF(proposal_->x[i] + 0.5, proposal_->y[i] + 0.5));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(255, 255, 255, 70));
    for (const QPen& pen : {QPen(Qt::black, 3.0), QPen(Qt::cyan, 2.0, Qt::DashLine)}) {
        painter.setPen(pen);
        painter.drawLine(points[0], points[1]);
        for (const QPointF& point : points) {
            painter.drawEllipse(point, radius, radius);
        }
    }
}
