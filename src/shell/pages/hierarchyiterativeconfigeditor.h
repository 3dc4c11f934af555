#pragma once

#include "shell/settings/hierarchyiterativeconfig.h"

#include <QWidget>

class QDoubleSpinBox;
class QGroupBox;

/// Editor of the iterative hierarchy: its choice and the stringency factor.
class HierarchyIterativeConfigEditor : public QWidget
{
    Q_OBJECT

public:
    explicit HierarchyIterativeConfigEditor(QWidget* parent = nullptr);

    void setConfig(const HierarchyIterativeConfig& config);
    /// A fresh configuration with the values of the controls.
    HierarchyIterativeConfig getConfig() const;

signals:
    void groupBoxHierarchyIterativeState(bool checked);

public slots:
    // These set their control without any signal of that control.
    void toleranceChanged(double value);
    void changedStateGroupBox(bool checked);

private:
    QGroupBox* group;
    QDoubleSpinBox* toleranceBox;
};
