#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/completeslices.h"
#include "cli/measures.h"
#include "cli/outputs.h"
#include "cli/projectoptions.h"
#include "cli/report.h"
#include "cli/runrecord.h"
#include "cli/stackfile.h"
#include "cli/stages.h"
#include "interface/stackbuilder.h"
#include "system/fileinfo.h"

namespace {

/// Options first, then the project's facts, then the stack file's folder and name.
MeasureTarget targetOf(const CommandLine& line, const ProjectConfig& project)
{
    MeasureTarget target{folderOf(line.argument(0)), FileInfo::baseName(line.argument(0))};
    if (!project.getProjectPath().isEmpty()) {
        target.folder = project.getProjectPath().toStdString();
    }
    if (!project.getProjectName().isEmpty()) {
        target.prefix = project.getProjectName().toStdString();
    }
    if (line.isSet("out")) {
        target.folder = line.required("out");
    }
    if (line.isSet("prefix")) {
        target.prefix = line.required("prefix");
    }
    return target;
}

} // namespace

int runMeasure(const QStringList& arguments, Report& report)
{
    CommandLine line("measure", "STACK.sdf",
                     "Writes the tables PREFIX_LeafMeasures.data and PREFIX_PeakMeasures.data, and "
                     "PREFIX_run.json, which tells how they came about. Needs the sinus stage.");
    ProjectOptions::declareVenation(line);
    ProjectOptions::declareGrowth(line);
    line.addOption("out", "Folder of the tables (the project's, else the stack file's).", "DIR");
    line.addOption("prefix", "Begin of their names (the project's name, else the stack file's).",
                   "PREFIX");
    CompleteSlices::declare(line);
    StackFile::declareReplace(line);
    line.parse(arguments, 1, 1);
    const ProjectOptions project(line, report);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const MeasureTarget target = targetOf(line, project.config);
    checkPrefix(target);
    StackFile file(line.argument(0), report);
    const CompleteSlices complete(file.stack(), GatedStage::LeafMeasures, line, report);
    checkTableNames(file.stack());
    requireGate(GatedStage::LeafMeasures, file.stack(), report);
    prepareTarget(target, line.isSet("replace"));
    for (const std::string& note : StackBuilder::calibrationNotes(file.stack())) {
        report.note(note);
    }
    RunRecord record("measure");
    record.setProject(project.toJson());
    record.addInput(file.path());
    if (!project.path.empty()) {
        record.addInput(project.path);
    }
    for (const CompleteSlices::Omission& omission : complete.omissions()) {
        record.addLeftOut(omission.slice, omission.reason);
    }
    measureLeaves(file.stack(), target, project.config, record, report);
    return report.exitStatus();
}
