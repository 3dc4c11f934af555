#include "host/results/plotdata.h"

#include "blade/geometry/measureunit.h"
#include "system/exception.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace {

const TableColumn& columnOf(const std::vector<TableColumn>& columns, const QString& name)
{
    const auto found =
        std::find_if(columns.begin(), columns.end(),
                     [&name](const TableColumn& column) { return column.name == name; });
    if (found == columns.end()) {
        raise<NameError>("PlotData PlotData::of(...)",
                         "The table has no column " + name.toStdString());
    }
    return *found;
}

QString labelOf(const QString& column, const std::string& lengthUnit)
{
    const std::string unit = measureUnit(column.toStdString(), lengthUnit);
    const bool hasNone = unit == "count" || unit == "1" || unit == "text";
    const bool unknown =
        lengthUnit.empty() && unit != measureUnit(column.toStdString(), "any length");
    return hasNone || unknown ? column : column + " (" + QString::fromStdString(unit) + ")";
}

/// The text of a group: a whole number of a column of numbers without its decimals.
QString groupText(const TableColumn& column, std::size_t row)
{
    const double number = column.numeric ? column.numbers[row] : 0.5;
    return std::floor(number) == number && std::fabs(number) < 1e9
               ? QString::number(static_cast<int>(number))
               : column.texts[row];
}

} // namespace

PlotData PlotData::of(const std::vector<TableColumn>& columns,
                      const QString& x,
                      const QString& y,
                      const QString& group,
                      const std::string& lengthUnit)
{
    const TableColumn& xColumn = columnOf(columns, x);
    const TableColumn& yColumn = columnOf(columns, y);
    const TableColumn* groupColumn = group.isEmpty() ? nullptr : &columnOf(columns, group);
    PlotData data;
    data.xLabel = labelOf(x, lengthUnit);
    data.yLabel = labelOf(y, lengthUnit);
    if (groupColumn) {
        data.groupTitle = group;
        data.ordered = groupColumn->numeric;
        for (std::size_t row = 0; row < groupColumn->texts.size(); ++row) {
            data.groups.append(groupText(*groupColumn, row));
        }
        data.groups.removeDuplicates();
        std::sort(data.groups.begin(), data.groups.end(), naturallyLess);
    }
    QHash<QString, int> places;
    for (int i = 0; i < data.groups.size(); ++i) {
        places[data.groups[i]] = i;
    }
    for (std::size_t row = 0; row < xColumn.numbers.size(); ++row) {
        if (!std::isfinite(xColumn.numbers[row]) || !std::isfinite(yColumn.numbers[row])) {
            ++data.leftOut;
            continue;
        }
        const int place = groupColumn ? places[groupText(*groupColumn, row)] : -1;
        data.points.push_back(
            {xColumn.numbers[row], yColumn.numbers[row], static_cast<int>(row), place});
    }
    return data;
}
