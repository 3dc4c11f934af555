#pragma once

#include "host/view/slicetool.h"

/// Draws the two blade-petiole junctions by two clicks, again and again.
class JunctionTool : public SliceTool
{
public:
    using SliceTool::SliceTool;

    QString hint() const override;
    void press(const QPointF& at, Qt::KeyboardModifiers modifiers) override;
    void move(const QPointF& at, Qt::MouseButtons buttons) override;
    bool takeBack() override;
    bool cancel() override;
    void paint(QPainter& painter) const override;

private:
    std::optional<QPoint> first_;
    QPointF nowAt_;
};
