#include "shell/widgets/crenarafidelityeditor.h"

#include <QFormLayout>
#include <QSpinBox>

CrenaraFidelityEditor::CrenaraFidelityEditor(QWidget* parent)
    : QGroupBox("Fidelity", parent)
    , fidelityBox(new QSpinBox)
{
    fidelityBox->setRange(10, 100);
    fidelityBox->setSingleStep(10);
    fidelityBox->setSuffix("%");
    fidelityBox->setAlignment(Qt::AlignRight);
    fidelityBox->setValue(100);
    QFormLayout* form = new QFormLayout(this);
    form->addRow(" Fidelity ratio :", fidelityBox);
}

void CrenaraFidelityEditor::setFidelity(int percent)
{
    fidelityBox->setValue(percent);
}

int CrenaraFidelityEditor::getFidelity() const
{
    return fidelityBox->value();
}
