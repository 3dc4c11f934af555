#pragma once

#include "blade/project/projectconfig.h"

class NewProjectDialog;

/// Asks for the facts of a new project and writes its file.
class NewProject
{
public:
    /// The project to fill; not owned.
    void setConfig(ProjectConfig& project) { config = &project; }

    ProjectConfig getConfig() const { return *config; }

    /// Shows the dialog. On "Done" the project takes its values and `<folder>/<name as
    /// typed>.crp` is written; the project stands also where the file can't be written, which
    /// `getUnwritten` tells. Closed in any other way it leaves the project as it was.
    void newProject();

    /// The project file that the last `newProject` could not write, else empty.
    const QString& getUnwritten() const { return unwritten; }

private:
    void takeValues(const NewProjectDialog& dialog);

    ProjectConfig* config = nullptr;
    QString unwritten;
};
