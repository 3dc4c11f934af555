#include "blade/project/projectconfig.h"

#include "system/fileinfo.h"

void ProjectConfig::setProjectName(const QString& name)
{
    facts.projectName = QString::fromStdString(FileInfo::fileName(name.toStdString()));
}
