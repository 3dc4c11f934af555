#include "shell/pages/hierarchyconfigeditor.h"

#include "shell/pages/hierarchyarabidoconfigeditor.h"
#include "shell/pages/hierarchyiterativeconfigeditor.h"
#include "shell/pages/nohierarchyconfigeditor.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QPushButton>

HierarchyConfigEditor::HierarchyConfigEditor(QWidget* parent)
    : StagePage("qrc:/html/hierarchy.html", 300, "qrc:/html/index.html#hierarchy", parent)
    , arabidoEditor(new HierarchyArabidoConfigEditor)
    , iterativeEditor(new HierarchyIterativeConfigEditor)
    , noneEditor(new NoHierarchyConfigEditor)
{
    QFormLayout* form = new QFormLayout(controls());
    form->addRow(arabidoEditor);
    form->addRow(iterativeEditor);
    form->addRow(noneEditor);
    connect(arabidoEditor, &HierarchyArabidoConfigEditor::groupBoxHierarchyArabidoState, this,
            &HierarchyConfigEditor::changeStateHierarchyArabido);
    connect(iterativeEditor, &HierarchyIterativeConfigEditor::groupBoxHierarchyIterativeState, this,
            &HierarchyConfigEditor::changeStateHierarchyIterative);
    connect(noneEditor, &NoHierarchyConfigEditor::groupBoxNoHierarchyState, this,
            &HierarchyConfigEditor::changeStateNoHierarchy);
    connect(processButton(), &QPushButton::clicked, this,
            &HierarchyConfigEditor::processHierarchyClicked);
}

void HierarchyConfigEditor::setConfigHierarchyArabidoMethod(const HierarchyArabidoConfig& config)
{
    arabidoEditor->setConfig(config);
}

HierarchyArabidoConfig HierarchyConfigEditor::getConfigHierarchyArabidoMethod() const
{
    return arabidoEditor->getConfig();
}

void HierarchyConfigEditor::setConfigHierarchyIterativeMethod(
    const HierarchyIterativeConfig& config)
{
    iterativeEditor->setConfig(config);
}

HierarchyIterativeConfig HierarchyConfigEditor::getConfigHierarchyIterativeMethod() const
{
    return iterativeEditor->getConfig();
}

void HierarchyConfigEditor::setConfigNoHierarchyMethod(const NoHierarchyConfig& config)
{
    noneEditor->setConfig(config);
}

NoHierarchyConfig HierarchyConfigEditor::getConfigNoHierarchyMethod() const
{
    return noneEditor->getConfig();
}

void HierarchyConfigEditor::changeStateHierarchyArabido(bool checked)
{
    if (checked) {
        arabidoEditor->changedStateGroupBox(true);
        iterativeEditor->changedStateGroupBox(false);
        noneEditor->changedStateGroupBox(false);
    }
}

void HierarchyConfigEditor::changeStateHierarchyIterative(bool checked)
{
    if (checked) {
        iterativeEditor->changedStateGroupBox(true);
        arabidoEditor->changedStateGroupBox(false);
        noneEditor->changedStateGroupBox(false);
    }
}

void HierarchyConfigEditor::changeStateNoHierarchy(bool checked)
{
    if (checked) {
        noneEditor->changedStateGroupBox(true);
        arabidoEditor->changedStateGroupBox(false);
        iterativeEditor->changedStateGroupBox(false);
    }
}
