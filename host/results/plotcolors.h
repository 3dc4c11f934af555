#pragma once

#include <QColor>

class QPalette;

/// The colours of a plot: those of the desktop on the screen, black on white in a file.
struct PlotColors
{
    QColor background = Qt::white;
    QColor text = Qt::black;
    QColor grid = QColor(222, 222, 222);
    QColor highlight = QColor(208, 0, 0);

    static PlotColors of(const QPalette& palette);

    bool isDark() const;

    /// Of `count` things without an order: up to eight tell apart for any eyes.
    QColor distinct(int index, int count) const;

    /// Of things in an order, `place` from 0 to 1.
    QColor ramp(double place) const;
};
