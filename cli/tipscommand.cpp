#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/completeslices.h"
#include "cli/outputs.h"
#include "cli/projectoptions.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "cli/stages.h"

int runTips(const QStringList& arguments, Report& report)
{
    CommandLine line("tips", "STACK.sdf",
                     "Finds the tip of each tooth between two sinuses. Needs the sinus stage.");
    TipsOptions::declare(line);
    declareResampling(line);
    ProjectOptions::declareVenation(line);
    CompleteSlices::declare(line);
    StackFile::declareOutput(line);
    line.parse(arguments, 1, 1);
    const TipsOptions options(line);
    const Resampling resampling = resamplingOf(line);
    const ProjectOptions project(line, report);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string output = StackFile::outputOf(line);
    StackFile file(line.argument(0), report);
    checkWritable(output);
    {
        const CompleteSlices complete(file.stack(), GatedStage::ExtractPeaks, line, report);
        requireGate(GatedStage::ExtractPeaks, file.stack(), report);
        extractTips(file.stack(), options, project.config.getVenationType(), resampling, report);
    }
    file.write(output);
    return report.exitStatus();
}
