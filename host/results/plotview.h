#pragma once

#include "host/results/plotdata.h"
#include "host/results/plotframe.h"
#include "host/results/plotlegend.h"

#include <QWidget>

/// A plot of points with axes, units and a legend. The point under the mouse tells its row; a click
/// chooses it. The arrow keys walk the points from left to right, Return chooses.
class PlotView : public QWidget
{
    Q_OBJECT

public:
    explicit PlotView(QWidget* parent = nullptr);

    /// `names` has a text for each row of the table, shown with its points.
    void setData(const PlotData& plotted, const std::vector<QString>& names);

    const PlotData& plotData() const { return data_; }

    /// Marks the points of a row; -1 marks none.
    void markRow(int row);

    /// Where a point is on the widget.
    QPointF place(const PlotData::Point& point) const;

    /// Writes the plot as it would look on white paper, as PNG or SVG by the suffix of the file. See
    /// `savePicture`.
    void save(const QString& filename) const;

    QSize sizeHint() const override { return {640, 480}; }

signals:
    void rowChosen(int row);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    PlotLegend legend(const PlotColors& colors) const;
    PlotFrame frame(const QRectF& room) const;
    QRectF plotRoom(const QRectF& whole) const;
    QColor color(const PlotData::Point& point, const PlotColors& colors) const;
    void paint(QPainter& painter, const QRectF& whole, const PlotColors& colors) const;
    int pointAt(const QPointF& position) const;
    void hover(int point);
    void walk(int step);
    QString describe(const PlotData::Point& point) const;

    PlotData data_;
    std::vector<QString> names_;
    std::vector<int> leftToRight_; // indices of the points
    int hovered_ = -1;             // index of a point
    int markedRow_ = -1;
};
