#include "shell/pages/leafmeasuresconfigeditor.h"

#include "shell/widgets/folderchoice.h"
#include "shell/widgets/kineticparametersconfigeditor.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

LeafMeasuresConfigEditor::LeafMeasuresConfigEditor(QWidget* parent)
    : StagePage("qrc:/html/analyse.html", 300, "qrc:/html/index.html#analysis", parent)
    , prefixEdit(displayLine())
    , pathEdit(displayLine())
    , kineticEditor(new KineticParametersConfigEditor)
{
    QToolButton* prefixButton = iconButton(":/images/edit_pencil-64.png", "Change prefix name");
    QToolButton* pathButton = iconButton(":/images/inode-directory-32.png", "Change directory");
    kineticEditor->setEnabled(false);
    processButton()->setEnabled(false);

    QHBoxLayout* prefixRow = new QHBoxLayout;
    prefixRow->addWidget(prefixEdit);
    prefixRow->addWidget(prefixButton);
    QHBoxLayout* pathRow = new QHBoxLayout;
    pathRow->addWidget(pathEdit);
    pathRow->addWidget(pathButton);
    QFormLayout* form = new QFormLayout(controls());
    form->addRow("Prefix name :", prefixRow);
    form->addRow("Output path :", pathRow);
    form->addRow(kineticEditor);

    connect(prefixButton, &QToolButton::clicked, this,
            &LeafMeasuresConfigEditor::changePrefixClicked);
    connect(pathButton, &QToolButton::clicked, this, &LeafMeasuresConfigEditor::dirSelection);
    connect(processButton(), &QPushButton::clicked, this,
            &LeafMeasuresConfigEditor::processLeafMeasuresClicked);
}

void LeafMeasuresConfigEditor::setConfig(const ProjectConfig& project)
{
    prefixEdit->setText(project.getProjectName());
    path = project.getProjectPath();
    pathEdit->setText(path);
    kineticEditor->setConfig(project);
    processButton()->setEnabled(!path.isEmpty()); // the project's folder is as good as a chosen one
}

QString LeafMeasuresConfigEditor::getPrefix() const
{
    return prefixEdit->text();
}

QString LeafMeasuresConfigEditor::getOutputPath() const
{
    return path;
}

void LeafMeasuresConfigEditor::changePrefixClicked()
{
    prefixEdit->setEnabled(!prefixEdit->isEnabled());
}

void LeafMeasuresConfigEditor::dirSelection()
{
    chooseFolder(path);
    if (!path.isEmpty()) {
        pathEdit->setText(path);
        processButton()->setEnabled(true);
    }
}
