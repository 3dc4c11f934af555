#include "shell/pages/extractsinusconfigeditor.h"

#include "shell/pages/extractsinuslocalcurvatureconfigeditor.h"

#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

ExtractSinusConfigEditor::ExtractSinusConfigEditor(QWidget* parent)
    : StagePage("qrc:/html/extractSinus.html", 300, "qrc:/html/index.html#extractSinuses", parent)
    , editor(new ExtractSinusLocalCurvatureConfigEditor)
{
    QVBoxLayout* layout = new QVBoxLayout(controls());
    layout->addWidget(editor);
    connect(processButton(), &QPushButton::clicked, this,
            &ExtractSinusConfigEditor::processExtractSinusClicked);
}

void ExtractSinusConfigEditor::setConfig(const ExtractSinusLocalCurvatureConfig& config)
{
    editor->setConfig(config);
}

ExtractSinusLocalCurvatureConfig ExtractSinusConfigEditor::getConfig() const
{
    return editor->getConfig();
}
