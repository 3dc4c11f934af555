#include "shell/project/projectloader.h"

#include "blade/project/projectconfig.h"
#include "blade/project/projectfile.h"

#include <QFileDialog>
#include <QFileInfo>

#include <iostream>

ProjectLoader::ProjectLoader(QWidget* parent)
    : QDialog(parent)
{}

ProjectConfig ProjectLoader::getConfig() const
{
    return *config;
}

void ProjectLoader::loadProject()
{
    QFileDialog chooser(this, "Open Project");
    chooser.setFileMode(QFileDialog::ExistingFile);
    chooser.setNameFilter("Crenara Project File (*.crp)");
    chooser.setViewMode(QFileDialog::Detail);
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) {
        return;
    }
    // Of the file, not of the chooser: the two differ where the user types a whole path.
    const QFileInfo file(chooser.selectedFiles().first());
    config->setProjectPath(file.absolutePath());
    config->setCRPName(file.fileName());
}

bool ProjectLoader::readFileCRP()
{
    if (!ProjectFile::read(*config, config->getProjectPath() + "/" + config->getCRPName())) {
        return false;
    }
    std::cout << "inflection Point :" << config->getInflectionPoint() << "\n"
              << "Scaling :" << config->getScaling() << "\n"
              << "gStrength Factor :" << config->getStrengthFactor() << std::endl;
    return true;
}

QString ProjectLoader::getPath() const
{
    return config->getProjectPath();
}

VenationType ProjectLoader::getVenationType() const
{
    return config->getVenationType();
}

QString ProjectLoader::getProjectName() const
{
    return config->getProjectName();
}

QString ProjectLoader::getSpecies() const
{
    return config->getSpecie();
}

QString ProjectLoader::getGenotype() const
{
    return config->getGenotype();
}

QString ProjectLoader::getGrowthCondition() const
{
    return config->getGrowthCondition();
}

QString ProjectLoader::getLeafGroup() const
{
    return config->getLeafGroup();
}
