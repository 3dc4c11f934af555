#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

#include <vector>

class QPainter;
struct PlotColors;

/// Names with their colours, a line each. Where there is no room for all, every so many is shown and
/// the last line tells how many there are.
class PlotLegend
{
public:
    struct Entry
    {
        QString name;
        QColor color;
    };

    PlotLegend(QString title, std::vector<Entry> entries, const QFont& font);

    /// What it takes, at most `most`; 0 without entries.
    double width(double most) const;

    void paint(QPainter& painter, const QRectF& room, const PlotColors& colors) const;

private:
    QString title_;
    std::vector<Entry> entries_;
    QFont font_;
};
