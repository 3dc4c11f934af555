#include "cli/leaffolder.h"

#include "cli/commandrunner.h"
#include "image/image0.h"
#include "image/imagewriter.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

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
    leaf::Shape shape;
    shape.teethPerSide = teethPerSide;
    shape.toothHeight = 40.0;
    outlines_.push_back(leaf::draw(shape));
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
    for (const std::vector<std::string>& arguments :
         {joined({"stack", stack}, photographs), {"contour", stack}, {"junctions", stack, table}}) {
        const CommandResult result = crenara(arguments);
        if (result.status != 0) {
            throw std::runtime_error(result.err);
        }
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

std::string cellOf(const std::string& path, const std::string& name, const std::string& column)
{
    const auto table = tableOf(path);
    if (table.empty()) {
        return "no table";
    }
    const auto place = std::find(table[0].begin(), table[0].end(), column) - table[0].begin();
    for (const auto& row : table) {
        if (!row.empty() && row[0] == name && place < static_cast<long>(row.size())) {
            return row[static_cast<std::size_t>(place)];
        }
    }
    return "no cell";
}
