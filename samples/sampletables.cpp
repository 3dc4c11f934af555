#include "samples/sampletables.h"

#include "samples/labelcomparison.h"
#include "system/exception.h"

#include <cmath>

namespace {

int pixel(double position)
{
    return static_cast<int>(std::floor(position));
}

void addLabels(DataSet& labels, const LeafPlan& plan, const LeafOutline& leaf)
{
    for (const TrueLandmark& landmark : leaf.landmarks) {
        const int row = labels.numRows();
        labels.setValue<std::string>("Slice_Name", row, plan.name);
        labels.setValue<std::string>("Structure", row, structureName(landmark.structure));
        labels.setValue<std::string>("Class", row, className(landmark.label));
        labels.setValue("X", row, pixel(landmark.place.x));
        labels.setValue("Y", row, pixel(landmark.place.y));
    }
}

void saveTable(const DataSet& table, const std::string& filename)
{
    if (!table.save(filename, true)) {
        raiseFile<FileWriteError>("void SampleTables::save(const string&)",
                                  "The file can't be written", filename);
    }
}

} // namespace

void SampleTables::add(const LeafPlan& plan, const LeafOutline& leaf)
{
    const int row = truth_.numRows();
    const bool palmate = plan.kind == LeafKind::Palmate;
    junctions_.setValue<std::string>("Slice_Name", row, plan.name);
    junctions_.setValue("X1", row, pixel(leaf.leftJunction.x));
    junctions_.setValue("Y1", row, pixel(leaf.leftJunction.y));
    junctions_.setValue("X2", row, pixel(leaf.rightJunction.x));
    junctions_.setValue("Y2", row, pixel(leaf.rightJunction.y));

    truth_.setValue<std::string>("Slice_Name", row, plan.name);
    truth_.setValue<std::string>("Kind", row, kindName(plan.kind));
    truth_.setValue<std::string>("Venation", row, palmate ? "palmate" : "pinnate");
    truth_.setValue("Upper_Teeth", row, plan.upperTeeth);
    truth_.setValue("Lower_Teeth", row, plan.lowerTeeth);
    truth_.setValue("Terminal_Teeth", row, palmate ? 1 : 0);
    truth_.setValue("Small_Teeth", row, plan.smallTeeth);
    truth_.setValue<std::string>("Background", row, plan.lightBackground ? "light" : "dark");
    truth_.setValue<std::string>("Colour", row, plan.colour ? "rgb" : "grey");
    truth_.setValue("Apex_X", row, pixel(leaf.apex.x));
    truth_.setValue("Apex_Y", row, pixel(leaf.apex.y));
    truth_.setValue("Blade_Length", row,
                    length(leaf.apex - (leaf.leftJunction + leaf.rightJunction) * 0.5));
    truth_.setValue("Blade_Area", row, leaf.bladeArea);
    addLabels(labels_, plan, leaf);
}

void SampleTables::save(const std::string& folder) const
{
    saveTable(junctions_, folder + "/junctions.tsv");
    saveTable(truth_, folder + "/truth.tsv");
    saveTable(labels_, folder + "/labels.tsv");
}
