#include "host/results/tablecolumn.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

namespace {

/// As the text form of tables has it.
template <class T>
std::string cellText(const T& cell)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.setf(std::ios_base::showpoint);
    if constexpr (std::is_floating_point_v<T>) {
        if (std::isnan(cell)) {
            return "nan";
        }
    }
    stream << cell;
    return stream.str();
}

template <class T>
void fill(TableColumn& column, const DataSet& table, const std::string& name)
{
    const Vector<T>& cells = table.getValues<T>(name);
    column.numeric = std::is_arithmetic_v<T>;
    for (int row = 0; row < table.numRows(); ++row) {
        const T cell = row < cells.getSize() ? cells[row] : T();
        column.texts.push_back(QString::fromStdString(cellText(cell)));
        if constexpr (std::is_arithmetic_v<T>) {
            column.numbers.push_back(static_cast<double>(cell));
        }
    }
}

int endOfDigits(const QString& text, int from)
{
    const auto end = std::find_if(text.begin() + from, text.end(),
                                  [](QChar sign) { return sign < '0' || sign > '9'; });
    return static_cast<int>(end - text.begin());
}

/// The run of digits from `from` on without the zeros in front.
QString number(const QString& text, int from, int end)
{
    while (from + 1 < end && text[from] == '0') {
        ++from;
    }
    return text.mid(from, end - from);
}

} // namespace

std::vector<TableColumn> tableColumns(const DataSet& table)
{
    std::vector<TableColumn> columns;
    for (int i = 0; i < table.size()[1]; ++i) {
        const std::string name = table.variableNames()[static_cast<std::size_t>(i)];
        const std::string type = table.columnType(i);
        TableColumn column;
        column.name = QString::fromStdString(name);
        if (type == "%d") {
            fill<int>(column, table, name);
        } else if (type == "%ld") {
            fill<long>(column, table, name);
        } else if (type == "%f") {
            fill<float>(column, table, name);
        } else if (type == "%lf") {
            fill<double>(column, table, name);
        } else if (type == "%s") {
            fill<std::string>(column, table, name);
        }
        const auto rows = static_cast<std::size_t>(table.numRows());
        column.texts.resize(rows);
        column.numbers.resize(rows, std::numeric_limits<double>::quiet_NaN());
        columns.push_back(std::move(column));
    }
    return columns;
}

bool naturallyLess(const QString& a, const QString& b)
{
    int i = 0;
    int j = 0;
    while (i < a.size() && j < b.size()) {
        const int endA = endOfDigits(a, i);
        const int endB = endOfDigits(b, j);
        if (endA > i && endB > j) {
            const QString numberA = number(a, i, endA);
            const QString numberB = number(b, j, endB);
            if (numberA.size() != numberB.size()) {
                return numberA.size() < numberB.size();
            }
            if (numberA != numberB) {
                return numberA < numberB;
            }
            i = endA;
            j = endB;
        } else if (a[i].toLower() != b[j].toLower()) {
            return a[i].toLower() < b[j].toLower();
        } else {
            ++i;
            ++j;
        }
    }
    const int restA = a.size() - i;
    const int restB = b.size() - j;
    return restA != restB ? restA < restB : a < b;
}
