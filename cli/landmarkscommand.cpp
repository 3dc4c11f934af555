#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/dataset.h"

namespace {

/// A row a vertex of every item but the contours.
DataSet landmarksOf(const Stack& stack)
{
    DataSet table;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        for (int k = 0; k < slice.getNumItems(); ++k) {
            const ModelItem& item = slice.getItem(k);
            if (!item.getModel() || item.getModel()->getName() == "Contour") {
                continue;
            }
            for (int v = 0; v < item.getSize(); ++v) {
                const int row = table.numRows();
                table.setValue<std::string>("Slice_Name", row, slice.getName());
                table.setValue<std::string>("Model", row, item.getModel()->getName());
                table.setValue("X", row, item.getVertices()[v][0]);
                table.setValue("Y", row, item.getVertices()[v][1]);
            }
        }
    }
    return table;
}

} // namespace

int runLandmarks(const QStringList& arguments, Report& report)
{
    CommandLine line("landmarks", "STACK.sdf TABLE.tsv",
                     "Writes the places of all landmarks as a table with the columns Slice_Name, "
                     "Model, X and Y, in pixels.");
    line.parse(arguments, 2, 2);
    const std::string filename = line.argument(1);
    requireSuffix(filename, "tsv");
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    StackFile file(line.argument(0), report);
    if (!landmarksOf(file.stack()).save(filename, true)) {
        throw Failure(filename + ": the table can't be written");
    }
    return report.exitStatus();
}
