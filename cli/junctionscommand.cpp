#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/junctiontable.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

namespace {

bool hasJunctions(const StackSlice& slice)
{
    for (int i = 0; i < slice.getNumItems(); ++i) {
        const ModelItem& item = slice.getItem(i);
        if (item.getModel() && item.getModel()->getName() == "Petiole") {
            return true;
        }
    }
    return false;
}

void placeAll(LMXStack& stack, const JunctionTable& table, Report& report)
{
    JunctionPlacing placing;
    placing.setStack(stack);
    placing.createModels();
    for (const Junctions& row : table.rows()) {
        const int slice = stack.findSlice(row.slice);
        if (slice < 0) {
            continue;
        }
        const std::string fault = junctionFault(row, stack.getSlice(slice));
        if (!fault.empty()) {
            throw Failure(table.place(row) + ": " + fault);
        }
        placing.place(row, slice);
    }
    const std::string strangers = table.strangers(stack);
    if (!strangers.empty()) {
        report.note(strangers);
    }
}

} // namespace

int runJunctions(const QStringList& arguments, Report& report)
{
    CommandLine line("junctions", "STACK.sdf TABLE.tsv",
                     "Puts the two blade-petiole junctions of a table on the slices: columns "
                     "Slice_Name, X1, Y1, X2, Y2 in pixels, parted by TAB. They replace those that "
                     "a slice has; slices without a row keep theirs.");
    StackFile::declareOutput(line);
    line.parse(arguments, 2, 2);
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    const std::string output = StackFile::outputOf(line);
    StackFile file(line.argument(0), report);
    checkWritable(output);
    const JunctionTable table(line.argument(1));
    placeAll(file.stack(), table, report);
    writeStack(file.stack(), output);
    for (int i = 0; i < file.stack().getNumSlices(); ++i) {
        const StackSlice& slice = file.stack().getSlice(i);
        if (!hasJunctions(slice)) {
            report.fault(table.path() + ": slice " + slice.getName() +
                         ": the junction table has no row for it");
        }
    }
    return report.exitStatus();
}
