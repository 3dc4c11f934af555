#include "shell/pages/averagingeditor.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>
#include <limits>

AveragingEditor::AveragingEditor(QWidget* parent)
    : QGroupBox("User defined parameters", parent)
    , beginBox(new QDoubleSpinBox)
    , endBox(new QDoubleSpinBox)
    , stepsBox(new QDoubleSpinBox)
    , numberBox(new QSpinBox)
{
    setCheckable(true);
    setChecked(true);
    for (QDoubleSpinBox* box : {beginBox, endBox}) {
        box->setSingleStep(1.0);
        box->setAlignment(Qt::AlignRight);
    }
    stepsBox->setRange(0.25, 10000);
    stepsBox->setSingleStep(0.25);
    stepsBox->setAlignment(Qt::AlignRight);
    numberBox->setRange(1, 5000);
    numberBox->setAlignment(Qt::AlignRight);
    stepsBox->setToolTip("choice a number of averages (blades)");
    numberBox->setToolTip("choice a number of averages (blades)");

    QFormLayout* form = new QFormLayout(this);
    form->addRow("Min :", beginBox);
    form->addRow("Max :", endBox);
    form->addRow("Steps :", stepsBox);
    form->addRow("Averages number :", numberBox);

    const auto doubleChanged = QOverload<double>::of(&QDoubleSpinBox::valueChanged);
    connect(beginBox, doubleChanged, this, &AveragingEditor::beginModify);
    connect(endBox, doubleChanged, this, &AveragingEditor::endModify);
    connect(stepsBox, doubleChanged, this, &AveragingEditor::stepsNumberModify);
    connect(numberBox, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &AveragingEditor::averagesNumberModify);
}

void AveragingEditor::setMin(double value)
{
    const QSignalBlocker beginBlocker(beginBox);
    const QSignalBlocker endBlocker(endBox);
    beginBox->setMinimum(value);
    endBox->setMinimum(value);
    beginBox->setValue(value);
}

void AveragingEditor::setMax(double value)
{
    const QSignalBlocker beginBlocker(beginBox);
    const QSignalBlocker endBlocker(endBox);
    beginBox->setMaximum(value);
    endBox->setMaximum(value);
    endBox->setValue(value);
    setSteps();
}

void AveragingEditor::setBegin(double value)
{
    beginBox->setValue(value);
}

double AveragingEditor::getBegin() const
{
    return beginBox->value();
}

void AveragingEditor::setEnd(double value)
{
    endBox->setValue(value);
}

double AveragingEditor::getEnd() const
{
    return endBox->value();
}

void AveragingEditor::setSteps()
{
    setQuietly(stepsBox, (endBox->value() - beginBox->value()) / numberBox->value());
}

double AveragingEditor::getStepsNumber() const
{
    return stepsBox->value();
}

void AveragingEditor::setAveragesNumber(int number)
{
    averagesNumberModify(number);
}

int AveragingEditor::getAveragesNumber() const
{
    return numberBox->value();
}

void AveragingEditor::setUnity(const QString& unit)
{
    for (QDoubleSpinBox* box : {beginBox, endBox, stepsBox}) {
        box->setSuffix(unit);
    }
}

void AveragingEditor::updateStepSpinBox(bool closed)
{
    stepsBox->setEnabled(!closed);
}

void AveragingEditor::beginModify(double value)
{
    setQuietly(beginBox, value);
    updateNumber();
}

void AveragingEditor::endModify(double value)
{
    setQuietly(endBox, value);
    updateNumber();
}

void AveragingEditor::stepsNumberModify(double value)
{
    setQuietly(stepsBox, value);
    updateNumber();
}

void AveragingEditor::averagesNumberModify(int number)
{
    const QSignalBlocker blocker(numberBox);
    numberBox->setValue(number);
    // Quietly: the step is rounded to the decimals of its box, and a number computed back from it
    // would often be one less than the one that was asked for.
    setSteps();
}

void AveragingEditor::setQuietly(QDoubleSpinBox* box, double value)
{
    const QSignalBlocker blocker(box);
    box->setValue(value);
}

void AveragingEditor::updateNumber()
{
    // The change of the number in turn fits the step to a whole number of averages.
    const double number = (endBox->value() - beginBox->value()) / stepsBox->value();
    numberBox->setValue(static_cast<int>(std::clamp(number, -1e6, 1e6)));
}
