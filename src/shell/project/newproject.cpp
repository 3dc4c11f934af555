#include "shell/project/newproject.h"

#include "blade/project/projectfile.h"
#include "interface/lmxstack.h"
#include "shell/project/newprojectdialog.h"

void NewProject::newProject()
{
    NewProjectDialog dialog;
    if (config->getStack()) {
        dialog.setName(QString::fromStdString(config->getStack()->getName()));
    }
    dialog.setVenationType(PINNATE);
    dialog.setConfig(config);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    takeValues(dialog);
    const QString file = dialog.getOutputPath() + "/" + dialog.getProjectName() + ".crp";
    unwritten = ProjectFile::write(*config, file) ? "" : file;
}

void NewProject::takeValues(const NewProjectDialog& dialog)
{
    config->setProjectName(dialog.getProjectName());
    config->setProjectPath(dialog.getOutputPath());
    config->setVenationType(dialog.getVenationType());
    config->setGenotype(dialog.getGenotype());
    config->setGrowthCondition(dialog.getGrowthCondition());
    config->setGroupLeaf(dialog.getGroupLeaf());
    config->setSpecie(dialog.getSpecies());
    config->setInflectionPoint(dialog.getInflectionPoint());
    config->setScaling(dialog.getScaling());
    config->setStrengthFactor(dialog.getStrengthFactor());
    config->setKineticEnabled(dialog.getKineticParametersIsEnabled());
}
