#include "host/results/measuretables.h"

#include "blade/geometry/measureunit.h"
#include "blade/measures/leafanalysis.h"
#include "blade/project/projectconfig.h"
#include "interface/lmxstack.h"
#include "interface/stackbuilder.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/fileinfo.h"

namespace {

const std::string nameColumn = "Slice_Name";

std::vector<std::string> slicesWithoutPixelSize(const LMXStack& stack)
{
    std::vector<std::string> names;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        if (!StackBuilder::hasPixelSize(stack.getSlice(i))) {
            names.push_back(stack.getSlice(i).getName());
        }
    }
    return names;
}

} // namespace

void MeasureTables::measure(LMXStack& stack, const ProjectConfig& project)
{
    LeafAnalysis analysis;
    analysis.setVenationType(project.getVenationType());
    analysis.setGrowth(project.getGrowth());
    analysis.setStack(stack);
    Part leaves;
    Part teeth;
    std::vector<std::string> leftOut;
    for (int slice = 0; slice < stack.getNumSlices(); ++slice) {
        analysis.process(slice);
        const auto numLeaves = static_cast<std::size_t>(analysis.getLeafTable().numRows());
        if (numLeaves == leaves.slices.size()) {
            leftOut.push_back(stack.getSlice(slice).getName());
        }
        leaves.slices.resize(numLeaves, slice);
        teeth.slices.resize(static_cast<std::size_t>(analysis.getPeakTable().numRows()), slice);
    }
    leaves.table = analysis.getLeafTable();
    teeth.table = analysis.getPeakTable();
    leaves_ = std::move(leaves);
    teeth_ = std::move(teeth);
    leftOut_ = std::move(leftOut);
    lengthUnit_ = lengthUnitOf(stack);
    inPixels_ = slicesWithoutPixelSize(stack);
    if (static_cast<int>(inPixels_.size()) == stack.getNumSlices()) {
        inPixels_.clear();
    }
}

MeasureTables::Kind MeasureTables::load(const std::string& filename)
{
    DataSet table(filename);
    if (table.column(nameColumn) < 0) {
        raiseFile<FileFormatError>("Kind MeasureTables::load(const string&)",
                                   "The file is no table of measures", filename);
    }
    const Kind kind = table.column("Tooth_Position") < 0 ? Kind::Leaves : Kind::Teeth;
    Part& read = kind == Kind::Leaves ? leaves_ : teeth_;
    read.table.swap(table);
    read.slices.clear();
    leftOut_.clear();
    inPixels_.clear();
    lengthUnit_.clear();
    return kind;
}

void MeasureTables::clear()
{
    *this = MeasureTables();
}

int MeasureTables::slice(Kind kind, int row, const LMXStack& stack) const
{
    const Part& shown = part(kind);
    if (row < 0 || row >= shown.table.numRows()) {
        return -1;
    }
    const int column = shown.table.column(nameColumn);
    if (shown.table.columnType(column) != "%s") {
        return -1;
    }
    const std::string name = shown.table.getValues<std::string>(nameColumn)[row];
    // Names may repeat, so that the slice measured comes first; it may have moved since.
    if (!shown.slices.empty()) {
        const int measured = shown.slices[static_cast<std::size_t>(row)];
        if (measured < stack.getNumSlices() && stack.getSlice(measured).getName() == name) {
            return measured;
        }
    }
    return stack.findSlice(name);
}

std::string MeasureTables::usualPath(Kind kind, const LMXStack& stack)
{
    const std::string& file = stack.getFilename();
    LeafAnalysis analysis;
    const std::string folder = FileInfo::dirName(file);
    analysis.setOutputPath(QString::fromStdString(folder.empty() ? "." : folder));
    analysis.setPrefix(
        QString::fromStdString(file.empty() ? stack.getName() : FileInfo::baseName(file)));
    return kind == Kind::Leaves ? analysis.leafTablePath() : analysis.peakTablePath();
}
