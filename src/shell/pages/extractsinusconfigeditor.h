#pragma once

#include "shell/settings/extractsinuslocalcurvatureconfig.h"
#include "shell/widgets/stagepage.h"

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
