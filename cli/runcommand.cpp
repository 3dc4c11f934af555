#include "blade/landmarks/junctionproposal.h"
#include "blade/process/landmarks.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/junctiontable.h"
#include "cli/leavesintake.h"
#include "cli/measures.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/photographlist.h"
#include "cli/pixelscale.h"
#include "cli/projectoptions.h"
#include "cli/report.h"
#include "cli/runrecord.h"
#include "cli/stackfile.h"
#include "cli/stackoptions.h"
#include "cli/stages.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/fileinfo.h"

#include <QDir>
#include <QJsonObject>

#include <algorithm>
#include <optional>

namespace {

/// All that the command line says.
struct Plan
{
    Plan(const CommandLine& line, Report& report)
        : stack(line)
        , contour(line)
        , sinus(line)
        , tips(line)
        , project(line, report)
        , arguments(line.argumentsFrom(0))
        , asIs(line.isSet("as-is"))
        , proposes(line.isSet("propose-junctions") || !asIs)
        , junctions(proposes ? line.bytes("junctions") : line.required("junctions"))
        , target{line.required("out"), ""}
    {
        name = line.isSet("name") ? line.required("name")
                                  : QDir::cleanPath(QDir(line.text("out")).absolutePath())
                                        .section('/', -1)
                                        .toStdString();
        if (!asIs && !line.isSet("half-neighbourhood")) {
            sinus.halfNeighbourhood = 0;
        }
        target.prefix = line.isSet("prefix") ? line.required("prefix") : name;
    }

    /// Takes over what the settings say of single leaves.
    void apply(const LeafTable& settings)
    {
        for (const LeafRow& row : settings.rows()) {
            const bool palmate = project.config.getVenationType() == PALMATE;
            if (!row.venation.empty() && (row.venation == "palmate") != palmate) {
                throw UsageFailure(settings.path() + ": slice " + row.slice + " is " +
                                   row.venation +
                                   ", but a run takes one venation; see the option "
                                   "'venation'");
            }
            if (row.halfNeighbourhood) {
                sinus.halfNeighbourhoodOf[row.slice] = *row.halfNeighbourhood;
            }
        }
    }

    std::string stackPath() const { return target.folder + "/" + name + ".sdf"; }

