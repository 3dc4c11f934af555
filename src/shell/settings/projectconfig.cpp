#include "shell/settings/projectconfig.h"

#include "system/fileinfo.h"

void ProjectConfig::setProjectName(const QString& name)
{
    projectName = QString::fromStdString(FileInfo::fileName(name.toStdString()));
}
