#include "shell/pages/hierarchyarabidoconfigeditor.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

HierarchyArabidoConfigEditor::HierarchyArabidoConfigEditor(QWidget* parent)
    : QWidget(parent)
    , group(new QGroupBox("Hierarchy Recursive Method (Arabodipsis)"))
    , angleBox(new QSpinBox)
    , distalBox(new QCheckBox("Enable distal teeth detection"))
{
    group->setCheckable(true);
    angleBox->setRange(1, 179);
    angleBox->setSingleStep(2);
    angleBox->setAlignment(Qt::AlignRight);
    QFormLayout* form = new QFormLayout(group);
    form->addRow("Limit angle (degres):", angleBox);
    form->addRow(distalBox);
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);
    setConfig(HierarchyArabidoConfig());
    connect(distalBox, &QCheckBox::toggled, this,
            &HierarchyArabidoConfigEditor::checkEnableDistalTeeth);
    connect(group, &QGroupBox::clicked, this,
            &HierarchyArabidoConfigEditor::groupBoxHierarchyArabidoState);
}

void HierarchyArabidoConfigEditor::setConfig(const HierarchyArabidoConfig& config)
{
    angleLimitChanged(config.getAngleLimit());
    checkEnableDistalTeeth(config.getEnabledDistalTeeth());
    changedStateGroupBox(config.isSettingsEnabled());
}

HierarchyArabidoConfig HierarchyArabidoConfigEditor::getConfig() const
{
    HierarchyArabidoConfig config;
    config.setAngleLimit(angleBox->value());
    config.setEnableDistalTeeth(distalBox->isChecked());
    config.setSettingsEnabled(group->isChecked());
    return config;
}

void HierarchyArabidoConfigEditor::angleLimitChanged(int degrees)
{
    const QSignalBlocker blocker(angleBox);
    angleBox->setValue(degrees);
}

void HierarchyArabidoConfigEditor::checkEnableDistalTeeth(bool enabled)
{
    const QSignalBlocker blocker(distalBox);
    distalBox->setChecked(enabled);
}

void HierarchyArabidoConfigEditor::changedStateGroupBox(bool checked)
{
    const QSignalBlocker blocker(group);
    group->setChecked(checked);
}
