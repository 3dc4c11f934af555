#pragma once

#include "host/view/slicetool.h"

/// Measures a line, drawn with the button held or by two clicks, and tells its length in pixels.
class ScaleTool : public SliceTool
{
public:
    using SliceTool::SliceTool;

    QString hint() const override;
    void press(const QPointF& at, Qt::KeyboardModifiers modifiers) override;
    void move(const QPointF& at, Qt::MouseButtons buttons) override;
    void release(const QPointF& at, Qt::KeyboardModifiers modifiers) override;

    bool takeBack() override { return dropLine(); }

    bool cancel() override;
    void paint(QPainter& painter) const override;

private:
    double length() const;
    void setEnd(const QPointF& at);
    bool dropLine();

    std::optional<QPointF> from_; // in the image
    QPointF to_;
    bool second_ = false;
    bool done_ = false;
};
