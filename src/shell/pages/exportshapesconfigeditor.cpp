#include "shell/pages/exportshapesconfigeditor.h"

#include <QPushButton>

ExportShapesConfigEditor::ExportShapesConfigEditor(QWidget* parent)
    : StagePage("qrc:/html/extractContour.html", 430, "qrc:/html/index.html#extractcontour", parent)
{
    connect(processButton(), &QPushButton::clicked, this,
            &ExportShapesConfigEditor::processExportShapesClicked);
}
