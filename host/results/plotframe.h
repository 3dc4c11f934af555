#pragma once

#include "host/results/plotaxis.h"
#include "host/results/plotcolors.h"

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

/// The axes of a plot in a rectangle: grid, ticks, numbers and labels, and the way from numbers to
/// places.
class PlotFrame
{
public:
    enum class Scale { Independent, Equal };

    struct Ranges
    {
        double left;
        double right;
        double bottom;
        double top;
    };

    /// `outer` holds all, the numbers and labels too. With `Scale::Equal` a unit has one length on
    /// both axes, and the shorter range is widened on both sides.
    PlotFrame(const QRectF& outer,
              const Ranges& ranges,
              Scale scale,
              const QString& xLabel,
              const QString& yLabel,
              const QFont& font);

    /// Where the points are drawn.
    const QRectF& area() const { return area_; }

    /// Y grows upward.
    QPointF place(double x, double y) const;

    void paint(QPainter& painter, const PlotColors& colors) const;

private:
    void setAxes(const Ranges& ranges, Scale scale, double lineHeight);
    void paintTicks(QPainter& painter, const PlotColors& colors) const;

    QRectF outer_;
    QRectF area_;
    PlotAxis x_;
    PlotAxis y_;
    QString xLabel_;
    QString yLabel_;
    QFont font_;
};
