#pragma once

#include "host/measuretables.h"

#include <QWidget>

class PlotView;
class QComboBox;
class QLabel;

/// Chooses what a plot shows: the table, the columns of both axes, and what the colours tell.
class PlotPage : public QWidget
{
    Q_OBJECT

public:
    explicit PlotPage(QWidget* parent = nullptr);

    /// Plots the tables as they stand now; the columns chosen stay where they can.
    void setTables(const MeasureTables& tables);

    const PlotView& view() const { return *view_; }

    /// Marks a row of one of the two tables, if the plot shows that one.
    void markRow(MeasureTables::Kind kind, int row);

    void savePicture(const QString& filename) const;

signals:
    void rowChosen(MeasureTables::Kind kind, int row);

private:
    MeasureTables::Kind kind() const;
    void listColumns();
    void plot();

    const MeasureTables* tables_ = nullptr;
    QComboBox* table_;
    QComboBox* x_;
    QComboBox* y_;
    QComboBox* group_;
    PlotView* view_;
    QLabel* note_;
};
