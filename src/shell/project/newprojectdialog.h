#pragma once

#include "blade/process/venationtype.h"

#include <QDialog>

class KineticParametersConfigEditor;
class ProjectConfig;
class QLineEdit;
class QPushButton;
class VenationTypeDialog;

/// The form of a new project. "Done" opens up once the folder chooser was opened.
class NewProjectDialog : public QDialog
{
    Q_OBJECT

public:
    explicit NewProjectDialog(QWidget* parent = nullptr);

    /// The project that the dialog is about; not owned.
    void setConfig(ProjectConfig* project) { config = project; }

    void setName(const QString& text);
    void setVenationType(VenationType type);

    QString getProjectName() const;
    QString getSpecies() const;
    QString getGenotype() const;
    QString getGroupLeaf() const;
    QString getGrowthCondition() const;
    QString getOutputPath() const;
    bool getKineticParametersIsEnabled() const;
    float getInflectionPoint() const;
    float getScaling() const;
    float getStrengthFactor() const;
    VenationType getVenationType() const;

public slots:
    /// Lets the user choose the project's folder.
    void pathChooser();
    /// Follows the state of the kinetic group box.
    void kineticParametersChanged(bool enabled);

private:
    ProjectConfig* config = nullptr;
    QLineEdit* nameEdit;
    QLineEdit* speciesEdit;
    QLineEdit* genotypeEdit;
    QLineEdit* leafGroupEdit;
    QLineEdit* growthConditionsEdit;
    KineticParametersConfigEditor* kineticEditor;
    VenationTypeDialog* venationDialog;
    QLineEdit* pathEdit;
    QPushButton* doneButton;
    QString path;
    bool kineticEnabled = false;
};
