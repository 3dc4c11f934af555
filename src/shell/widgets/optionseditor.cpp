#include "shell/widgets/optionseditor.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QSignalBlocker>
#include <QSpinBox>

OptionsEditor::OptionsEditor(QWidget* parent)
    : QGroupBox("3: Options", parent)
    , pointsBox(new QSpinBox)
    , heightBox(new QDoubleSpinBox)
{
    QCheckBox* symmetryBox = new QCheckBox("Leaf Symmetrization");
    symmetryBox->setChecked(true);
    pointsBox->setRange(100, 10000);
    pointsBox->setSingleStep(10);
    pointsBox->setValue(1000);
    pointsBox->setAlignment(Qt::AlignRight);
    heightBox->setRange(0.1, 10000);
    heightBox->setSingleStep(0.1);
    heightBox->setValue(5.0);
    heightBox->setAlignment(Qt::AlignRight);
    QFormLayout* form = new QFormLayout(this);
    form->addRow(symmetryBox);
    form->addRow("Number of points per contour", pointsBox);
    form->addRow("Tooth detection threshold (minimum height)", heightBox);
    connect(symmetryBox, &QCheckBox::clicked, this, &OptionsEditor::leafSymmetrizationChanged);
}

void OptionsEditor::setResamplingPointsNumber(int number)
{
    resamplingPointsChanged(number);
}

int OptionsEditor::getResamplingPointsNumber() const
{
    return pointsBox->value();
}

void OptionsEditor::setMinimaToothHeight(float height)
{
    toothHeightChanged(height);
}

float OptionsEditor::getMinimaToothHeight() const
{
    return static_cast<float>(heightBox->value());
}

void OptionsEditor::resamplingPointsChanged(int number)
{
    const QSignalBlocker blocker(pointsBox);
    pointsBox->setValue(number);
}

void OptionsEditor::toothHeightChanged(double height)
{
    const QSignalBlocker blocker(heightBox);
    heightBox->setValue(height);
}
