#pragma once

#include "host/results/averageshapes.h"
#include "host/results/plotframe.h"
#include "host/results/plotlegend.h"

#include <QWidget>

/// Shapes drawn over each other on one scale, the tips up, in colours that run from the first to the
/// last one.
class AveragesView : public QWidget
{
    Q_OBJECT

public:
    explicit AveragesView(QWidget* parent = nullptr);

    /// `unit` is that of the coordinates, empty if unknown.
    void setShapes(const std::vector<AverageShape>& shapes, const QString& unit);

    const std::vector<AverageShape>& shapes() const { return shapes_; }

    /// The colour that a shape is drawn in on the screen.
    QColor color(int shape) const;

    void setShown(int shape, bool shown);

    /// Draws one shape thicker than the others; -1 none.
    void setMarked(int shape);

    /// Writes the picture, with a legend, as it would look on white paper. See `savePicture`.
    void save(const QString& filename) const;

    QSize sizeHint() const override { return {560, 560}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor color(int shape, const PlotColors& colors) const;
    PlotFrame frame(const QRectF& room) const;
    void paint(QPainter& painter, const QRectF& room, const PlotColors& colors) const;
    void paintShape(QPainter& painter, const PlotFrame& frame, int shape, const QColor& line) const;
    PlotLegend legend(const PlotColors& colors) const;

    std::vector<AverageShape> shapes_;
    std::vector<bool> shown_;
    QString unit_;
    int marked_ = -1;
};
