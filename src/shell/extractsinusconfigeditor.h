#pragma once

#include "shell/extractsinuslocalcurvatureconfig.h"
#include "shell/stagepage.h"

class ExtractSinusLocalCurvatureConfigEditor;

/// The page of the sinus detection.
class ExtractSinusConfigEditor : public StagePage
{
    Q_OBJECT

public:
    explicit ExtractSinusConfigEditor(QWidget* parent = nullptr);

    void setConfig(const ExtractSinusLocalCurvatureConfig& config);
    ExtractSinusLocalCurvatureConfig getConfig() const;

signals:
    void processExtractSinusClicked();

private:
    ExtractSinusLocalCurvatureConfigEditor* editor;
};
