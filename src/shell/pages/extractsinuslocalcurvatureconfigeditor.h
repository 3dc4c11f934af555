#pragma once

#include "shell/settings/extractsinuslocalcurvatureconfig.h"

#include <QWidget>

class QGroupBox;
class QSpinBox;

/// Editor of the half neighbourhood and the largest angle of a sinus.
class ExtractSinusLocalCurvatureConfigEditor : public QWidget
{
    Q_OBJECT

public:
    explicit ExtractSinusLocalCurvatureConfigEditor(QWidget* parent = nullptr);

    /// Fills the controls; the angle is truncated to whole degrees.
    void setConfig(const ExtractSinusLocalCurvatureConfig& config);
    /// A fresh configuration with the values of the controls.
    ExtractSinusLocalCurvatureConfig getConfig() const;

signals:
    void groupBoxLCState(bool checked);

public slots:
    // The first two set their control without any signal of that control.
    void neighbourhoudChange(int vertices);
    void curvatureAngleChange(int degrees);
    /// Sets the group's check state to the inverse of the argument.
    void changedState(bool other);

private:
    QGroupBox* group;
    QSpinBox* neighbourhoodBox;
    QSpinBox* angleBox;
};
