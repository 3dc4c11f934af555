#include "cli/leaffolder.h"

#include "cli/commandrunner.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace {

constexpr int rows = 900;
constexpr int columns = 520;

std::string text(double value)
{
    return std::to_string(std::lround(value));
}

/// The outline's point on the blade's side of a junction, a few pixels from it, so that the corner
/// between blade and stalk does not count as a sinus. `steps` lead into the blade.
leaf::Point beside(const leaf::Outline& outline, leaf::Point junction, int steps)
{
    std::size_t nearest = 0;
    for (std::size_t i = 0; i < outline.points.size(); ++i) {
        if (leaf::distance(outline.points[i], junction) <
            leaf::distance(outline.points[nearest], junction)) {
            nearest = i;
        }
    }
    return outline.points[static_cast<std::size_t>(static_cast<int>(nearest) + steps)];
}

} // namespace

std::string LeafFolder::addLeaf(const std::string& name, int teethPerSide)
{
    outlines_.push_back(leaf::draw(teethPerSide, 40.0));
    const leaf::Outline& drawn = outlines_.back();
    photographs_.push_back(file(name + ".tif"));
    const auto seed = static_cast<unsigned>(outlines_.size());
    ImageWriter().write(
        leaf::toImage(leaf::photograph(drawn, rows, columns, 190.0f, 40.0f, 6.0f, seed)),
        photographs_.back(), true);
    const leaf::Point first = beside(drawn, drawn.junctions[0], 10);
    const leaf::Point second = beside(drawn, drawn.junctions[1], -10);
    addJunctions(name, {text(first.x), text(first.y), text(second.x), text(second.y)});
    return photographs_.back();
}

std::string LeafFolder::addBlank(const std::string& name)
{
    photographs_.push_back(file(name + ".tif"));
    Image0 image(columns, rows, 8);
    image.clear();
    ImageWriter().write(image, photographs_.back(), true);
    return photographs_.back();
}

void LeafFolder::addJunctions(const std::string& name, const std::vector<std::string>& places)
{
    table_ += name;
    for (const std::string& place : places) {
        table_ += "\t" + place;
    }
    table_ += "\n";
}

std::string LeafFolder::writeJunctions(const std::string& name) const
{
    return write(name, table_);
}

std::string LeafFolder::makeStack(const std::vector<std::string>& photographs) const
{
    const std::string stack = file("s.sdf");
    const std::string table = writeJunctions("all.tsv");
    runs(joined({"stack", stack}, photographs));
    runs({"contour", stack});
    runs({"junctions", stack, table});
    return stack;
}

std::string LeafFolder::makeLandmarks(const std::vector<std::string>& photographs, bool tips) const
{
    const std::string stack = makeStack(photographs);
    runs({"sinus", stack});
    if (tips) {
        runs({"tips", stack});
    }
    return stack;
}

std::vector<std::string> joined(std::vector<std::string> first,
                                const std::vector<std::string>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::string bytesOf(const std::string& path)
{
    std::ifstream stream(path, std::ios_base::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::vector<std::string>> tableOf(const std::string& path)
{
    std::vector<std::vector<std::string>> table;
    std::istringstream stream(bytesOf(path));
    for (std::string line; std::getline(stream, line);) {
        std::istringstream fields(line);
        table.emplace_back();
        for (std::string field; std::getline(fields, field, '\t');) {
            table.back().push_back(field);
        }
    }
    return table;
}

std::vector<std::string> columnOf(const std::string& path, const std::string& column)
{
    std::vector<std::string> cells;
    const auto table = tableOf(path);
    for (std::size_t i = 0; !table.empty() && i < table[0].size(); ++i) {
        for (std::size_t row = 1; table[0][i] == column && row < table.size(); ++row) {
            cells.push_back(i < table[row].size() ? table[row][i] : "");
        }
    }
    return cells;
}

std::string cellOf(const std::string& path, const std::string& name, const std::string& column)
{
    const auto names = columnOf(path, "Slice_Name");
    const auto cells = columnOf(path, column);
    const auto row = std::find(names.begin(), names.end(), name) - names.begin();
    return row < static_cast<long>(cells.size()) ? cells[static_cast<std::size_t>(row)] : "no cell";
}
