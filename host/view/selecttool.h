#pragma once

#include "host/editing/vertexplace.h"
#include "host/view/slicetool.h"

#include <QRectF>

/// Selects landmarks and lines, by clicks or by a rectangle, and moves landmarks. With Shift or Ctrl
/// the selection grows, or loses what it has. A single landmark that is let go near the contour goes
/// onto it, unless Ctrl is held. The points of a proposal are moved in the same way.
class SelectTool : public SliceTool
{
public:
    using SliceTool::SliceTool;

    QString hint() const override { return {}; }

    Qt::CursorShape cursorShape() const override { return Qt::ArrowCursor; }

    void press(const QPointF& at, Qt::KeyboardModifiers modifiers) override;
    void move(const QPointF& at, Qt::MouseButtons buttons) override;
    void release(const QPointF& at, Qt::KeyboardModifiers modifiers) override;

    /// Moves the selected landmarks; the document changes when the key is let go.
    bool arrow(const QPoint& step) override;
    void arrowsDone() override;

    bool accept() override { return false; }

    bool cancel() override;

    void interrupt() override { cancel(); }

    void paint(QPainter& painter) const override;

private:
    enum class Drag { None, Landmarks, ProposalPoint, Rectangle };

    std::optional<int> proposalPointAt(const QPointF& at) const;
    void pressOn(const VertexPlace& place, Qt::KeyboardModifiers modifiers);
    void hover(const QPointF& at);
    void dragProposal(const QPointF& at);
    void selectIn(const QRectF& rectangle, Qt::KeyboardModifiers modifiers);
    void moveSelection(const QPoint& shift, bool snap);
    VertexPlaces movable() const;

    Drag drag_ = Drag::None;
    QPointF pressedAt_;
    QPointF nowAt_;
    bool moved_ = false; // far enough to be meant
    QPoint shift_;       // of the selected landmarks, not in the document yet
    int proposalPoint_ = 0;
    std::optional<VertexPlace> hovered_;
};
