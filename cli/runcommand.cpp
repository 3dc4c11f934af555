#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/junctiontable.h"
#include "cli/measures.h"
#include "cli/outputs.h"
#include "cli/projectoptions.h"
#include "cli/report.h"
#include "cli/runrecord.h"
#include "cli/stackfile.h"
#include "cli/stackoptions.h"
#include "cli/stages.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <QDir>

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
        , photographs(line.argumentsFrom(0))
        , junctions(line.required("junctions"))
        , target{line.required("out"), ""}
    {
        name = line.isSet("name") ? line.required("name")
                                  : QDir::cleanPath(QDir(line.text("out")).absolutePath())
                                        .section('/', -1)
                                        .toStdString();
        target.prefix = line.isSet("prefix") ? line.required("prefix") : name;
    }

    std::string stackPath() const { return target.folder + "/" + name + ".sdf"; }

    StackOptions stack;
    ContourOptions contour;
    SinusOptions sinus;
    TipsOptions tips;
    ProjectOptions project;
    std::vector<std::string> photographs;
    std::string junctions;
    MeasureTarget target;
    std::string name;
};

void declare(CommandLine& line)
{
    line.addOption("out", "Folder of the results.", "DIR");
    line.addOption("junctions", "Table of the blade-petiole junctions.", "TABLE.tsv");
    line.addOption("name", "Name of the stack and its file (that of the folder).", "NAME");
    line.addOption("prefix", "Begin of the tables' names (the name).", "PREFIX");
    StackOptions::declare(line);
    ContourOptions::declare(line);
    SinusOptions::declare(line);
    TipsOptions::declare(line);
    ProjectOptions::declareVenation(line);
    ProjectOptions::declareGrowth(line);
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

void recordInputs(RunRecord& record, const Plan& plan)
{
    for (const std::string& photograph : plan.photographs) {
        record.addInput(photograph);
    }
    record.addInput(plan.junctions);
    if (!plan.project.path.empty()) {
        record.addInput(plan.project.path);
    }
}

/// Takes an outline that is too small for the later stages off the slice.
void dropContour(StackSlice& slice)
{
    for (int i = slice.getNumItems() - 1; i >= 0; --i) {
        if (slice.getItem(i).getModel()->getName() == "Contour") {
            delete &slice.getItem(i);
        }
    }
}

/// Puts the junctions on the slices that have a contour. A slice that the later stages can't work on
/// is told and noted in the record.
void placeJunctions(LMXStack& stack, const JunctionTable& table, RunRecord& record, Report& report)
{
    constexpr int leastContour = 5;
    JunctionPlacing placing;
    placing.setStack(stack);
    placing.createModels();
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        StackSlice& slice = stack.getSlice(i);
        const std::string& name = slice.getName();
        const Junctions* row = table.find(name);
        std::string place = imageFiles(slice).front() + ": slice " + name;
        std::string reason;
        if (contourSize(slice) < leastContour) {
            dropContour(slice);
            reason = "no outline of a leaf was found";
        } else if (!row) {
            place = table.path() + ": slice " + name;
            reason = "the junction table has no row for it";
        } else {
            place = table.place(*row);
            reason = junctionFault(*row, slice);
        }
        if (reason.empty()) {
            placing.place(*row, i);
        } else {
            report.fault(place + ": " + reason + "; the slice is left out");
            record.addLeftOut(name, reason);
        }
    }
    const std::string strangers = table.strangers(stack);
    if (!strangers.empty()) {
        report.note(strangers);
    }
}

} // namespace

int runRun(const QStringList& arguments, Report& report)
{
    CommandLine line("run", "--out DIR --junctions TABLE.tsv IMAGE...",
                     "Does the whole work on photographs: stack, contours, junctions, apex and "
                     "sinuses, tips, measures. Leaves the stack DIR/NAME.sdf, the two tables and "
                     "their record. Slices that can't be worked on stay in the stack and are left "
                     "out of the tables; the exit status is 1 then.");
    declare(line);
    line.parse(arguments, 1, -1);
    const Plan plan(line, report);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }
    if (plan.name.find('/') != std::string::npos || plan.name.empty()) {
        throw UsageFailure("'" + plan.name + "' can't be the name of a stack");
    }
    checkPrefix(plan.target);

    prepareTarget(plan.target);
    checkWritable(plan.stackPath());
    const JunctionTable table(plan.junctions);
    RunRecord record = beginRecord(plan);
    LMXStack stack;
    stack.setName(plan.name);
    buildStack(stack, plan.stackPath(), plan.photographs, plan.stack, report);
    recordInputs(record, plan);
    checkStorable(stack, plan.stackPath());
    extractContours(stack, plan.contour, report);
    placeJunctions(stack, table, record, report);
    extractSinuses(stack, plan.sinus, report);
    extractTips(stack, plan.tips, plan.project.config.getVenationType(), report);
    writeStack(stack, plan.stackPath());
    measureLeaves(stack, plan.target, plan.project.config, record, report);
    return report.exitStatus();
}
