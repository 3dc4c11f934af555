#pragma once

#include "host/view/slicetool.h"

/// Adds a landmark of the view's model at each click, on the contour if there is one.
class LandmarkTool : public SliceTool
{
public:
    using SliceTool::SliceTool;

    QString hint() const override;
    void press(const QPointF& at, Qt::KeyboardModifiers modifiers) override;
    void move(const QPointF& at, Qt::MouseButtons buttons) override;
    bool cancel() override;
    void paint(QPainter& painter) const override;

private:
    std::optional<QPoint> target_; // where a click would put it
};
