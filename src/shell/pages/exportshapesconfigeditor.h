#pragma once

#include "shell/widgets/stagepage.h"

/// The page of the tooth export; it has no controls.
class ExportShapesConfigEditor : public StagePage
{
    Q_OBJECT

public:
    explicit ExportShapesConfigEditor(QWidget* parent = nullptr);

signals:
    void processExportShapesClicked();
};
