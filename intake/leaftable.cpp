#include "intake/leaftable.h"

#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <sstream>

namespace {

const char* const readWhere = "LeafTable::LeafTable(const string&)";
const char* const writeWhere = "void LeafTable::write(const string&) const";

enum Column {
    SliceName,
    PhotographName,
    X,
    Y,
    Width,
    Height,
    Background,
    Channel,
    Overlap,
    Contrast,
    Edge,
    ScaleSource,
    PixelWidth,
    Venation,
    HalfNeighbourhood,
    columnNumber
};

constexpr std::array<const char*, columnNumber> columnNames = {
    "Slice_Name", "Photograph",   "X",           "Y",        "Width",
    "Height",     "Background",   "Channel",     "Overlap",  "Contrast",
    "Edge",       "Scale_Source", "Pixel_Width", "Venation", "Half_Neighbourhood"};

std::string trimmed(std::string text)
{
    text.erase(text.find_last_not_of(" \r") + 1);
    text.erase(0, std::min(text.size(), text.find_first_not_of(' ')));
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
    }
    return text;
}

std::vector<std::string> fieldsOf(const std::string& text)
{
    std::vector<std::string> fields;
    std::istringstream stream(text);
    for (std::string field; std::getline(stream, field, '\t');) {
        fields.push_back(trimmed(field));
    }
    return fields;
}

[[noreturn]] void refuse(const std::string& path, int line, const std::string& what)
{
    raiseFile<FileFormatError>(readWhere, "line " + std::to_string(line) + ": " + what, path);
}

/// Shortest text that reads back as a number of this many digits.
std::string shown(double value, int digits)
{
    char text[64];
    const auto end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits);
    return {text, end.ptr};
}

/// What a field may hold, or empty.
void checkWord(const std::string& path,
               int line,
               Column column,
               const std::string& field,
               const std::vector<std::string>& words)
{
    if (field.empty() || std::find(words.begin(), words.end(), field) != words.end()) {
        return;
    }
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : ", ") + word;
    }
    refuse(path, line,
           std::string(columnNames[column]) + " is one of " + list + ", not '" + field + "'");
}

} // namespace

LeafTable::LeafTable(const std::string& path)
    : path_(path)
{
    std::ifstream stream(path, std::ios_base::binary);
    if (!stream) {
        raiseFile<FileReadError>(readWhere, "Cannot open the table of settings", path);
    }
    std::vector<int> columns;
    int line = 0;
    for (std::string text; std::getline(stream, text);) {
        ++line;
        if (line == 1 && text.compare(0, 3, "\xEF\xBB\xBF") == 0) {
            text.erase(0, 3);
        }
        if (trimmed(text).empty()) {
            continue;
        }
        const std::vector<std::string> fields = fieldsOf(text);
        if (columns.empty()) {
            for (const char* name : columnNames) {
                const auto place = std::find(fields.begin(), fields.end(), name);
                columns.push_back(place == fields.end() ? -1 : int(place - fields.begin()));
            }
            if (columns[SliceName] < 0) {
                refuse(path_, line, "the header has no column Slice_Name");
            }
        } else {
            readRow(fields, columns, line);
        }
    }
    if (columns.empty()) {
        refuse(path_, std::max(1, line), "the table has no header line");
    }
}

