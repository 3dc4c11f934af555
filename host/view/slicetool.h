#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QString>

#include <optional>

class QPainter;
class SliceView;

/// What the left button and the keys do on a slice view. Places are in the widget's coordinates.
///
/// The arrow keys move a pointer of the tool's own, which `accept` clicks with; so all can be done
/// without a mouse.
class SliceTool
{
public:
    explicit SliceTool(SliceView& view);
    virtual ~SliceTool();
    SliceTool(const SliceTool&) = delete;
    SliceTool& operator=(const SliceTool&) = delete;

    /// What to do, for the status bar.
    virtual QString hint() const = 0;

    virtual Qt::CursorShape cursorShape() const { return Qt::CrossCursor; }

    virtual void press(const QPointF& at, Qt::KeyboardModifiers modifiers) = 0;

    virtual void move(const QPointF&, Qt::MouseButtons) {}

    virtual void release(const QPointF&, Qt::KeyboardModifiers) {}

    virtual void doubleClick(const QPointF&) {}

    /// Moves by pixels of the image. False if the tool has nothing to move.
    virtual bool arrow(const QPoint& step);

    /// An arrow key was let go, or the view lost the keyboard.
    virtual void arrowsDone() {}

    /// Return. False if there is nothing to accept.
    virtual bool accept();

    /// Backspace. False if there is nothing to take back.
    virtual bool takeBack() { return false; }

    /// Gives up what was begun. False if nothing was.
    virtual bool cancel();

    /// Items of the slice changed: vertices that the tool keeps are others now.
    virtual void interrupt() {}

    virtual void paint(QPainter& painter) const;

protected:
    SliceView& view() const { return view_; }

    bool isInImage(const QPointF& at) const;

    /// The middle of a pixel.
    QPointF position(const QPoint& pixel) const;

    const std::optional<QPoint>& pointer() const { return pointer_; }

    /// A cross that shows on any ground.
    static void paintCross(QPainter& painter, const QPointF& at);

    /// A line that shows on any ground; a dashed one is not there yet.
    static void paintLine(QPainter& painter, const QPolygonF& line, bool dashed);

private:
    SliceView& view_;
    std::optional<QPoint> pointer_;
};
