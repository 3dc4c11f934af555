#include "host/results/resulttablemodel.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

/// The places of all rows by ascending or descending cells; equal ones keep their order.
class RowOrder
{
public:
    RowOrder(const TableColumn& column, Qt::SortOrder order)
        : column_(column)
        , descending_(order == Qt::DescendingOrder)
    {}

    bool operator()(int a, int b) const
    {
        const auto i = static_cast<std::size_t>(a);
        const auto j = static_cast<std::size_t>(b);
        if (!column_.numeric) {
            return descending_ ? naturallyLess(column_.texts[j], column_.texts[i])
                               : naturallyLess(column_.texts[i], column_.texts[j]);
        }
        const double x = column_.numbers[i];
        const double y = column_.numbers[j];
        if (std::isnan(x) || std::isnan(y)) {
            return !std::isnan(x) && std::isnan(y);
        }
        return descending_ ? y < x : x < y;
    }

private:
    const TableColumn& column_;
    bool descending_;
};

} // namespace

ResultTableModel::ResultTableModel(QObject* parent)
    : QAbstractTableModel(parent)
{}

void ResultTableModel::setColumns(std::vector<TableColumn> columns)
{
    beginResetModel();
    const bool sameColumn = sortColumn_ >= 0 && sortColumn_ < static_cast<int>(columns.size()) &&
                            columns[static_cast<std::size_t>(sortColumn_)].name ==
                                columns_[static_cast<std::size_t>(sortColumn_)].name;
    columns_ = std::move(columns);
    rows_.resize(columns_.empty() ? 0 : columns_.front().texts.size());
    if (!sameColumn) {
        sortColumn_ = -1;
    }
    sortRows();
    endResetModel();
}

void ResultTableModel::sortRows()
{
    std::iota(rows_.begin(), rows_.end(), 0);
    if (sortColumn_ >= 0) {
        std::stable_sort(rows_.begin(), rows_.end(),
                         RowOrder(columns_[static_cast<std::size_t>(sortColumn_)], sortOrder_));
    }
}

int ResultTableModel::tableRow(int row) const
{
    return row >= 0 && row < rowCount() ? rows_[static_cast<std::size_t>(row)] : -1;
}

int ResultTableModel::viewRow(int tableRow) const
{
    const auto found = std::find(rows_.begin(), rows_.end(), tableRow);
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

QString ResultTableModel::text(const std::vector<int>& rows) const
{
    const auto line = [this](const auto& cell) {
        QStringList cells;
        for (const TableColumn& column : columns_) {
            cells.append(cell(column));
        }
        return cells.join('\t') + '\n';
    };
    QString text = line([](const TableColumn& column) { return column.name; });
    for (const int row : rows) {
        const auto i = static_cast<std::size_t>(tableRow(row));
        text += line([i](const TableColumn& column) { return column.texts[i]; });
    }
    return text;
}

int ResultTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ResultTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant ResultTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const TableColumn& column = columns_[static_cast<std::size_t>(index.column())];
    switch (role) {
    case Qt::DisplayRole:
        return column.texts[static_cast<std::size_t>(tableRow(index.row()))];
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (column.numeric ? Qt::AlignRight : Qt::AlignLeft));
    default:
        return {};
    }
}

QVariant ResultTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || section < 0) {
        return {};
    }
    if (orientation == Qt::Horizontal) {
        return section < columnCount() ? columns_[static_cast<std::size_t>(section)].name
                                       : QVariant();
    }
    return section < rowCount() ? QVariant(tableRow(section) + 1) : QVariant();
}

void ResultTableModel::sort(int column, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> tableRows;
    for (const QModelIndex& index : before) {
        tableRows.push_back(tableRow(index.row()));
    }
    sortColumn_ = column < columnCount() ? column : -1;
    sortOrder_ = order;
    sortRows();
    QModelIndexList after;
    for (int i = 0; i < before.size(); ++i) {
        after.append(index(viewRow(tableRows[static_cast<std::size_t>(i)]), before[i].column()));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}
