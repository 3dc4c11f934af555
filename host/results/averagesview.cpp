#include "host/results/averagesview.h"

#include "host/results/picturefile.h"

#include <QPainter>

#include <algorithm>

namespace {

/// The tip up: the first axis of the frame becomes the vertical one, without a mirror image.
QPointF upright(const QPointF& point)
{
    return {point.y(), point.x()};
}

} // namespace

AveragesView::AveragesView(QWidget* parent)
    : QWidget(parent)
{
    setMinimumSize(240, 240);
    setAccessibleName("Shapes");
}

void AveragesView::setShapes(const std::vector<AverageShape>& shapes, const QString& unit)
{
    shapes_ = shapes;
    shown_.assign(shapes_.size(), true);
    unit_ = unit;
    marked_ = -1;
    update();
}

void AveragesView::setShown(int shape, bool shown)
{
    shown_[static_cast<std::size_t>(shape)] = shown;
    update();
}

void AveragesView::setMarked(int shape)
{
    marked_ = shape;
    update();
}

QColor AveragesView::color(int shape) const
{
    return color(shape, PlotColors::of(palette()));
}

QColor AveragesView::color(int shape, const PlotColors& colors) const
{
    const auto last = static_cast<double>(shapes_.size()) - 1.0;
    return colors.ramp(last > 0.0 ? shape / last : 0.0);
}

/// Of all shapes, those that are hidden too, so that nothing jumps when one comes back.
PlotFrame AveragesView::frame(const QRectF& room) const
{
    QRectF box;
    for (const AverageShape& shape : shapes_) {
        box |= shape.outline.boundingRect();
    }
    const double margin = 0.02 * std::max(box.width(), box.height());
    const QString unit = unit_.isEmpty() ? QString() : "(" + unit_ + ")";
    return PlotFrame(
        room,
        {box.top() - margin, box.bottom() + margin, box.left() - margin, box.right() + margin},
        PlotFrame::Scale::Equal, ("across the axis " + unit).trimmed(),
        ("along the axis " + unit).trimmed(), font());
}

void AveragesView::paintShape(QPainter& painter,
                              const PlotFrame& axes,
                              int index,
                              const QColor& line) const
{
    const AverageShape& shape = shapes_[static_cast<std::size_t>(index)];
    QPolygonF outline;
    for (const QPointF& point : shape.outline) {
        const QPointF turned = upright(point);
        outline.append(axes.place(turned.x(), turned.y()));
    }
    painter.setPen(QPen(line, index == marked_ ? 3.0 : 1.2));
    painter.setBrush(Qt::NoBrush);
    if (shape.closed) {
        painter.drawPolygon(outline);
    } else {
        painter.drawPolyline(outline);
    }
}

void AveragesView::paint(QPainter& painter, const QRectF& room, const PlotColors& colors) const
{
    const PlotFrame axes = frame(room);
    painter.setRenderHint(QPainter::Antialiasing);
    axes.paint(painter, colors);
    for (int i = 0; i < static_cast<int>(shapes_.size()); ++i) {
        if (shown_[static_cast<std::size_t>(i)] && i != marked_) {
            paintShape(painter, axes, i, color(i, colors));
        }
    }
    if (marked_ >= 0 && shown_[static_cast<std::size_t>(marked_)]) {
        paintShape(painter, axes, marked_, color(marked_, colors));
    }
}

void AveragesView::paintEvent(QPaintEvent*)
{
    const PlotColors colors = PlotColors::of(palette());
    QPainter painter(this);
    painter.fillRect(rect(), colors.background);
    if (shapes_.empty()) {
        painter.setPen(colors.text);
        painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap,
                         "No slice has a contour, two junctions and an apex");
    } else {
        paint(painter, rect(), colors);
    }
}

PlotLegend AveragesView::legend(const PlotColors& colors) const
{
    const std::vector<QString> names = shortNames(shapes_);
    std::vector<PlotLegend::Entry> entries;
    for (std::size_t i = 0; i < shapes_.size(); ++i) {
        if (shown_[i]) {
            entries.push_back({names[i], color(static_cast<int>(i), colors)});
        }
    }
    return PlotLegend(QString(), std::move(entries), font());
}

void AveragesView::save(const QString& filename) const
{
    const QSize size(800, 800);
    const PlotColors colors;
    savePicture(filename, size, [&](QPainter& painter) {
        const QRectF whole(QPointF(), size);
        const double width = legend(colors).width(whole.width() / 4.0);
        const QRectF room = whole.adjusted(0.0, 0.0, -width, 0.0);
        painter.fillRect(whole, colors.background);
        paint(painter, room, colors);
        legend(colors).paint(
            painter,
            QRectF(room.right(), frame(room).area().top(), width, frame(room).area().height()),
            colors);
    });
}
