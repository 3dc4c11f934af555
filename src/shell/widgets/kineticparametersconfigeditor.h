#pragma once

#include "blade/project/projectconfig.h"

#include <QWidget>

class QDoubleSpinBox;
class QGroupBox;

/// Editor of the growth parameters: a group that can be switched off, with three numbers.
class KineticParametersConfigEditor : public QWidget
{
    Q_OBJECT

public:
    explicit KineticParametersConfigEditor(QWidget* parent = nullptr);

    /// Fills the numbers and the state of the group.
    void setConfig(const ProjectConfig& project);
    /// A project that holds these four values only.
    ProjectConfig getConfig() const;

signals:
    void kineticGroupBoxState(bool enabled);

public slots:
    // Each sets its control without any signal of that control.
    void kineticGroupBoxchanged(bool enabled);
    void inflectionChanged(double days);
    void scalingChanged(double length);
    void strengthFactorChanged(double exponent);

private:
    QGroupBox* group;
    QDoubleSpinBox* inflectionBox;
    QDoubleSpinBox* scalingBox;
    QDoubleSpinBox* strengthBox;
};
