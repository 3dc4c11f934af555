#include "shell/widgets/kineticparametersconfigeditor.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

QDoubleSpinBox* parameterBox(double maximum)
{
    QDoubleSpinBox* box = new QDoubleSpinBox;
    box->setDecimals(4);
    box->setRange(1, maximum);
    box->setAlignment(Qt::AlignRight);
    return box;
}

} // namespace

KineticParametersConfigEditor::KineticParametersConfigEditor(QWidget* parent)
    : QWidget(parent)
    , group(new QGroupBox("Kinetic Parameters"))
    , inflectionBox(parameterBox(100))
    , scalingBox(parameterBox(70000))
    , strengthBox(parameterBox(50))
{
    group->setCheckable(true);
    group->setChecked(false);
    QFormLayout* form = new QFormLayout(group);
    form->addRow("Inflection point:", inflectionBox);
    form->addRow("Scaling (µm):", scalingBox);
    form->addRow("Strength factor:", strengthBox);
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);
    connect(group, &QGroupBox::clicked, this, &KineticParametersConfigEditor::kineticGroupBoxState);
}

void KineticParametersConfigEditor::setConfig(const ProjectConfig& project)
{
    inflectionChanged(project.getInflectionPoint());
    scalingChanged(project.getScaling());
    strengthFactorChanged(project.getStrengthFactor());
    kineticGroupBoxchanged(project.kineticIsEnabled());
}

ProjectConfig KineticParametersConfigEditor::getConfig() const
{
    ProjectConfig project;
    project.setInflectionPoint(static_cast<float>(inflectionBox->value()));
    project.setScaling(static_cast<float>(scalingBox->value()));
    project.setStrengthFactor(static_cast<float>(strengthBox->value()));
    project.setKineticEnabled(group->isChecked());
    return project;
}

void KineticParametersConfigEditor::kineticGroupBoxchanged(bool enabled)
{
    const QSignalBlocker blocker(group);
    group->setChecked(enabled);
}

void KineticParametersConfigEditor::inflectionChanged(double days)
{
    const QSignalBlocker blocker(inflectionBox);
    inflectionBox->setValue(days);
}

void KineticParametersConfigEditor::scalingChanged(double length)
{
    const QSignalBlocker blocker(scalingBox);
    scalingBox->setValue(length);
}

void KineticParametersConfigEditor::strengthFactorChanged(double exponent)
{
    const QSignalBlocker blocker(strengthBox);
    strengthBox->setValue(exponent);
}
