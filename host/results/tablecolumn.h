#pragma once

#include "system/dataset.h"

#include <QString>

#include <vector>

/// A column of a table as views want it: each cell as the text that stands in the file, and as a
/// number where the column holds numbers.
struct TableColumn
{
    QString name;
    bool numeric = false;
    std::vector<QString> texts;
    /// One a row; not-a-number in every row of a column of texts.
    std::vector<double> numbers;
};

/// All columns, each with `numRows()` cells. A column of a type that the text form does not know has
/// empty cells.
std::vector<TableColumn> tableColumns(const DataSet& table);

/// Whether `a` comes before `b` for a reader: runs of digits count as numbers, so that leaf2 comes
/// before leaf10.
bool naturallyLess(const QString& a, const QString& b);
