#include "blade/averages/averagingprocess.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/completeslices.h"
#include "cli/failure.h"
#include "cli/ownfiles.h"
#include "cli/projectoptions.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "cli/stages.h"

#include <limits>

namespace {

enum Method { Bins, Sliding };

const QStringList methodNames = {"bins", "sliding"};
const QStringList alignmentNames = {"text", "axis"};

// Sliding averages without targets of the user's own need more slices than this.
constexpr int tooFewSlices = 3;

void declare(CommandLine& line)
{
    line.addOption("out", "Folder of the averages.", "DIR");
    line.addOption("number", "Number of averages, 1 to 5000.", "N", "100");
    line.addOption("begin", "Least blade length, or age, that takes part (that of the leaves).",
                   "B");
    line.addOption("end", "Greatest one (that of the leaves).", "E");
    line.addOption("points", "Points of an average, 100 to 10000.", "N", "1000");
    line.addFlag("sinuses", "Primary sinuses correspond.");
    line.addFlag("peaks", "Primary tips correspond.");
    line.addFlag("no-symmetry", "Keep the averages as they are, not symmetric.");
    line.addOption("min-tooth-height",
                   "Teeth of averages up to this height, in the stack's unit, get no landmarks.",
                   "H", "5");
    line.addOption("limits", "Limits of the bins, one a line, in place of number and range.",
                   "FILE");
    line.addOption("targets", "Lengths or ages of the sliding averages, one a line.", "FILE");
    line.addOption("align",
                   "Turn of the axis of a leaf: text (its sine is never negative: a leaf whose "
                   "axis rises ends at twice its tilt) or axis (onto the common axis).",
                   "HOW", "text");
    line.addFlag("kinetic", "By age, not by blade length (as the project says, else by length).");
    ProjectOptions::declareVenation(line);
    ProjectOptions::declareGrowth(line);
    CompleteSlices::declare(line);
    StackFile::declareReplace(line);
}

Method methodOf(const CommandLine& line)
{
    const int method = methodNames.indexOf(QString::fromStdString(line.argument(1)));
    if (method < 0) {
        throw UsageFailure("'" + line.argument(1) +
                           "' is no method: " + methodNames.join(" or ").toStdString());
    }
    if (line.isSet("limits") && method == Sliding) {
        throw UsageFailure("'--limits' goes with the bins, '--targets' with sliding averages");
    }
    if (line.isSet("targets") && method == Bins) {
        throw UsageFailure("'--targets' goes with sliding averages, '--limits' with the bins");
    }
    return static_cast<Method>(method);
}

void configure(AveragingProcess& process, const CommandLine& line, const ProjectConfig& project)
{
    process.setVenationType(project.getVenationType());
    process.setGrowth(project.getGrowth());
    process.setKineticParameters(line.isSet("kinetic") || project.kineticIsEnabled());
    process.setSymmetrizationState(!line.isSet("no-symmetry"));
    process.sinusIsEnabled(line.isSet("sinuses"));
    process.peakIsEnabled(line.isSet("peaks"));
    process.setAveragesNumber(line.integer("number", 1, 5000));
    process.setResamplingPointsNumber(line.integer("points", 100, 10000));
    process.setMinimaToothHeight(line.number("min-tooth-height", 0.0, 1e6));
    process.setAlignment(line.choice("align", alignmentNames) == 0 ? AxisAlignment::PositiveSine
                                                                   : AxisAlignment::SignedSine);
    process.setInputFileName(line.isSet("limits") ? line.required("limits") : "");
    process.setkOptimaFile(line.isSet("targets") ? line.required("targets") : "");
    process.setOutPath(line.required("out") + "/");
}

/// The range of the options, else that of the leaves.
void setRange(AveragingProcess& process, const CommandLine& line)
{
    float begin = 0.0f;
    float end = 0.0f;
    if (!process.keyRange(begin, end)) {
        throw Failure(line.argument(0) + ": no age follows from the length of any leaf");
    }
    const double most = static_cast<double>(std::numeric_limits<float>::max());
    process.setBegin(line.isSet("begin") ? line.number("begin", -most, most) : begin);
    process.setEnd(line.isSet("end") ? line.number("end", -most, most) : end);
    process.setSteps((process.getEnd() - process.getBegin()) /
                     static_cast<float>(process.getAveragesNumber()));
}

void average(AveragingProcess& process, const LMXStack& stack, Method method, bool hasTargets)
{
    if (method == Bins) {
        process.runHomogeousAveragingMethod();
        return;
    }
    if (!hasTargets) {
        if (stack.getNumSlices() <= tooFewSlices) {
            throw Failure("Average aborted \n insufficient number of leaves");
        }
        process.setkOptima(process.computeOptimaKnn());
    }
    process.runSlidingAveragingMethod();
}

} // namespace

int runAverage(const QStringList& arguments, Report& report)
{
    CommandLine line(
        "average", "STACK.sdf bins|sliding --out DIR",
        "Averages the shapes of the leaves, by bins of blade length or age or by a "
        "sliding mean along it. Writes each average as a curve file, a blank image and "
        "a slice of the stack NAME-trajectory.sdf. Needs the sinus stage.");
    declare(line);
    line.parse(arguments, 2, 2);
    const Method method = methodOf(line);
    const ProjectOptions project(line, report);
    AveragingProcess process;
    configure(process, line, project.config);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    StackFile file(line.argument(0), report);
    const CompleteSlices complete(file.stack(), GatedStage::Averaging, line, report);
    requireGate(GatedStage::Averaging, file.stack(), report);
    const std::string trajectory =
        line.required("out") + "/" + file.stack().getName() + "-trajectory.sdf";
    OwnFiles::requireReplaceable(trajectory, OwnFiles::isAsWritten, line.isSet("replace"));
    process.setStack(file.stack());
    process.setProgressListener([&report](int percent) {
        if (percent >= 0) {
            report.progress("average", percent, 100);
        }
    });
    Matrix<float> measures;
    process.initializationMeasure(measures);
    process.setMeasurement(measures);
    setRange(process, line);
    average(process, file.stack(), method, line.isSet("targets"));
    OwnFiles::noteWritten(trajectory, true);
    return report.exitStatus();
}
