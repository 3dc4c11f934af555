#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "cli/stackoptions.h"
#include "system/fileinfo.h"

int runStack(const QStringList& arguments, Report& report)
{
    CommandLine line("stack", "OUT.sdf IMAGE...",
                     "Makes a stack of photographs: a slice per image in the order given, named "
                     "after its file. TIFF files are used where they lie; PNG and JPEG photographs "
                     "are converted to TIFF beside the stack.");
    StackOptions::declare(line);
    line.addOption("name", "Name of the stack (that of the file).", "NAME");
    line.parse(arguments, 2, -1);
    const StackOptions options(line);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string path = line.argument(0);
    requireSuffix(path, "sdf");
    prepareFolder(folderOf(path));
    checkWritable(path);
    LMXStack stack;
    stack.setName(line.isSet("name") ? line.bytes("name") : FileInfo::baseName(path));
    buildStack(stack, path, line.argumentsFrom(1), options, report);
    writeStack(stack, path);
    return report.exitStatus();
}
