#include "shell/pages/nohierarchyconfigeditor.h"

#include <QGroupBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

NoHierarchyConfigEditor::NoHierarchyConfigEditor(QWidget* parent)
    : QWidget(parent)
    , group(new QGroupBox("No Hierarchy"))
{
    group->setCheckable(true);
    QVBoxLayout* inner = new QVBoxLayout(group);
    inner->addWidget(new QLabel("don't apply hierarchy algorithm"));
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);
    setConfig(NoHierarchyConfig());
    connect(group, &QGroupBox::clicked, this, &NoHierarchyConfigEditor::groupBoxNoHierarchyState);
}

void NoHierarchyConfigEditor::setConfig(const NoHierarchyConfig& config)
{
    changedStateGroupBox(config.isSettingsEnabled());
}

NoHierarchyConfig NoHierarchyConfigEditor::getConfig() const
{
    NoHierarchyConfig config;
    config.setSettingsEnabled(group->isChecked());
    return config;
}

void NoHierarchyConfigEditor::changedStateGroupBox(bool checked)
{
    const QSignalBlocker blocker(group);
    group->setChecked(checked);
}
