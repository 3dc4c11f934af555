#pragma once

#include "shell/widgets/stagepage.h"

class KineticParametersConfigEditor;
class ProjectConfig;
class QLineEdit;

/// The page of the measures: prefix and folder of the two tables. "&Process" is open once there is
/// a folder.
class LeafMeasuresConfigEditor : public StagePage
{
    Q_OBJECT

public:
    explicit LeafMeasuresConfigEditor(QWidget* parent = nullptr);

    /// Fills the page: the project's name as prefix, its folder, its growth parameters.
    void setConfig(const ProjectConfig& project);
    QString getPrefix() const;
    QString getOutputPath() const;

signals:
    void processLeafMeasuresClicked();

public slots:
    /// Opens the prefix for editing, or locks it again.
    void changePrefixClicked();
    /// Lets the user choose the folder.
    void dirSelection();

private:
    QLineEdit* prefixEdit;
    QLineEdit* pathEdit;
    KineticParametersConfigEditor* kineticEditor;
    QString path;
};
