#include "host/results/resulttableview.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

ResultTableView::ResultTableView(QWidget* parent)
    : QTableView(parent)
    , model_(new ResultTableModel(this))
{
    setModel(model_);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setAlternatingRowColors(true);
    setWordWrap(false);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    connect(this, &QAbstractItemView::clicked, this,
            [this](const QModelIndex& index) { emit rowChosen(model_->tableRow(index.row())); });
}

void ResultTableView::setTable(const DataSet& table)
{
    const bool first = model_->columnCount() == 0;
    model_->setColumns(tableColumns(table));
    if (first) {
        resizeColumnsToContents();
    }
}

void ResultTableView::selectTableRow(int tableRow)
{
    const int row = model_->viewRow(tableRow);
    if (row >= 0) {
        selectRow(row);
        scrollTo(model_->index(row, 0));
    }
}

void ResultTableView::copy() const
{
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows()) {
        rows.push_back(index.row());
    }
    for (int row = 0; rows.empty() && row < model_->rowCount(); ++row) {
        rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    QGuiApplication::clipboard()->setText(model_->text(rows));
}

void ResultTableView::keyPressEvent(QKeyEvent* event)
{
    const int before = currentIndex().row();
    QTableView::keyPressEvent(event);
    const int after = currentIndex().row();
    const bool confirmed = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (after >= 0 && (after != before || confirmed)) {
        emit rowChosen(model_->tableRow(after));
    }
}
