#include "shell/pages/extractpeaksconfigeditor.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>

ExtractPeaksConfigEditor::ExtractPeaksConfigEditor(QWidget* parent)
    : StagePage("qrc:/html/extractTips.html", 300, "qrc:/html/index.html#extractTips", parent)
    , curvatureRadio(new QRadioButton("Maximal Positive Curvature (angle):"))
    , symmetryRadio(new QRadioButton("Local Symmetry Maximun"))
    , neighbourhoodBox(new QSpinBox)
{
    neighbourhoodBox->setRange(2, 50);
    neighbourhoodBox->setSuffix(" % length of the tooth");
    neighbourhoodBox->setAlignment(Qt::AlignRight);
    QFormLayout* form = new QFormLayout(controls());
    form->addRow(curvatureRadio, neighbourhoodBox);
    form->addRow(symmetryRadio);
    connect(processButton(), &QPushButton::clicked, this,
            &ExtractPeaksConfigEditor::processExtractPeaksClicked);
}

void ExtractPeaksConfigEditor::setExcludeNeighboorhood(int value)
{
    neighbourhoodBox->setValue(value);
}

int ExtractPeaksConfigEditor::getExcludeNeighboorhood() const
{
    return neighbourhoodBox->value();
}

void ExtractPeaksConfigEditor::setMethodToExtract(MethodExtractPeaks method)
{
    if (method == LocalSymmetry) {
        symmetryRadio->setChecked(true);
    } else if (method == LocalCurvature) {
        curvatureRadio->setChecked(true);
    }
}

MethodExtractPeaks ExtractPeaksConfigEditor::getMethodToExtract() const
{
    return curvatureRadio->isChecked() && !symmetryRadio->isChecked() ? LocalCurvature
                                                                      : LocalSymmetry;
}

void ExtractPeaksConfigEditor::neighbourhoudChange(int value)
{
    const QSignalBlocker blocker(neighbourhoodBox);
    neighbourhoodBox->setValue(value);
}
