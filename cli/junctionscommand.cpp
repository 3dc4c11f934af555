#include "blade/landmarks/junctionproposal.h"
#include "blade/process/landmarks.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/junctiontable.h"
#include "cli/outputs.h"
#include "cli/pixelscale.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <iostream>

namespace {

void placeAll(LMXStack& stack, const JunctionTable& table, Report& report)
{
    JunctionPlacing placing;
    placing.setStack(stack);
    placing.createModels();
    bool isScaled = false;
    for (const Junctions& row : table.rows()) {
        const int slice = stack.findSlice(row.slice);
        if (slice < 0) {
            continue;
        }
        const PixelScale scale(stack.getSlice(slice));
        const JunctionPoints points = scale.toSlice(row);
        const std::string fault = junctionFault(points, stack.getSlice(slice));
        if (!fault.empty()) {
            throw Failure(table.place(row) + ": " + fault);
        }
        placing.place(points, slice);
        isScaled = isScaled || !scale.isOne();
    }
    if (isScaled) {
        report.note(table.path() + ": " + JunctionTable::scaleNote);
    }
    const std::string strangers = table.strangers(stack);
    if (!strangers.empty()) {
        report.note(strangers);
    }
}

/// Proposes junctions where the slice has none, or where `replace` says so and no table placed them.
/// Prints a line a slice that it looked at, in the form of a junction table.
void proposeAll(LMXStack& stack, const JunctionTable* table, bool replace)
{
    JunctionPlacing placing;
    placing.setStack(stack);
    placing.createModels();
    std::cout << "Slice_Name\tX1\tY1\tX2\tY2\tConfidence\n";
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        const bool drawn = table && table->find(slice.getName());
        if (drawn || (landmarkOf(slice, Landmarks::petiole) && !replace)) {
            continue;
        }
        std::cout << slice.getName();
        if (const std::optional<ProposedJunctions> points = JunctionProposal::propose(slice)) {
            const JunctionPoints inFile = PixelScale(slice).toFile(*points);
            for (int k = 0; k < 2; ++k) {
                std::cout << "\t" << inFile.x[k] << "\t" << inFile.y[k];
            }
            std::cout << "\t" << twoDecimals(points->confidence);
            placing.place(*points, i);
        } else {
            std::cout << "\tnone";
        }
        std::cout << "\n";
    }
    std::cout << std::flush;
}

std::string reasonWithout(const StackSlice& slice, bool proposed)
{
    if (!proposed) {
        return "the junction table has no row for it";
    }
    return contourOf(slice) ? "its contour has no end, so no junctions are proposed"
                            : "it has no contour, so no junctions can be proposed";
}

} // namespace

int runJunctions(const QStringList& arguments, Report& report)
{
    CommandLine line("junctions", "STACK.sdf [TABLE.tsv]",
                     "Puts the two blade-petiole junctions of a table on the slices: columns "
                     "Slice_Name, X1, Y1, X2, Y2 in pixels, parted by TAB. They replace those that "
                     "a slice has; slices without a row keep theirs. Where there is no table, or "
                     "no row, junctions can be proposed from the contour.");
    line.addFlag("propose", "Proposes junctions for slices that have a contour and lack them. "
                            "Prints what it proposes, with the confidence from 0 to 1, or none; "
                            "those below 0.5 should be looked at.");
    line.addFlag("replace", "Lets the proposals replace junctions that a slice has, and the result "
                            "another stack that crenara did not write.");
    StackFile::declareOutput(line);
    line.parse(arguments, 1, 2);
    const bool propose = line.isSet("propose");
    if (line.argumentCount() < 2 && !propose) {
        throw UsageFailure("a junction table or the option 'propose' is missing");
    }
    if (line.isSet("replace") && !propose && !line.isSet("o")) {
        throw UsageFailure("the option 'replace' goes with 'propose' or 'o'");
    }
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string output = StackFile::outputOf(line);
    StackFile file(line.argument(0), report);
    checkWritable(output);
    std::optional<JunctionTable> table;
    if (line.argumentCount() > 1) {
        table.emplace(line.argument(1));
        placeAll(file.stack(), *table, report);
    }
    if (propose) {
        checkTableNames(file.stack());
        proposeAll(file.stack(), table ? &*table : nullptr, line.isSet("replace"));
    }
    file.write(output);
    for (int i = 0; i < file.stack().getNumSlices(); ++i) {
        const StackSlice& slice = file.stack().getSlice(i);
        if (!landmarkOf(slice, Landmarks::petiole)) {
            report.fault((propose ? output : table->path()) + ": slice " + slice.getName() + ": " +
                         reasonWithout(slice, propose));
        }
    }
    return report.exitStatus();
}
