#include "host/view/landmarktool.h"

#include "host/editing/sliceeditor.h"
#include "host/view/sliceview.h"

#include <QPainter>

#include <limits>

QString LandmarkTool::hint() const
{
    return "Click where a landmark of " + QString::fromStdString(view().landmarkModel()) + " lies";
}

void LandmarkTool::press(const QPointF& at, Qt::KeyboardModifiers)
{
    SliceEditor* editor = view().editor();
    if (!isInImage(at) || !editor) {
        return;
    }
    const VertexPlace added =
        editor->addLandmark(view().sliceIndex(), view().landmarkModel(), view().pixelAt(at));
    view().setSelection({added});
    emit view().statusText(view().describe(added));
}

void LandmarkTool::move(const QPointF& at, Qt::MouseButtons)
{
    const SliceEditor* editor = view().editor();
    target_ = editor && isInImage(at) ? editor->onContour(view().sliceIndex(), view().pixelAt(at),
                                                          std::numeric_limits<double>::infinity())
                                      : std::nullopt;
    view().update();
}

bool LandmarkTool::cancel()
{
    target_.reset();
    return SliceTool::cancel();
}

void LandmarkTool::paint(QPainter& painter) const
{
    if (target_) {
        constexpr double radius = 6.0;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::NoBrush);
        for (const QPen& pen : {QPen(Qt::black, 3.0), QPen(Qt::yellow, 1.5)}) {
            painter.setPen(pen);
            painter.drawEllipse(position(*target_), radius, radius);
        }
    }
    SliceTool::paint(painter);
}
