#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/completeslices.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "cli/stages.h"

int runSinus(const QStringList& arguments, Report& report)
{
    CommandLine line("sinus", "STACK.sdf",
                     "Finds the apex and the sinuses of each leaf, and gives the contour its "
                     "working form. Needs contours and junctions on all slices; deletes the tips.");
    SinusOptions::declare(line);
    declareResampling(line);
    CompleteSlices::declare(line);
    StackFile::declareOutput(line);
    line.parse(arguments, 1, 1);
    const SinusOptions options(line);
    const Resampling resampling = resamplingOf(line);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string output = StackFile::outputOf(line);
    StackFile file(line.argument(0), report);
    checkWritable(output);
    {
        const CompleteSlices complete(file.stack(), GatedStage::ExtractSinus, line, report);
        requireGate(GatedStage::ExtractSinus, file.stack(), report);
        extractSinuses(file.stack(), options, resampling, report);
    }
    file.write(output);
    return report.exitStatus();
}
