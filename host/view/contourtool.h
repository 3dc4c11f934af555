#pragma once

#include "host/view/slicetool.h"

#include <QPolygon>

/// Draws a piece of the contour again: by one stroke with the button held, or by clicks on the corners
/// of a line, which a double click or Return ends and Backspace takes back.
class ContourTool : public SliceTool
{
public:
    using SliceTool::SliceTool;

    QString hint() const override;
    void press(const QPointF& at, Qt::KeyboardModifiers modifiers) override;
    void move(const QPointF& at, Qt::MouseButtons buttons) override;
    void release(const QPointF& at, Qt::KeyboardModifiers modifiers) override;
    void doubleClick(const QPointF& at) override;

    /// Sets a corner at the pointer; where there is one already, ends the line.
    bool accept() override;
    bool takeBack() override;
    bool cancel() override;
    void paint(QPainter& painter) const override;

private:
    void add(const QPoint& pixel);
    void finish();

    QPolygon line_;
    QPointF pressedAt_;
    QPointF nowAt_;
    int sizeAtPress_ = 0;
    bool pressed_ = false;
    bool stroke_ = false;
};
