#pragma once

#include "shell/settings/projectconfig.h"

class NewProjectDialog;

/// Asks for the facts of a new project and writes its file.
class NewProject
{
public:
    /// The project to fill; not owned.
    void setConfig(ProjectConfig& project) { config = &project; }

    ProjectConfig getConfig() const { return *config; }

    /// Shows the dialog. On "Done" the project takes its values and `<folder>/<name as
    /// typed>.crp` is written; a file that can't be created is passed over, the project stands.
    /// Closed in any other way it leaves the project as it was.
    void newProject();

private:
    void takeValues(const NewProjectDialog& dialog);

    ProjectConfig* config = nullptr;
};
