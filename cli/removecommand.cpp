#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "stack/stackslice.h"

namespace {

/// Takes the slices of these names, all of each, off the stack.
void removeSlices(LMXStack& stack, const std::vector<std::string>& names)
{
    for (const std::string& name : names) {
        for (int i = stack.findSlice(name); i >= 0; i = stack.findSlice(name)) {
            stack.deleteSlice(i);
        }
        if (stack.getLastSegmentedSlice() == name) {
            stack.setLastSegmentedSlice("");
        }
        if (stack.getLastRegisteredSlice() == name) {
            stack.setLastRegisteredSlice("");
        }
    }
}

} // namespace

int runRemove(const QStringList& arguments, Report& report)
{
    CommandLine line(
        "remove", "STACK.sdf SLICE...",
        "Takes slices off the stack, with all that is drawn on them. Their photographs "
        "stay where they are.");
    StackFile::declareOutput(line);
    line.parse(arguments, 2, -1);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string output = StackFile::outputOf(line);
    const std::vector<std::string> names = line.argumentsFrom(1);
    StackFile file(line.argument(0), report);
    checkWritable(output);
    for (const std::string& name : names) {
        if (file.stack().findSlice(name) < 0) {
            throw Failure(file.path() + ": the stack has no slice " + name +
                          "; the stack stays as it was");
        }
    }
    removeSlices(file.stack(), names);
    if (file.stack().getNumSlices() == 0) {
        throw Failure(file.path() + ": no slice would be left; the stack stays as it was");
    }
    file.write(output);
    return report.exitStatus();
}
