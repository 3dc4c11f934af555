// Part of `SliceView`: the keys.

#include "host/view/slicetool.h"
#include "host/view/sliceview.h"

#include <QKeyEvent>

#include <algorithm>

namespace {

QPoint arrowStep(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

bool SliceView::focusNextPrevChild(bool next)
{
    const VertexPlaces places = landmarks();
    const auto found = selection_.size() == 1
                           ? std::find(places.begin(), places.end(), selection_.front())
                           : places.end();
    auto target = places.end();
    if (found == places.end()) {
        target = places.empty() ? places.end() : next ? places.begin() : places.end() - 1;
    } else if (next) {
        target = found + 1;
    } else if (found != places.begin()) {
        target = found - 1;
    }
    if (tool_ != Tool::Select || target == places.end()) {
        setSelection({}); // behind the last one the keyboard goes on to the next widget
        return QWidget::focusNextPrevChild(next);
    }
    setSelection({*target});
    reveal(vertexAt(*target));
    emit statusText(describe(*target));
    return true;
}

void SliceView::keyPressEvent(QKeyEvent* event)
{
    if (!slice() || (!moveByKey(*event) && !actByKey(*event))) {
        QWidget::keyPressEvent(event);
    }
}

bool SliceView::moveByKey(const QKeyEvent& event)
{
    constexpr Qt::KeyboardModifiers others = Qt::ControlModifier | Qt::AltModifier;
    const QPoint direction = arrowStep(event.key());
    if (direction.isNull() || (event.modifiers() & others)) {
        return false;
    }
    const int pixels = event.modifiers() & Qt::ShiftModifier ? 10 : 1;
    if (!currentTool().arrow(direction * pixels)) {
        constexpr double part = 0.02; // of the view, and five times that with Shift
        viewport_.pan(-QPointF(direction) * std::min(pixels, 5) * part * width());
        update();
    }
    return true;
}

bool SliceView::actByKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Escape:
        return escape();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return enter();
    case Qt::Key_Backspace:
        if (currentTool().takeBack()) {
            return true;
        }
        deleteSelection();
        return true;
    case Qt::Key_Delete:
        deleteSelection();
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomIn();
        return true;
    case Qt::Key_Minus:
        zoomOut();
        return true;
    case Qt::Key_Space:
        if (!event.isAutoRepeat()) {
            spaceHeld_ = true;
            setCursor(Qt::OpenHandCursor);
        }
        return true;
    default:
        return false;
    }
}

bool SliceView::escape()
{
    if (currentTool().cancel()) {
        emit statusText(currentTool().hint());
    } else if (proposal_) {
        setProposal(std::nullopt);
    } else if (tool_ != Tool::Select) {
        setTool(Tool::Select);
    } else if (!selection_.empty()) {
        setSelection({});
    } else {
        return false;
    }
    return true;
}

bool SliceView::enter()
{
    if (currentTool().accept()) {
        return true;
    }
    if (proposal_) {
        acceptProposal();
        return true;
    }
    return false;
}

void SliceView::keyReleaseEvent(QKeyEvent* event)
{
    if (event->isAutoRepeat()) {
        return;
    }
    if (event->key() == Qt::Key_Space && spaceHeld_) {
        spaceHeld_ = false;
        setCursor(currentTool().cursorShape());
    } else if (!arrowStep(event->key()).isNull() && slice()) {
        currentTool().arrowsDone();
    } else {
        QWidget::keyReleaseEvent(event);
    }
}

void SliceView::focusOutEvent(QFocusEvent* event)
{
    spaceHeld_ = false;
    if (slice()) {
        currentTool().arrowsDone();
    }
    QWidget::focusOutEvent(event);
}
