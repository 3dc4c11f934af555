#include "blade/project/projectfile.h"
#include "fuzz/entries.h"

#include <cmath>

namespace {

bool readProject(const std::string& path)
{
    ProjectConfig project;
    const QString name = QString::fromStdString(path);
    require(ProjectFile::read(project, name), "a file that is there is read");
    for (float value :
         {project.getInflectionPoint(), project.getScaling(), project.getStrengthFactor()}) {
        require(std::isfinite(value), "the numbers of a project are finite");
    }
    require(ProjectFile::write(project, name + ".1"), "the project can be written");
    ProjectConfig again;
    require(ProjectFile::read(again, name + ".1"), "the project can be read again");
    require(ProjectFile::write(again, name + ".2"), "the project can be written again");
    require(bytesOf(path + ".1") == bytesOf(path + ".2"), "a project comes back as written");
    return true;
}

} // namespace

const FuzzEntry projectEntry = {"project", "crp", readProject};