    StackOptions stack;
    ContourOptions contour;
    SinusOptions sinus;
    TipsOptions tips;
    ProjectOptions project;
    std::vector<std::string> arguments;
    bool asIs; ///< every photograph is a slice
    bool proposes;
    std::string junctions; ///< empty without a table
    MeasureTarget target;
    std::string name;
};

void declare(CommandLine& line)
{
    line.addOption("out", "Folder of the results.", "DIR");
    line.addOption("junctions", "Table of the blade-petiole junctions.", "TABLE.tsv");
    line.addFlag("as-is", "Takes each photograph as one slice and the options as they stand, in "
                          "place of finding the leaves. Needs a junction table or "
                          "'propose-junctions'.");
    line.addFlag("propose-junctions", "Proposes junctions, from the contour, for slices that the "
                                      "table has no row for. The table may be left out. Without "
                                      "'as-is' this is so anyway.");
    line.addOption("name", "Name of the stack and its file (that of the folder).", "NAME");
    line.addOption("prefix", "Begin of the tables' names (the name).", "PREFIX");
    StackOptions::declare(line);
    ContourOptions::declare(line);
    SinusOptions::declare(line);
    TipsOptions::declare(line);
    LeavesIntake::declare(line);
    ProjectOptions::declareVenation(line);
    ProjectOptions::declareGrowth(line);
    StackFile::declareReplace(line);
}

RunRecord beginRecord(const Plan& plan)
{
    RunRecord record("run");
    record.addParameters("stack", plan.stack.toJson());
    record.addParameters("contour", plan.contour.toJson());
    record.addParameters("sinus", plan.sinus.toJson());
    record.addParameters("tips", plan.tips.toJson());
    record.setProject(plan.project.toJson());
    return record;
}

/// The photographs that the stack was made of, and what could not be taken.
void recordPhotographs(RunRecord& record,
                       const Plan& plan,
                       const std::vector<StackBuilder::Refusal>& refused)
{
    const auto tiles = static_cast<std::size_t>(plan.stack.rows * plan.stack.columns);
    for (std::size_t i = 0; i < plan.arguments.size(); ++i) {
        const std::string& first = plan.arguments[i - i % tiles];
        const auto isIt = [&](const auto& refusal) { return refusal.photograph == first; };
        const auto found = std::find_if(refused.begin(), refused.end(), isIt);
        if (found == refused.end()) {
            record.addInput(plan.arguments[i]);
        } else if (i % tiles == 0) {
            record.addLeftOut(FileInfo::baseName(first), found->reason);
        }
    }
}

void recordTables(RunRecord& record, const Plan& plan, const LeafTable* settings)
{
    if (settings) {
        record.addInput(settings->path());
    }
    if (!plan.junctions.empty()) {
        record.addInput(plan.junctions);
    }
    if (!plan.project.path.empty()) {
        record.addInput(plan.project.path);
    }
}

/// Takes an outline that is too small for the later stages off the slice.
void dropContour(StackSlice& slice)
{
    for (int i = slice.getNumItems() - 1; i >= 0; --i) {
        if (slice.getItem(i).getModel()->getName() == Landmarks::contour) {
            delete &slice.getItem(i);
        }
    }
}

/// Where the junctions of a slice are, or why the later stages can't work on it.
struct Placement
{
    std::optional<JunctionPoints> points;
    std::optional<ProposedJunctions> proposed; ///< in the place of `points`
    std::string fault;
    std::string place;     ///< of the fault
    bool isScaled = false; ///< to the slice's square pixels
};

Placement placementOf(StackSlice& slice, const JunctionTable* table, bool proposes)
{
    constexpr int leastContour = 5;
    const std::string named = ": slice " + slice.getName();
    Placement result;
    result.place = imageFiles(slice).front() + named;
    if (contourSize(slice) < leastContour) {
        dropContour(slice);
        result.fault = "no outline of a leaf was found";
        return result;
    }
    if (const Junctions* row = table ? table->find(slice.getName()) : nullptr) {
        const PixelScale scale(slice);
        result.points = scale.toSlice(*row);
        result.place = table->place(*row);
        result.fault = junctionFault(*result.points, slice);
        result.isScaled = !scale.isOne();
        return result;
    }
    if (proposes) {
        result.proposed = JunctionProposal::propose(slice);
        result.fault = result.proposed ? "" : "no end was found to propose junctions at";
        return result;
    }
    result.place = table->path() + named;
    result.fault = "the junction table has no row for it";
    return result;
}

/// Puts the junctions on the slices that have a contour. A slice that the later stages can't work on
/// is told and noted in the record, and so is one whose junctions are proposed.
void placeJunctions(
    LMXStack& stack, const JunctionTable* table, bool proposes, RunRecord& record, Report& report)
{
    JunctionPlacing placing;
    placing.setStack(stack);
    placing.createModels();
    QJsonObject confidences;
    bool isScaled = false;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        StackSlice& slice = stack.getSlice(i);
        if (record.isLeftOut(slice.getName())) {
            dropContour(slice);
            continue;
        }
        const Placement placement = placementOf(slice, table, proposes);
        if (!placement.fault.empty()) {
            report.fault(placement.place + ": " + placement.fault + "; the slice is left out");
            record.addLeftOut(slice.getName(), placement.fault);
            continue;
        }
        isScaled = isScaled || placement.isScaled;
        if (placement.proposed) {
            placing.place(*placement.proposed, i);
            const std::string confidence = twoDecimals(placement.proposed->confidence);
            confidences[QString::fromStdString(slice.getName())] =
                QString::fromStdString(confidence).toDouble();
            const bool low = placement.proposed->confidence < ProposedJunctions::low;
            report.note(placement.place + ": its junctions are proposed from the contour" +
                        (low ? "; look at them, the confidence is " + confidence : ""));
        } else {
            placing.place(*placement.points, i);
        }
    }
    if (isScaled) {
        report.note(table->path() + ": " + JunctionTable::scaleNote);
    }
    if (proposes) {
        record.addParameters("junctions", {{"proposed with confidence", confidences}});
    }
    const std::string strangers = table ? table->strangers(stack) : "";
    if (!strangers.empty()) {
        report.note(strangers);
    }
}

} // namespace

