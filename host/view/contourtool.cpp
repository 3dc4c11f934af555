#include "host/view/contourtool.h"

#include "host/editing/sliceeditor.h"
#include "host/view/sliceview.h"

#include <cmath>
#include <utility>

QString ContourTool::hint() const
{
    return "Draw along the edge of the leaf from contour to contour, or click corners and press "
           "Return";
}

void ContourTool::add(const QPoint& pixel)
{
    if (line_.isEmpty() || line_.last() != pixel) {
        line_.append(pixel);
    }
    view().update();
}

void ContourTool::press(const QPointF& at, Qt::KeyboardModifiers)
{
    if (!isInImage(at) || !view().editor()) {
        return;
    }
    pressed_ = true;
    stroke_ = false;
    pressedAt_ = nowAt_ = at;
    sizeAtPress_ = line_.size();
    add(view().pixelAt(at));
}

void ContourTool::move(const QPointF& at, Qt::MouseButtons buttons)
{
    constexpr double meant = 4.0; // widget pixels; a shorter way is a click
    nowAt_ = at;
    if (pressed_ && (buttons & Qt::LeftButton)) {
        const QPointF way = at - pressedAt_;
        stroke_ = stroke_ || std::hypot(way.x(), way.y()) >= meant;
        if (stroke_) {
            add(view().pixelAt(at));
        }
    }
    if (!line_.isEmpty()) {
        view().update();
    }
}

void ContourTool::release(const QPointF&, Qt::KeyboardModifiers)
{
    const bool begunByStroke = pressed_ && stroke_ && sizeAtPress_ == 0;
    pressed_ = stroke_ = false;
    if (begunByStroke) {
        finish();
    }
}

void ContourTool::doubleClick(const QPointF&)
{
    pressed_ = false;
    finish();
}

bool ContourTool::accept()
{
    if (pointer() && (line_.isEmpty() || line_.last() != *pointer())) {
        return SliceTool::accept();
    }
    const bool begun = !line_.isEmpty();
    finish();
    return begun;
}

/// A line of one point is a corner that may go on.
void ContourTool::finish()
{
    if (line_.size() < 2) {
        return;
    }
    const QPolygon line = std::exchange(line_, QPolygon());
    view().update();
    view().editor()->redrawContour(view().sliceIndex(), line);
    emit view().statusText("The contour is drawn");
}

bool ContourTool::takeBack()
{
    if (line_.isEmpty()) {
        return false;
    }
    line_.removeLast();
    view().update();
    return true;
}

bool ContourTool::cancel()
{
    const bool begun = !line_.isEmpty();
    line_.clear();
    pressed_ = stroke_ = false;
    return SliceTool::cancel() || begun;
}

void ContourTool::paint(QPainter& painter) const
{
    QPolygonF line;
    for (const QPoint& pixel : line_) {
        line.append(position(pixel));
    }
    if (!line.isEmpty()) {
        paintLine(painter, line, false);
        if (!stroke_) {
            paintLine(painter, QPolygonF(QVector<QPointF>{line.last(), nowAt_}), true);
        }
    }
    SliceTool::paint(painter);
}
