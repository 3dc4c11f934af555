#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "cli/stackoptions.h"
#include "system/fileinfo.h"

int runStack(const QStringList& arguments, Report& report)
{
    CommandLine line("stack", "OUT.sdf IMAGE...",
                     "Makes a stack of images: a slice per photograph in the order given, named "
                     "after its file, and a slice per page or plane of a file that has several. "
                     "TIFF, IMG and VM files are used where they lie; PNG, JPEG, LSM, HDF5 and "
                     "BigTIFF files, and TIFF files of numbers that a slice can't show, are "
                     "converted to TIFF beside the stack.");
    StackOptions::declare(line);
    StackFile::declareReplace(line);
    line.addOption("name", "Name of the stack (that of the file).", "NAME");
    line.parse(arguments, 2, -1);
    const StackOptions options(line);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string path = line.argument(0);
    requireSuffix(path, "sdf");
    OwnFiles::requireReplaceable(path, OwnFiles::isAsWritten, line.isSet("replace"));
    prepareFolder(folderOf(path));
    checkWritable(path);
    LMXStack stack;
    stack.setName(line.isSet("name") ? line.bytes("name") : FileInfo::baseName(path));
    buildStack(stack, path, line.argumentsFrom(1), options, report);
    writeStack(stack, path);
    return report.exitStatus();
}
