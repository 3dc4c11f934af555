#include "host/view/scaletool.h"

#include "host/view/sliceview.h"

#include <QPainter>

#include <cmath>

QString ScaleTool::hint() const
{
    return "Draw a line over the scale bar";
}

double ScaleTool::length() const
{
    return from_ ? std::hypot(to_.x() - from_->x(), to_.y() - from_->y()) : 0.0;
}

void ScaleTool::setEnd(const QPointF& at)
{
    to_ = view().imageToWidget().inverted().map(at);
    emit view().statusText(QString("%1 pixels").arg(length(), 0, 'f', 1));
    view().update();
}

void ScaleTool::press(const QPointF& at, Qt::KeyboardModifiers)
{
    second_ = from_ && !done_;
    if (!second_) {
        if (!isInImage(at)) {
            return;
        }
        from_ = view().imageToWidget().inverted().map(at);
        done_ = false;
    }
    setEnd(at);
}

void ScaleTool::move(const QPointF& at, Qt::MouseButtons)
{
    if (from_ && !done_) {
        setEnd(at);
    }
}

void ScaleTool::release(const QPointF& at, Qt::KeyboardModifiers)
{
    if (!from_ || done_) {
        return;
    }
    constexpr double meant = 4.0; // widget pixels; a shorter line was a first click
    setEnd(at);
    if (second_ || length() * view().imageToWidget().m11() >= meant) {
        done_ = true;
        emit view().scaleMeasured(length());
    }
}

bool ScaleTool::dropLine()
{
    const bool begun = from_.has_value();
    from_.reset();
    done_ = second_ = false;
    view().update();
    return begun;
}

bool ScaleTool::cancel()
{
    const bool begun = dropLine();
    return SliceTool::cancel() || begun;
}

void ScaleTool::paint(QPainter& painter) const
{
    if (from_) {
        const QTransform toWidget = view().imageToWidget();
        const QPointF from = toWidget.map(*from_);
        const QPointF to = toWidget.map(to_);
        paintLine(painter, QPolygonF(QVector<QPointF>{from, to}), !done_);
        paintCross(painter, from);
        paintCross(painter, to);
    }
    SliceTool::paint(painter);
}
