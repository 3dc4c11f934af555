#include "shell/project/projectconfig.h"

#include "system/fileinfo.h"

void ProjectConfig::setProjectName(const QString& name)
{
    projectName = QString::fromStdString(FileInfo::fileName(name.toStdString()));
}
