#pragma once

#include "host/results/tablecolumn.h"

#include <QStringList>

#include <string>
#include <vector>

/// One column of a table against another, each row a point.
struct PlotData
{
    struct Point
    {
        double x;
        double y;
        int row;   ///< of the table
        int group; ///< -1 without groups
    };

    QString xLabel;
    QString yLabel;
    std::vector<Point> points;
    QString groupTitle;
    /// In natural order; those of a column of numbers are `ordered`.
    QStringList groups;
    bool ordered = false;
    /// Rows without a number in one of the two columns.
    int leftOut = 0;

    /// Columns by name; an empty `group` makes no groups. Labels end in the unit of the column, in
    /// round brackets, where lengths have the given one. Raises `NameError` for an unknown column.
    static PlotData of(const std::vector<TableColumn>& columns,
                       const QString& x,
                       const QString& y,
                       const QString& group,
                       const std::string& lengthUnit);
};
