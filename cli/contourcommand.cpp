#include "cli/commandline.h"
#include "cli/commands.h"
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

    StackFile file(line, report);
    checkWritable(file.output());
    extractContours(file.stack(), options, report);
    file.save();
    for (int i = 0; i < file.stack().getNumSlices(); ++i) {
        const StackSlice& slice = file.stack().getSlice(i);
        if (contourSize(slice) == 0) {
            report.fault(file.output() + ": slice " + slice.getName() +
                         ": no outline of a leaf was found");
        }
    }
    return report.exitStatus();
}
