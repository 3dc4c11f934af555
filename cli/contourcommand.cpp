#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "cli/stages.h"
#include "stack/stackslice.h"

int runContour(const QStringList& arguments, Report& report)
{
    CommandLine line("contour", "STACK.sdf",
                     "Finds the outline of the leaf on each slice. Deletes the contours and the "
                     "junctions that the stack has.");
    ContourOptions::declare(line);
    StackFile::declareOutput(line);
    line.parse(arguments, 1, 1);
    const ContourOptions options(line);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string output = StackFile::outputOf(line);
    StackFile file(line.argument(0), report);
    checkWritable(output);
    if (!extractContours(file.stack(), options, report).empty()) {
        throw Failure(file.path() +
                      ": the slices told above have no contour; the stack stays as it "
                      "was");
    }
    file.write(output);
    for (int i = 0; i < file.stack().getNumSlices(); ++i) {
        const StackSlice& slice = file.stack().getSlice(i);
        if (contourSize(slice) == 0) {
            report.fault(output + ": slice " + slice.getName() +
                         ": no outline of a leaf was found");
        }
    }
    return report.exitStatus();
}
