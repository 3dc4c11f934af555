#include "host/view/junctiontool.h"

#include "host/editing/sliceeditor.h"
#include "host/view/sliceview.h"

#include <utility>

QString JunctionTool::hint() const
{
    return first_ ? "Click on the other place where the blade meets the petiole"
                  : "Click on the two places where the blade meets the petiole";
}

void JunctionTool::press(const QPointF& at, Qt::KeyboardModifiers)
{
    SliceEditor* editor = view().editor();
    if (!isInImage(at) || !editor) {
        return;
    }
    const QPoint pixel = view().pixelAt(at);
    if (first_) {
        const QPoint first = *std::exchange(first_, std::nullopt);
        view().update();
        view().setProposal(std::nullopt);
        editor->drawJunctions(view().sliceIndex(), first, pixel);
        emit view().statusText("The junctions are drawn");
    } else {
        first_ = pixel;
        nowAt_ = at;
        emit view().statusText(hint());
        view().update();
    }
}

void JunctionTool::move(const QPointF& at, Qt::MouseButtons)
{
    nowAt_ = at;
    if (first_) {
        view().update();
    }
}

bool JunctionTool::takeBack()
{
    const bool begun = first_.has_value();
    first_.reset();
    view().update();
    return begun;
}

bool JunctionTool::cancel()
{
    const bool begun = takeBack();
    return SliceTool::cancel() || begun;
}

void JunctionTool::paint(QPainter& painter) const
{
    if (first_) {
        paintLine(painter, QPolygonF(QVector<QPointF>{position(*first_), nowAt_}), true);
        paintCross(painter, position(*first_));
    }
    SliceTool::paint(painter);
}
