#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/leavesintake.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/photographlist.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "system/fileinfo.h"

int runLeaves(const QStringList& arguments, Report& report)
{
    CommandLine line(
        "leaves", "OUT.sdf PHOTOGRAPH|FOLDER...",
        "Finds the leaves on photographs and makes a stack with a slice a leaf and its "
        "outline. A leaf that lies alone stays on its photograph; others are cut out, "
        "as TIFF files beside the stack. Leaves OUT_leaves.tsv, which tells where each "
        "slice lies, and a picture a photograph in OUT_overview.");
    StackOptions::declare(line);
    ContourOptions::declare(line);
    LeavesIntake::declare(line);
    line.addOption("name", "Name of the stack (that of the file).", "NAME");
    StackFile::declareReplace(line);
    line.parse(arguments, 2, -1);
    const StackOptions stackOptions(line);
    const ContourOptions contour(line);
    LeavesIntake intake(line, stackOptions, contour);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string path = line.argument(0);
    requireSuffix(path, "sdf");
    OwnFiles::requireReplaceable(path, OwnFiles::isAsWritten, line.isSet("replace"));
    intake.requireReplaceable(path, line.isSet("replace"));
    prepareFolder(folderOf(path));
    checkWritable(path);
    LMXStack stack;
    stack.setName(line.isSet("name") ? line.bytes("name") : FileInfo::baseName(path));
    RunRecord record("leaves");
    intake.fill(stack, path, photographList(line.argumentsFrom(1), report), record, report);
    writeStack(stack, path);
    intake.summarize(report);
    return report.exitStatus();
}
