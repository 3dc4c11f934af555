#pragma once

#include "shell/settings/hierarchyarabidoconfig.h"

#include <QWidget>

class QCheckBox;
class QGroupBox;
class QSpinBox;

/// Editor of the recursive hierarchy: its choice, the limit angle, and distal teeth.
class HierarchyArabidoConfigEditor : public QWidget
{
    Q_OBJECT

public:
    explicit HierarchyArabidoConfigEditor(QWidget* parent = nullptr);

    void setConfig(const HierarchyArabidoConfig& config);
    /// A fresh configuration with the values of the controls.
    HierarchyArabidoConfig getConfig() const;

signals:
    void groupBoxHierarchyArabidoState(bool checked);

public slots:
    // These set their control without any signal of that control.
    void angleLimitChanged(int degrees);
    void checkEnableDistalTeeth(bool enabled);
    void changedStateGroupBox(bool checked);

private:
    QGroupBox* group;
    QSpinBox* angleBox;
    QCheckBox* distalBox;
};