int runRun(const QStringList& arguments, Report& report)
{
    CommandLine line(
        "run", "--out DIR PHOTOGRAPH|FOLDER...",
        "Does the whole work on photographs: finds the leaves on them, makes a stack "
        "with a slice a leaf, finds contours, junctions, apex and sinuses, tips, and "
        "measures. Leaves the stack DIR/NAME.sdf, the two tables and their record, the "
        "table of leaves and a picture a photograph of what was found. Options given "
        "hold for what they name, the rest is found. What can't be worked on is named "
        "and left out of the tables; the exit status is 1 then.");
    declare(line);
    line.parse(arguments, 1, -1);
    Plan plan(line, report);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }
    if (plan.name.find('/') != std::string::npos || plan.name.empty()) {
        throw UsageFailure("'" + plan.name + "' can't be the name of a stack");
    }
    checkPrefix(plan.target);

    OwnFiles::requireReplaceable(plan.stackPath(), OwnFiles::isAsWritten, line.isSet("replace"));
    prepareTarget(plan.target, line.isSet("replace"));
    checkWritable(plan.stackPath());
    std::optional<JunctionTable> table;
    if (!plan.junctions.empty()) {
        table.emplace(plan.junctions);
    }
    std::optional<LeavesIntake> intake;
    if (plan.asIs && (line.isSet("marker") || line.isSet("ruler"))) {
        throw UsageFailure("the options 'marker' and 'ruler' don't go with 'as-is'");
    }
    if (!plan.asIs) {
        intake.emplace(line, plan.stack, plan.contour);
        intake->requireReplaceable(plan.stackPath(), line.isSet("replace"));
        if (intake->settings()) {
            plan.apply(*intake->settings());
        }
    }
    RunRecord record = beginRecord(plan);
    LMXStack stack;
    stack.setName(plan.name);
    if (intake) {
        const std::vector<std::string> photographs = photographList(plan.arguments, report);
        intake->fill(stack, plan.stackPath(), photographs, record, report);
        recordTables(record, plan, intake->settings());
        checkStorable(stack, plan.stackPath());
    } else {
        recordPhotographs(record, plan,
                          buildStack(stack, plan.stackPath(), plan.arguments, plan.stack, report));
        recordTables(record, plan, nullptr);
        checkStorable(stack, plan.stackPath());
        for (const auto& [slice, reason] : extractContours(stack, plan.contour, report)) {
            record.addLeftOut(slice, reason);
        }
    }
    placeJunctions(stack, table ? &*table : nullptr, plan.proposes, record, report);
    extractSinuses(stack, plan.sinus, Resampling::Once, report);
    if (plan.sinus.halfNeighbourhood == 0 || !plan.sinus.halfNeighbourhoodOf.empty()) {
        record.addParameters("half-neighbourhoods", halfNeighbourhoods(stack));
    }
    extractTips(stack, plan.tips, plan.project.config.getVenationType(), Resampling::Once, report);
    writeStack(stack, plan.stackPath());
    record.setStack(plan.stackPath());
    measureLeaves(stack, plan.target, plan.project.config, record, report);
    if (intake) {
        intake->summarize(report);
    }
    return report.exitStatus();
}
