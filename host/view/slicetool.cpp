#include "host/view/slicetool.h"

#include "host/view/sliceview.h"

#include <QPainter>

#include <algorithm>

SliceTool::SliceTool(SliceView& view)
    : view_(view)
{}

SliceTool::~SliceTool() = default;

bool SliceTool::arrow(const QPoint& step)
{
    const QSize& size = view_.imageSize();
    if (size.isEmpty()) {
        return false;
    }
    const QPoint from = pointer_ ? *pointer_ : QPoint(size.width() / 2, size.height() / 2);
    const QPoint to = pointer_ ? from + step : from;
    pointer_ =
        QPoint(std::clamp(to.x(), 0, size.width() - 1), std::clamp(to.y(), 0, size.height() - 1));
    view_.reveal(*pointer_);
    move(position(*pointer_), Qt::NoButton);
    emit view_.statusText(QString("(%1, %2)").arg(pointer_->x()).arg(pointer_->y()));
    view_.update();
    return true;
}

bool SliceTool::accept()
{
    if (!pointer_) {
        return false;
    }
    const QPointF at = position(*pointer_);
    press(at, Qt::NoModifier);
    release(at, Qt::NoModifier);
    return true;
}

bool SliceTool::cancel()
{
    const bool begun = pointer_.has_value();
    pointer_.reset();
    view_.update();
    return begun;
}

void SliceTool::paint(QPainter& painter) const
{
    if (pointer_) {
        paintCross(painter, position(*pointer_));
    }
}

bool SliceTool::isInImage(const QPointF& at) const
{
    return QRect(QPoint(), view_.imageSize()).contains(view_.pixelAt(at));
}

QPointF SliceTool::position(const QPoint& pixel) const
{
    return view_.imageToWidget().map(QPointF(pixel) + QPointF(0.5, 0.5));
}

void SliceTool::paintCross(QPainter& painter, const QPointF& at)
{
    constexpr double arm = 8.0;
    paintLine(painter, QPolygonF(QVector<QPointF>{at - QPointF(arm, 0.0), at + QPointF(arm, 0.0)}),
              false);
    paintLine(painter, QPolygonF(QVector<QPointF>{at - QPointF(0.0, arm), at + QPointF(0.0, arm)}),
              false);
}

void SliceTool::paintLine(QPainter& painter, const QPolygonF& line, bool dashed)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::black, 3.0));
    painter.drawPolyline(line);
    painter.setPen(QPen(Qt::yellow, 1.5, dashed ? Qt::DashLine : Qt::SolidLine));
    painter.drawPolyline(line);
}
