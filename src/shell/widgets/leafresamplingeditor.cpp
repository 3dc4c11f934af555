#include "shell/widgets/leafresamplingeditor.h"

#include <QCheckBox>
#include <QGridLayout>

LeafResamplingEditor::LeafResamplingEditor(QWidget* parent)
    : QGroupBox("1: Resampling", parent)
    , sinusBox(new QCheckBox("Primary Sinuses"))
    , peakBox(new QCheckBox("Primary Peaks"))
{
    QCheckBox* apexBox = new QCheckBox("Apex");
    QCheckBox* petioleBox = new QCheckBox("Petioles");
    for (QCheckBox* fixed : {apexBox, petioleBox}) {
        fixed->setChecked(true);
        fixed->setEnabled(false);
    }
    peakBox->setEnabled(false);
    QGridLayout* grid = new QGridLayout(this);
    grid->addWidget(apexBox, 0, 0);
    grid->addWidget(petioleBox, 1, 0);
    grid->addWidget(sinusBox, 0, 1);
    grid->addWidget(peakBox, 1, 1);
    connect(sinusBox, &QCheckBox::clicked, this, &LeafResamplingEditor::primarySinusChangedState);
    connect(sinusBox, &QCheckBox::clicked, this,
            &LeafResamplingEditor::primarySinusCheckBoxChangedState);
    connect(peakBox, &QCheckBox::clicked, this,
            &LeafResamplingEditor::primaryPeakCheckBoxChangedState);
}

void LeafResamplingEditor::primarySinusChangedState(bool checked)
{
    peakBox->setEnabled(checked);
    if (!sinusBox->isChecked()) {
        peakBox->setChecked(false);
    }
}
