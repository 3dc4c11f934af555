#pragma once

#include "blade/landmarks/methodextractpeaks.h"
#include "shell/widgets/stagepage.h"

class QRadioButton;
class QSpinBox;

/// The page of the tip detection.
class ExtractPeaksConfigEditor : public StagePage
{
    Q_OBJECT

public:
    explicit ExtractPeaksConfigEditor(QWidget* parent = nullptr);

    void setExcludeNeighboorhood(int value);
    int getExcludeNeighboorhood() const;
    /// Checks the radio of the method; any other value changes nothing.
    void setMethodToExtract(MethodExtractPeaks method);
    MethodExtractPeaks getMethodToExtract() const;

signals:
    void processExtractPeaksClicked();

public slots:
    /// Sets the box without any signal of it.
    void neighbourhoudChange(int value);

private:
    QRadioButton* curvatureRadio;
    QRadioButton* symmetryRadio;
    QSpinBox* neighbourhoodBox;
};
