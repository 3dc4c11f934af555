#include "shell/project/newprojectdialog.h"

#include "blade/project/projectconfig.h"
#include "shell/widgets/kineticparametersconfigeditor.h"
#include "shell/widgets/venationtypedialog.h"

#include <QFileDialog>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

NewProjectDialog::NewProjectDialog(QWidget* parent)
    : QDialog(parent)
    , nameEdit(new QLineEdit)
    , speciesEdit(new QLineEdit)
    , genotypeEdit(new QLineEdit)
    , leafGroupEdit(new QLineEdit)
    , growthConditionsEdit(new QLineEdit)
    , kineticEditor(new KineticParametersConfigEditor)
    , venationDialog(new VenationTypeDialog)
    , pathEdit(new QLineEdit)
    , doneButton(new QPushButton("Done"))
{
    setWindowTitle("New project");

    QPushButton* saveButton = new QPushButton(QIcon(":/images/filesave-96.png"), QString());
    saveButton->setAutoDefault(false); // Enter is for "Done"
    // The button bears the picture of a disk alone, and saves nothing yet.
    saveButton->setToolTip("Choose the project's folder");
    QFormLayout* form = new QFormLayout;
    form->setVerticalSpacing(10);
    form->addRow("Name", nameEdit);
    form->addRow("Species", speciesEdit);
    form->addRow("Genotype", genotypeEdit);
    form->addRow("Leaf group", leafGroupEdit);
    form->addRow("Growth conditions", growthConditionsEdit);
    form->addRow(kineticEditor);
    form->addRow(venationDialog);
    form->addRow("Save as", saveButton);
    form->addRow(QString(), pathEdit);

    doneButton->setMinimumSize(doneButton->sizeHint());
    doneButton->setEnabled(false);

    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(10);
    layout->addLayout(form);
    layout->addWidget(doneButton);

    connect(saveButton, &QPushButton::clicked, this, &NewProjectDialog::pathChooser);
    connect(doneButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(kineticEditor, &KineticParametersConfigEditor::kineticGroupBoxState, this,
            &NewProjectDialog::kineticParametersChanged);
}

void NewProjectDialog::setName(const QString& text)
{
    nameEdit->setText(text);
}

void NewProjectDialog::setVenationType(VenationType type)
{
    venationDialog->setVenationType(type);
}

QString NewProjectDialog::getProjectName() const
{
    return nameEdit->text();
}

QString NewProjectDialog::getSpecies() const
{
    return speciesEdit->text();
}

QString NewProjectDialog::getGenotype() const
{
    return genotypeEdit->text();
}

QString NewProjectDialog::getGroupLeaf() const
{
    return leafGroupEdit->text();
}

QString NewProjectDialog::getGrowthCondition() const
{
    return growthConditionsEdit->text();
}

QString NewProjectDialog::getOutputPath() const
{
    return pathEdit->text();
}

bool NewProjectDialog::getKineticParametersIsEnabled() const
{
    return kineticEnabled;
}

float NewProjectDialog::getInflectionPoint() const
{
    return kineticEditor->getConfig().getInflectionPoint();
}

float NewProjectDialog::getScaling() const
{
    return kineticEditor->getConfig().getScaling();
}

float NewProjectDialog::getStrengthFactor() const
{
    return kineticEditor->getConfig().getStrengthFactor();
}

VenationType NewProjectDialog::getVenationType() const
{
    return venationDialog->getVenationType();
}

void NewProjectDialog::pathChooser()
{
    QFileDialog chooser(this);
    chooser.setFileMode(QFileDialog::Directory);
    chooser.setOption(QFileDialog::ShowDirsOnly);
    if (chooser.exec() == QDialog::Accepted && !chooser.selectedFiles().isEmpty()) {
        path = chooser.selectedFiles().first();
        if (!path.isEmpty()) {
            pathEdit->setText(path);
        }
    }
    doneButton->setEnabled(true);
}

void NewProjectDialog::kineticParametersChanged(bool enabled)
{
    kineticEnabled = enabled;
}
