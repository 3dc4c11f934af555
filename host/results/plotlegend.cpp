#include "host/results/plotlegend.h"

#include "host/results/plotcolors.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace {

constexpr double gap = 6.0;

} // namespace

PlotLegend::PlotLegend(QString title, std::vector<Entry> entries, const QFont& font)
    : title_(std::move(title))
    , entries_(std::move(entries))
    , font_(font)
{}

double PlotLegend::width(double most) const
{
    if (entries_.empty()) {
        return 0.0;
    }
    const QFontMetricsF metrics(font_);
    double widest = metrics.horizontalAdvance(title_);
    for (const Entry& entry : entries_) {
        widest = std::max(widest, metrics.height() + gap + metrics.horizontalAdvance(entry.name));
    }
    return std::min(widest + 2.0 * gap, most);
}

void PlotLegend::paint(QPainter& painter, const QRectF& room, const PlotColors& colors) const
{
    if (entries_.empty()) {
        return;
    }
    const QFontMetricsF metrics(font_);
    const double line = metrics.height();
    const int lines = static_cast<int>(room.height() / line) - (title_.isEmpty() ? 0 : 1);
    const int count = static_cast<int>(entries_.size());
    const int every =
        lines >= count ? 1 : (count + std::max(lines - 2, 1)) / std::max(lines - 1, 1);
    painter.setFont(font_);
    painter.setPen(colors.text);
    double y = room.top();
    const auto write = [&](double left, const QString& text) {
        painter.drawText(QPointF(left, y + metrics.ascent()),
                         metrics.elidedText(text, Qt::ElideRight, room.right() - left));
        y += line;
    };
    if (!title_.isEmpty()) {
        write(room.left() + gap, title_);
    }
    for (int i = 0; i < count; i += every) {
        const Entry& entry = entries_[static_cast<std::size_t>(i)];
        painter.fillRect(QRectF(room.left() + gap, y + 0.2 * line, 0.7 * line, 0.6 * line),
                         entry.color);
        write(room.left() + gap + line + gap / 2.0, entry.name);
    }
    if (every > 1) {
        write(room.left() + gap, QString("%1 in all").arg(count));
    }
}
