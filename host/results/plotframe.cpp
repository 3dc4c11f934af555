#include "host/results/plotframe.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double gap = 6.0;
constexpr double tickLength = 4.0;

/// About a tick for so many lines of text.
int wantedTicks(double length, double lineHeight, double lines)
{
    return std::clamp(static_cast<int>(length / (lines * lineHeight)), 2, 12);
}

double widestLabel(const PlotAxis& axis, const QFontMetricsF& metrics)
{
    double widest = 0.0;
    for (const double tick : axis.ticks()) {
        widest = std::max(widest, metrics.horizontalAdvance(axis.label(tick)));
    }
    return widest;
}

PlotAxis around(double middle, double length, int wanted)
{
    return PlotAxis::exactly(middle - length / 2.0, middle + length / 2.0,
                             PlotAxis::roundStep(length, wanted));
}

} // namespace

PlotFrame::PlotFrame(const QRectF& outer,
                     const Ranges& ranges,
                     Scale scale,
                     const QString& xLabel,
                     const QString& yLabel,
                     const QFont& font)
    : outer_(outer)
    , area_(outer)
    , xLabel_(xLabel)
    , yLabel_(yLabel)
    , font_(font)
{
    const QFontMetricsF metrics(font);
    const double line = metrics.height();
    area_.adjust(line + gap, line, -line, -2.0 * (line + gap) - tickLength);
    // The width of the numbers depends on the ticks, those on the height alone.
    setAxes(ranges, scale, line);
    area_.setLeft(area_.left() + widestLabel(y_, metrics) + gap + tickLength);
    if (area_.width() < 1.0 || area_.height() < 1.0) {
        area_.setSize({std::max(area_.width(), 1.0), std::max(area_.height(), 1.0)});
    }
    setAxes(ranges, scale, line);
}

void PlotFrame::setAxes(const Ranges& ranges, Scale scale, double lineHeight)
{
    const int wantedX = wantedTicks(area_.width(), lineHeight, 5.0);
    const int wantedY = wantedTicks(area_.height(), lineHeight, 3.0);
    if (scale == Scale::Independent) {
        x_ = PlotAxis(ranges.left, ranges.right, wantedX);
        y_ = PlotAxis(ranges.bottom, ranges.top, wantedY);
        return;
    }
    const double width = std::max(area_.width(), 1.0);
    const double height = std::max(area_.height(), 1.0);
    const double perPixel =
        std::max((ranges.right - ranges.left) / width, (ranges.top - ranges.bottom) / height);
    const double unit = perPixel > 0.0 ? perPixel : 1.0;
    // The narrower axis would otherwise get ticks of another step.
    const double step =
        PlotAxis::roundStep(std::max(width, height) * unit, width > height ? wantedX : wantedY);
    x_ = around((ranges.left + ranges.right) / 2.0, width * unit, wantedX);
    y_ = around((ranges.bottom + ranges.top) / 2.0, height * unit, wantedY);
    const double common = std::max({x_.step(), y_.step(), step});
    x_ = PlotAxis::exactly(x_.low(), x_.high(), common);
    y_ = PlotAxis::exactly(y_.low(), y_.high(), common);
}

QPointF PlotFrame::place(double x, double y) const
{
    return {area_.left() + (x - x_.low()) / (x_.high() - x_.low()) * area_.width(),
            area_.bottom() - (y - y_.low()) / (y_.high() - y_.low()) * area_.height()};
}

void PlotFrame::paint(QPainter& painter, const PlotColors& colors) const
{
    painter.setFont(font_);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.grid, 1.0));
    for (const double tick : x_.ticks()) {
        const double x = place(tick, y_.low()).x();
        painter.drawLine(QPointF(x, area_.top()), QPointF(x, area_.bottom()));
    }
    for (const double tick : y_.ticks()) {
        const double y = place(x_.low(), tick).y();
        painter.drawLine(QPointF(area_.left(), y), QPointF(area_.right(), y));
    }
    painter.setPen(QPen(colors.text, 1.0));
    painter.drawRect(area_);
    paintTicks(painter, colors);
}

void PlotFrame::paintTicks(QPainter& painter, const PlotColors& colors) const
{
    const QFontMetricsF metrics(font_);
    const double line = metrics.height();
    painter.setPen(QPen(colors.text, 1.0));
    for (const double tick : x_.ticks()) {
        const double x = place(tick, y_.low()).x();
        const QString label = x_.label(tick);
        painter.drawLine(QPointF(x, area_.bottom()), QPointF(x, area_.bottom() + tickLength));
        painter.drawText(QPointF(x - metrics.horizontalAdvance(label) / 2.0,
                                 area_.bottom() + tickLength + gap / 2.0 + metrics.ascent()),
                         label);
    }
    for (const double tick : y_.ticks()) {
        const double y = place(x_.low(), tick).y();
        const QString label = y_.label(tick);
        painter.drawLine(QPointF(area_.left() - tickLength, y), QPointF(area_.left(), y));
        painter.drawText(
            QPointF(area_.left() - tickLength - gap / 2.0 - metrics.horizontalAdvance(label),
                    y + metrics.ascent() / 2.0 - metrics.descent() / 2.0),
            label);
    }
    painter.drawText(QPointF(area_.center().x() - metrics.horizontalAdvance(xLabel_) / 2.0,
                             outer_.bottom() - metrics.descent() - gap / 2.0),
                     xLabel_);
    painter.save();
    painter.translate(outer_.left() + gap / 2.0 + line - metrics.descent(), area_.center().y());
    painter.rotate(-90.0);
    painter.drawText(QPointF(-metrics.horizontalAdvance(yLabel_) / 2.0, 0.0), yLabel_);
    painter.restore();
}
