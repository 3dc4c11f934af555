#pragma once

#include "host/results/measuretables.h"

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

    /// Plots the tables as they stand now. Each of the two tables keeps the columns chosen for it
    /// where it still has them.
    void setTables(const MeasureTables& tables);

    const PlotView& view() const { return *view_; }

    /// Marks a row of one of the two tables, if the plot shows that one.
    void markRow(MeasureTables::Kind kind, int row);

    void savePicture(const QString& filename) const;

signals:
    void rowChosen(MeasureTables::Kind kind, int row);

private:
    /// What was chosen for a table.
    struct Choice
    {
        QString x;
        QString y;
        QString group;
    };

    MeasureTables::Kind kind() const;

    Choice& choice() { return kind() == MeasureTables::Kind::Leaves ? leaves_ : teeth_; }

    void listColumns();
    void choose();
    void plot();

    const MeasureTables* tables_ = nullptr;
    Choice leaves_ = {"Blade_Length", "Blade_Area", "Slice_Name"};
    Choice teeth_ = {"Tooth_Position_From_The_Tip", "Tooth_Area", "Slice_Name"};
    QComboBox* table_;
    QComboBox* x_;
    QComboBox* y_;
    QComboBox* group_;
    PlotView* view_;
    QLabel* note_;
};
