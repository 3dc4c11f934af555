#include "shell/pages/hierarchyiterativeconfigeditor.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QSignalBlocker>
#include <QVBoxLayout>

HierarchyIterativeConfigEditor::HierarchyIterativeConfigEditor(QWidget* parent)
    : QWidget(parent)
    , group(new QGroupBox("Hierarchy Iterative Method"))
    , toleranceBox(new QDoubleSpinBox)
{
    group->setCheckable(true);
    toleranceBox->setRange(0.05, 1.0);
    toleranceBox->setSingleStep(0.02);
    toleranceBox->setAlignment(Qt::AlignRight);
    QFormLayout* form = new QFormLayout(group);
    form->addRow("Stringency factor :", toleranceBox);
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);
    setConfig(HierarchyIterativeConfig());
    connect(group, &QGroupBox::clicked, this,
            &HierarchyIterativeConfigEditor::groupBoxHierarchyIterativeState);
}

void HierarchyIterativeConfigEditor::setConfig(const HierarchyIterativeConfig& config)
{
    toleranceChanged(double(config.getTolerance()));
    changedStateGroupBox(config.isSettingsEnabled());
}

HierarchyIterativeConfig HierarchyIterativeConfigEditor::getConfig() const
{
    HierarchyIterativeConfig config;
    config.setTolerance(static_cast<float>(toleranceBox->value()));
    config.setSettingsEnabled(group->isChecked());
    return config;
}

void HierarchyIterativeConfigEditor::toleranceChanged(double value)
{
    const QSignalBlocker blocker(toleranceBox);
    toleranceBox->setValue(value);
}

void HierarchyIterativeConfigEditor::changedStateGroupBox(bool checked)
{
    const QSignalBlocker blocker(group);
    group->setChecked(checked);
}
