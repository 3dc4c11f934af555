#pragma once

#include "host/results/resulttablemodel.h"

#include <QTableView>

/// A sortable table of measures. Whole rows are selected; the copy of them is text for a
/// spreadsheet.
class ResultTableView : public QTableView
{
    Q_OBJECT

public:
    explicit ResultTableView(QWidget* parent = nullptr);

    void setTable(const DataSet& table);

    const ResultTableModel& tableModel() const { return *model_; }

    /// Selects a row of the table and shows it; nothing is told.
    void selectTableRow(int tableRow);

public slots:
    /// Puts the selected rows, or all where none is selected, on the clipboard.
    void copy() const;

signals:
    /// The user came to a row of the table, by a click or a key.
    void rowChosen(int tableRow);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    ResultTableModel* model_;
};
