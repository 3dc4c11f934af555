#pragma once

#include "host/results/tablecolumn.h"

#include <QAbstractTableModel>

#include <vector>

/// A table for a view: cells show what the file would hold, numbers sort as numbers, texts as a
/// reader orders them. Rows without a number come last, whatever the order.
class ResultTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit ResultTableModel(QObject* parent = nullptr);

    /// Shows these columns, of equal length, in the order of the last sorting where that column is
    /// still there.
    void setColumns(std::vector<TableColumn> columns);

    const std::vector<TableColumn>& columns() const { return columns_; }

    /// From a row of the view to that of the table, and back; -1 for a row that is not there.
    int tableRow(int row) const;
    int viewRow(int tableRow) const;

    /// The header and these rows of the view, with tabs between the cells and a line end behind each
    /// line.
    QString text(const std::vector<int>& rows) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// A column of -1 brings back the order of the table.
    void sort(int column, Qt::SortOrder order) override;

private:
    void sortRows();

    std::vector<TableColumn> columns_;
    std::vector<int> rows_; // the table's row in each row of the view
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};
