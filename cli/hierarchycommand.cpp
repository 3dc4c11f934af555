#include "blade/hierarchy/hierarchyarabidoprocess.h"
#include "blade/hierarchy/hierarchyiterativeprocess.h"
#include "blade/hierarchy/nohierarchyprocess.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/completeslices.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "cli/stagenotes.h"
#include "cli/stages.h"

#include <iostream>

namespace {

enum Method { Recursive, Iterative, None };

const QStringList methodNames = {"recursive", "iterative", "none"};

struct HierarchyOptions
{
    explicit HierarchyOptions(const CommandLine& line)
        : method(methodOf(line))
        , limitAngle(line.integer("limit-angle", 1, 179))
        , distalTeeth(line.isSet("distal"))
        , tolerance(line.number("tolerance", 0.05, 1.0))
    {}

    static Method methodOf(const CommandLine& line)
    {
        const int method = methodNames.indexOf(QString::fromStdString(line.argument(1)));
        if (method < 0) {
            throw UsageFailure("'" + line.argument(1) +
                               "' is no method; there are recursive, iterative and none");
        }
        return static_cast<Method>(method);
    }

    static void declare(CommandLine& line)
    {
        line.addOption("limit-angle",
                       "Limit angle in degrees of the recursive method, 1 to 179; a sinus wider "
                       "than pi times that many degrees is primary.",
                       "A", "45");
        line.addFlag("distal", "The recursive method tells small teeth beside the leaf tip apart.");
        line.addOption("tolerance", "Stringency factor of the iterative method, 0.05 to 1.", "F",
                       "0.3");
    }

    Method method;
    int limitAngle;
    bool distalTeeth;
    float tolerance;
};

/// While it lives, what the processes print goes to the error stream, with the other messages.
class DivertedOutput
{
public:
    DivertedOutput()
        : former_(std::cout.rdbuf(std::cerr.rdbuf()))
    {}

    ~DivertedOutput() { std::cout.rdbuf(former_); }

    DivertedOutput(const DivertedOutput&) = delete;
    DivertedOutput& operator=(const DivertedOutput&) = delete;

private:
    std::streambuf* former_;
};

/// Throws `Failure` if the leaves fail their checks; no label is changed then.
void runProcess(ModelsManager& process, StackFile& file, Report& report)
{
    const DivertedOutput diverted;
    process.setStack(file.stack());
    process.setProgressListener([&report](int percent) {
        if (percent >= 0) {
            report.progress("hierarchy", percent, 100);
        }
    });
    process.run();
    if (!process.getLeafFaults().empty()) {
        throw Failure(file.path() + ": the leaves told above have to be corrected first; the stack "
                                    "stays as it was");
    }
}

void sortStructures(StackFile& file, const HierarchyOptions& options, Report& report)
{
    if (options.method == Recursive) {
        HierarchyArabidoProcess process;
        process.setLimitAngle(options.limitAngle);
        process.setEnableDistalTeeth(options.distalTeeth);
        runProcess(process, file, report);
        const std::size_t dropped = process.getDropped().size();
        if (dropped > 0) {
            report.note(std::to_string(dropped) +
                        (dropped == 1 ? " landmark lies" : " landmarks lie") +
                        " deeper than secondary and dropped out");
        }
    } else if (options.method == Iterative) {
        HierarchyIterativeProcess process;
        process.setTolerance(options.tolerance);
        runProcess(process, file, report);
    } else {
        NoHierarchyProcess process;
        runProcess(process, file, report);
    }
}

} // namespace

int runHierarchy(const QStringList& arguments, Report& report)
{
    CommandLine line(
        "hierarchy", "STACK.sdf none|iterative|recursive",
        "Sorts sinuses and tips into primary, secondary and distal ones, or makes all "
        "of them primary again; can be run any number of times. Needs the tips stage.");
    HierarchyOptions::declare(line);
    declareResampling(line);
    CompleteSlices::declare(line);
    StackFile::declareOutput(line);
    line.parse(arguments, 2, 2);
    const HierarchyOptions options(line);
    const Resampling resampling = resamplingOf(line);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string output = StackFile::outputOf(line);
    StackFile file(line.argument(0), report);
    checkWritable(output);
    {
        const CompleteSlices complete(file.stack(), GatedStage::Hierarchy, line, report);
        requireGate(GatedStage::Hierarchy, file.stack(), report);
        StageNotes notes(file.stack(), StageNotes::Stage::Hierarchy,
                         resampling == Resampling::Once);
        sortStructures(file, options, report);
        notes.finish();
    }
    file.write(output);
    return report.exitStatus();
}