void LeafTable::readRow(const std::vector<std::string>& fields,
                        const std::vector<int>& columns,
                        int line)
{
    const auto field = [&](Column column) {
        const int place = columns[column];
        return place < 0 || std::size_t(place) >= fields.size() ? std::string()
                                                                : fields[std::size_t(place)];
    };
    const auto number = [&](Column column) -> std::optional<double> {
        const std::string text = field(column);
        if (text.empty()) {
            return std::nullopt;
        }
        double value = 0.0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
        if (read.ec != std::errc() || read.ptr != text.data() + text.size() ||
            !(std::fabs(value) < 1e9)) {
            refuse(path_, line,
                   std::string(columnNames[column]) + " is not a number: '" + text + "'");
        }
        return value;
    };
    LeafRow row;
    row.line = line;
    row.slice = field(SliceName);
    if (row.slice.empty()) {
        refuse(path_, line, "Slice_Name is empty");
    }
    if (const LeafRow* earlier = find(row.slice)) {
        refuse(path_, line,
               "slice " + row.slice + " stands in line " + std::to_string(earlier->line) +
                   " already");
    }
    row.photograph = field(PhotographName);
    const std::optional<double> place[] = {number(X), number(Y), number(Width), number(Height)};
    if (place[0] && place[1] && place[2] && place[3]) {
        row.part = cv::Rect(int(std::lround(*place[0])), int(std::lround(*place[1])),
                            int(std::lround(*place[2])), int(std::lround(*place[3])));
        if (row.part.width < 1 || row.part.height < 1) {
            refuse(path_, line, "Width and Height are above 0");
        }
    }
    row.background = field(Background);
    checkWord(path_, line, Background, row.background, {"dark", "light"});
    row.channel = field(Channel);
    checkWord(path_, line, Channel, row.channel,
              {"grey", "red", "green", "blue", "contrast", "region"});
    row.overlap = number(Overlap);
    row.contrast = number(Contrast);
    row.touchesEdge = field(Edge) == "yes";
    row.scaleSource = field(ScaleSource);
    row.pixelWidth = number(PixelWidth);
    if (row.pixelWidth && !(*row.pixelWidth > 0.0)) {
        refuse(path_, line, "Pixel_Width is above 0");
    }
    row.venation = field(Venation);
    checkWord(path_, line, Venation, row.venation, {"pinnate", "palmate"});
    if (const std::optional<double> half = number(HalfNeighbourhood)) {
        if (*half < 1.0 || *half > 200.0) {
            refuse(path_, line, "Half_Neighbourhood lies from 1 to 200");
        }
        row.halfNeighbourhood = int(std::lround(*half));
    }
    rows_.push_back(row);
}

const LeafRow* LeafTable::find(const std::string& slice) const
{
    const auto row = std::find_if(rows_.begin(), rows_.end(),
                                  [&](const LeafRow& each) { return each.slice == slice; });
    return row == rows_.end() ? nullptr : &*row;
}

std::vector<const LeafRow*> LeafTable::rowsOf(const std::string& photograph) const
{
    std::vector<const LeafRow*> same;
    std::vector<const LeafRow*> named;
    for (const LeafRow& row : rows_) {
        if (row.photograph == photograph) {
            same.push_back(&row);
        } else if (FileInfo::fileName(row.photograph) == FileInfo::fileName(photograph)) {
            named.push_back(&row);
        }
    }
    return same.empty() ? named : same;
}

void LeafTable::write(const std::string& path) const
{
    FileReplacement file(writeWhere, path);
    std::ofstream stream(file.temporaryName(), std::ios_base::binary);
    for (const char* name : columnNames) {
        stream << (name == columnNames[0] ? "" : "\t") << name;
    }
    stream << "\n";
    for (const LeafRow& row : rows_) {
        stream << row.slice << "\t" << row.photograph << "\t" << row.part.x << "\t" << row.part.y
               << "\t" << row.part.width << "\t" << row.part.height << "\t" << row.background
               << "\t" << row.channel << "\t" << (row.overlap ? shown(*row.overlap, 4) : "") << "\t"
               << (row.contrast ? shown(*row.contrast, 3) : "") << "\t"
               << (row.touchesEdge ? "yes" : "no") << "\t" << row.scaleSource << "\t"
               << (row.pixelWidth ? shown(*row.pixelWidth, 6) : "") << "\t" << row.venation << "\t"
               << (row.halfNeighbourhood ? std::to_string(*row.halfNeighbourhood) : "") << "\n";
    }
    stream.close();
    file.commit(!stream.fail());
}
