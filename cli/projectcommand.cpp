#include "blade/project/projectfile.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/projectoptions.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "system/fileinfo.h"

#include <QDir>

namespace {

/// A text that a line of the project file can hold.
QString fact(const CommandLine& line, const QString& name)
{
    const QString text = line.text(name);
    for (const QChar c : {QChar('"'), QChar('\t'), QChar('\n'), QChar('\r')}) {
        if (text.contains(c)) {
            throw UsageFailure("option '" + name.toStdString() +
                               "' can't hold double quotes, tabs or line breaks");
        }
    }
    return text;
}

ProjectConfig readFacts(const CommandLine& line, const std::string& path)
{
    ProjectConfig project;
    project.setProjectName(line.isSet("name") ? fact(line, "name")
                                              : QString::fromStdString(FileInfo::baseName(path)));
    project.setProjectPath(line.isSet("path")
                               ? fact(line, "path")
                               : QDir(QString::fromStdString(folderOf(path))).absolutePath());
    project.setSpecie(fact(line, "species"));
    project.setGenotype(fact(line, "genotype"));
    project.setGrowthCondition(fact(line, "growth-condition"));
    project.setGroupLeaf(fact(line, "leaf-group"));
    project.setVenationType(venationOption(line));
    if (line.isSet("strength") || line.isSet("inflection") || line.isSet("scaling")) {
        project.setKineticEnabled(true);
        project.setStrengthFactor(line.positive("strength"));
        project.setInflectionPoint(line.positive("inflection"));
        project.setScaling(line.positive("scaling"));
    }
    return project;
}

} // namespace

int runProject(const QStringList& arguments, Report& report)
{
    CommandLine line("project", "OUT.crp", "Writes a project file: the facts of an experiment.");
    line.addOption("name", "Name of the project (that of the file).", "NAME");
    line.addOption("path", "Folder for results (that of the file).", "DIR");
    line.addOption("species", "Species of the leaves.", "TEXT");
    line.addOption("genotype", "Genotype.", "TEXT");
    line.addOption("growth-condition", "How the plants were grown.", "TEXT");
    line.addOption("leaf-group", "Which leaves of the plants.", "TEXT");
    line.addOption("venation", "Venation: pinnate or palmate.", "TYPE", "pinnate");
    line.addOption("strength", "Exponent of the growth curve.", "S", "1");
    line.addOption("inflection", "Days at which a leaf has half its final length.", "I", "1");
    line.addOption("scaling", "Final length of a leaf in the stack's unit.", "C", "1");
    StackFile::declareReplace(line);
    line.parse(arguments, 1, 1);

    const std::string path = line.argument(0);
    requireSuffix(path, "crp");
    OwnFiles::requireReplaceable(path, OwnFiles::isProject, line.isSet("replace"));
    const ProjectConfig project = readFacts(line, path);
    prepareFolder(folderOf(path));
    checkWritable(path);
    if (!ProjectFile::write(project, QString::fromStdString(path))) {
        throw Failure(path + ": the project file can't be written");
    }
    return report.exitStatus();
}
