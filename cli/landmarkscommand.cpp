#include "blade/process/landmarks.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/dataset.h"

#include <vector>

namespace {

/// A row a vertex of every item but the contours.
DataSet landmarksOf(const Stack& stack)
{
    std::vector<std::string> slices;
    std::vector<std::string> models;
    std::vector<int> places[2];
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        for (int k = 0; k < slice.getNumItems(); ++k) {
            const ModelItem& item = slice.getItem(k);
            if (!item.getModel() || item.getModel()->getName() == Landmarks::contour) {
                continue;
            }
            for (int v = 0; v < item.getSize(); ++v) {
                slices.push_back(slice.getName());
                models.push_back(item.getModel()->getName());
                for (int axis = 0; axis < 2; ++axis) {
                    places[axis].push_back(item.getVertices()[v][axis]);
                }
            }
        }
    }
    DataSet table;
    // The header stands also without rows.
    for (const char* column : {"Slice_Name", "Model"}) {
        table.getValue<std::string>(column, 0);
    }
    for (const char* column : {"X", "Y"}) {
        table.getValue<int>(column, 0);
    }
    table.setValues("Slice_Name", Vector<std::string>(slices));
    table.setValues("Model", Vector<std::string>(models));
    table.setValues("X", Vector<int>(places[0]));
    table.setValues("Y", Vector<int>(places[1]));
    return table;
}

} // namespace

int runLandmarks(const QStringList& arguments, Report& report)
{
    CommandLine line("landmarks", "STACK.sdf TABLE.tsv",
                     "Writes the places of all landmarks as a table with the columns Slice_Name, "
                     "Model, X and Y, in pixels.");
    StackFile::declareReplace(line);
    line.parse(arguments, 2, 2);
    const std::string filename = line.argument(1);
    requireSuffix(filename, "tsv");
    OwnFiles::requireReplaceable(filename, OwnFiles::isLandmarkTable, line.isSet("replace"));
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    StackFile file(line.argument(0), report);
    checkTableNames(file.stack());
    if (!landmarksOf(file.stack()).save(filename, true)) {
        throw Failure(filename + ": the table can't be written");
    }
    return report.exitStatus();
}
