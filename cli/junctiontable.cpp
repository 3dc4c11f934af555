#include "cli/junctiontable.h"

#include "cli/failure.h"
#include "stack/stack.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>

namespace {

const char* const columnNames[] = {"Slice_Name", "X1", "Y1", "X2", "Y2"};

/// Without blanks at both ends and without quotes around it.
std::string trimmed(std::string text)
{
    const char* const blanks = " \r";
    text.erase(text.find_last_not_of(blanks) + 1);
    text.erase(0, std::min(text.size(), text.find_first_not_of(blanks)));
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
    }
    return text;
}

std::vector<std::string> fieldsOf(const std::string& text)
{
    std::vector<std::string> fields;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\t'); end != std::string::npos;
         end = text.find('\t', begin)) {
        fields.push_back(trimmed(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    fields.push_back(trimmed(text.substr(begin)));
    return fields;
}

} // namespace

JunctionTable::JunctionTable(const std::string& path)
    : path_(path)
{
    std::ifstream stream(path, std::ios_base::binary);
    if (!stream) {
        throw Failure(path + ": the junction table can't be read: " + std::strerror(errno));
    }
    int line = 0;
    for (std::string text; std::getline(stream, text);) {
        ++line;
        if (line == 1 && text.compare(0, 3, "\xEF\xBB\xBF") == 0) {
            text.erase(0, 3);
        }
        if (trimmed(text).empty()) {
            continue;
        }
        if (columns_.empty()) {
            readHeader(text);
        } else {
            readRow(text, line);
        }
    }
    if (stream.bad() || columns_.empty()) {
        throw Failure(path + ": the junction table has no header line");
    }
}

void JunctionTable::readHeader(const std::string& text)
{
    const std::vector<std::string> names = fieldsOf(text);
    for (const char* column : columnNames) {
        const auto found = std::find(names.begin(), names.end(), column);
        if (found == names.end()) {
            throw Failure(path_ + ": the junction table has no column " + column);
        }
        columns_.push_back(static_cast<int>(found - names.begin()));
    }
}

void JunctionTable::readRow(const std::string& text, int line)
{
    const std::vector<std::string> fields = fieldsOf(text);
    const auto field = [&](int column) {
        const auto place = static_cast<std::size_t>(columns_[static_cast<std::size_t>(column)]);
        return place < fields.size() ? fields[place] : std::string();
    };
    Junctions row{{{0, 0}, {0, 0}}, field(0), line};
    if (row.slice.empty()) {
        throw Failure(path_ + ":" + std::to_string(line) + ": the line names no slice");
    }
    if (const Junctions* earlier = find(row.slice)) {
        throw Failure(place(row) + ": stands in line " + std::to_string(earlier->line) +
                      " already");
    }
    for (int point = 0; point < 2; ++point) {
        row.x[point] = number(field(1 + 2 * point), row, columnNames[1 + 2 * point]);
        row.y[point] = number(field(2 + 2 * point), row, columnNames[2 + 2 * point]);
    }
    rowsBySlice_.emplace(row.slice, rows_.size());
    rows_.push_back(row);
}

int JunctionTable::number(const std::string& field, const Junctions& row, const char* column) const
{
    double value = 0.0;
    const char* const end = field.data() + field.size();
    const auto read = std::from_chars(field.data(), end, value);
    if (read.ec != std::errc() || read.ptr != end || !(std::fabs(value) < 1e9)) {
        throw Failure(place(row) + ": " + column + " is not a number of pixels: '" + field + "'");
    }
    return static_cast<int>(std::lround(value));
}

const Junctions* JunctionTable::find(const std::string& slice) const
{
    const auto row = rowsBySlice_.find(slice);
    return row == rowsBySlice_.end() ? nullptr : &rows_[row->second];
}

std::string JunctionTable::place(const Junctions& row) const
{
    return path_ + ":" + std::to_string(row.line) + ": slice " + row.slice;
}

std::string JunctionTable::strangers(const Stack& stack) const
{
    std::string names;
    for (const Junctions& row : rows_) {
        if (stack.findSlice(row.slice) < 0) {
            names += (names.empty() ? "" : ", ") + row.slice + " (line " +
                     std::to_string(row.line) + ")";
        }
    }
    return names.empty() ? "" : path_ + ": the stack has no slice for these rows: " + names;
}
