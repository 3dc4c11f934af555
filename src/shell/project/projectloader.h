#pragma once

#include "blade/process/venationtype.h"

#include <QDialog>

class ProjectConfig;

/// Lets the user choose a project file and reads it. The dialog itself is never shown: it is the
/// parent of the file chooser.
class ProjectLoader : public QDialog
{
    Q_OBJECT

public:
    explicit ProjectLoader(QWidget* parent = nullptr);

    /// The project to fill; not owned.
    void setConfig(ProjectConfig& project) { config = &project; }

    ProjectConfig getConfig() const;

    /// Shows the chooser; on acceptance the project gets the file's folder and name.
    void loadProject();

    /// Reads the file that the project names. False if it can't be opened; a file without a known
    /// key counts as read. The folder that the file states replaces the chosen one.
    bool readFileCRP();

    QString getPath() const;
    VenationType getVenationType() const;
    QString getProjectName() const;
    QString getSpecies() const;
    QString getGenotype() const;
    QString getGrowthCondition() const;
    QString getLeafGroup() const;

private:
    ProjectConfig* config = nullptr;
};
