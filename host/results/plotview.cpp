#include "host/results/plotview.h"

#include "host/results/picturefile.h"

#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

constexpr double radius = 3.5;
constexpr double reach = 9.0; // of the mouse, in pixels

/// Of the points; a range without points shows its axes all the same.
PlotFrame::Ranges rangesOf(const std::vector<PlotData::Point>& points)
{
    if (points.empty()) {
        return {0.0, 1.0, 0.0, 1.0};
    }
    const auto [left, right] = std::minmax_element(
        points.begin(), points.end(), [](const auto& a, const auto& b) { return a.x < b.x; });
    const auto [bottom, top] = std::minmax_element(
        points.begin(), points.end(), [](const auto& a, const auto& b) { return a.y < b.y; });
    return {left->x, right->x, bottom->y, top->y};
}

} // namespace

PlotView::PlotView(QWidget* parent)
    : QWidget(parent)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(240, 200);
    setAccessibleName("Plot");
}

void PlotView::setData(const PlotData& plotted, const std::vector<QString>& names)
{
    data_ = plotted;
    names_ = names;
    hovered_ = -1;
    leftToRight_.resize(data_.points.size());
    std::iota(leftToRight_.begin(), leftToRight_.end(), 0);
    std::stable_sort(leftToRight_.begin(), leftToRight_.end(), [this](int a, int b) {
        return data_.points[static_cast<std::size_t>(a)].x <
               data_.points[static_cast<std::size_t>(b)].x;
    });
    update();
}

void PlotView::markRow(int row)
{
    markedRow_ = row;
    update();
}

QColor PlotView::color(const PlotData::Point& point, const PlotColors& colors) const
{
    const int count = data_.groups.size();
    if (point.group < 0) {
        return colors.ramp(0.1);
    }
    return data_.ordered ? colors.ramp(count > 1 ? double(point.group) / (count - 1) : 0.0)
                         : colors.distinct(point.group, count);
}

PlotLegend PlotView::legend(const PlotColors& colors) const
{
    std::vector<PlotLegend::Entry> entries;
    for (int i = 0; i < data_.groups.size(); ++i) {
        const QString& name = data_.groups[i];
        entries.push_back({name.isEmpty() ? "none" : name, color({0.0, 0.0, 0, i}, colors)});
    }
    return PlotLegend(data_.groupTitle, std::move(entries), font());
}

QRectF PlotView::plotRoom(const QRectF& whole) const
{
    const double width = legend(PlotColors()).width(whole.width() / 4.0);
    return whole.adjusted(0.0, 0.0, -width, 0.0);
}

PlotFrame PlotView::frame(const QRectF& room) const
{
    return PlotFrame(room, rangesOf(data_.points), PlotFrame::Scale::Independent, data_.xLabel,
                     data_.yLabel, font());
}

QPointF PlotView::place(const PlotData::Point& point) const
{
    return frame(plotRoom(rect())).place(point.x, point.y);
}

void PlotView::paint(QPainter& painter, const QRectF& whole, const PlotColors& colors) const
{
    const QRectF room = plotRoom(whole);
    const PlotFrame axes = frame(room);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(whole, colors.background);
    axes.paint(painter, colors);
    legend(colors).paint(
        painter,
        QRectF(room.right(), axes.area().top(), whole.right() - room.right(), axes.area().height()),
        colors);
    for (const PlotData::Point& point : data_.points) {
        const QColor fill = color(point, colors);
        painter.setPen(QPen(colors.background, 0.7));
        painter.setBrush(fill);
        painter.drawEllipse(axes.place(point.x, point.y), radius, radius);
    }
}

void PlotView::paintEvent(QPaintEvent*)
{
    const PlotColors colors = PlotColors::of(palette());
    QPainter painter(this);
    paint(painter, rect(), colors);
    const PlotFrame axes = frame(plotRoom(rect()));
    if (data_.points.empty()) {
        painter.setPen(colors.text);
        painter.drawText(axes.area(), Qt::AlignCenter | Qt::TextWordWrap,
                         "No row has a number in both columns");
    }
    painter.setPen(QPen(colors.highlight, 2.0));
    painter.setBrush(Qt::NoBrush);
    for (std::size_t i = 0; i < data_.points.size(); ++i) {
        const PlotData::Point& point = data_.points[i];
        if (static_cast<int>(i) == hovered_ || point.row == markedRow_) {
            painter.drawEllipse(axes.place(point.x, point.y), radius + 3.0, radius + 3.0);
        }
    }
}

void PlotView::save(const QString& filename) const
{
    const QSize size(960, 640);
    savePicture(filename, size,
                [&](QPainter& painter) { paint(painter, QRectF(QPointF(), size), PlotColors()); });
}

int PlotView::pointAt(const QPointF& position) const
{
    const PlotFrame axes = frame(plotRoom(rect()));
    double nearest = reach;
    int found = -1;
    for (std::size_t i = 0; i < data_.points.size(); ++i) {
        const QPointF way = axes.place(data_.points[i].x, data_.points[i].y) - position;
        const double distance = std::hypot(way.x(), way.y());
        if (distance < nearest) {
            nearest = distance;
            found = static_cast<int>(i);
        }
    }
    return found;
}

QString PlotView::describe(const PlotData::Point& point) const
{
    const auto row = static_cast<std::size_t>(point.row);
    QStringList lines;
    if (row < names_.size()) {
        lines.append(names_[row]);
    }
    lines.append(data_.xLabel + ": " + QString::number(point.x, 'g', 6));
    lines.append(data_.yLabel + ": " + QString::number(point.y, 'g', 6));
    return lines.join('\n');
}

void PlotView::hover(int point)
{
    if (point == hovered_) {
        return;
    }
    hovered_ = point;
    setCursor(point < 0 ? Qt::ArrowCursor : Qt::PointingHandCursor);
    if (point < 0) {
        QToolTip::hideText();
    } else {
        const PlotData::Point& shown = data_.points[static_cast<std::size_t>(point)];
        QToolTip::showText(mapToGlobal(place(shown).toPoint() + QPoint(8, 0)), describe(shown),
                           this);
    }
    update();
}

void PlotView::mouseMoveEvent(QMouseEvent* event)
{
    hover(pointAt(event->localPos()));
}

void PlotView::mousePressEvent(QMouseEvent* event)
{
    const int point = pointAt(event->localPos());
    if (event->button() == Qt::LeftButton && point >= 0) {
        emit rowChosen(data_.points[static_cast<std::size_t>(point)].row);
    } else {
        QWidget::mousePressEvent(event);
    }
}

void PlotView::leaveEvent(QEvent* event)
{
    hover(-1);
    QWidget::leaveEvent(event);
}

void PlotView::walk(int step)
{
    const int count = static_cast<int>(leftToRight_.size());
    if (count == 0) {
        return;
    }
    const auto current = std::find(leftToRight_.begin(), leftToRight_.end(), hovered_);
    const int place = current == leftToRight_.end()
                          ? (step > 0 ? 0 : count - 1)
                          : static_cast<int>(current - leftToRight_.begin()) + step;
    hover(leftToRight_[static_cast<std::size_t>(std::clamp(place, 0, count - 1))]);
}

void PlotView::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        walk(-1);
        break;
    case Qt::Key_Right:
        walk(1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (hovered_ >= 0) {
            emit rowChosen(data_.points[static_cast<std::size_t>(hovered_)].row);
        }
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}
