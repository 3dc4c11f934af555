// Part of `DataSet`: the text form of tables, and their files.

#include "system/dataset.h"
#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"
#include "system/stringtools.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <locale>
#include <sstream>
#include <type_traits>

namespace {

template <class T>
void writeCell(std::ostream& stream, const Vector<T>& values, int row)
{
    const T cell = row < values.getSize() ? values[row] : T();
    if constexpr (std::is_same_v<T, float> || std::is_same_v<T, double>) {
        stream.setf(std::ios_base::showpoint);
        if (std::isnan(cell)) {
            stream << "nan";
        } else {
            stream << cell;
        }
    } else if constexpr (std::is_same_v<T, Scalar>) {
        if (!cell.isEmpty()) {
            stream << cell.toString();
        }
    } else if constexpr (!std::is_same_v<T, long double>) {
        stream << cell;
    }
}

/// How many cells may be missing in front of others of their columns. They take memory, but no byte
/// of a file.
constexpr std::size_t mostGaps = 1 << 21;

std::string removeQuotes(const std::string& text)
{
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        return text.substr(1, text.size() - 2);
    }
    return text;
}

/// Reads a line without its end, be that of either kind.
bool readLine(std::istream& stream, std::string& line)
{
    if (!std::getline(stream, line)) {
        return false;
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return true;
}

std::vector<std::string> split(const std::string& line, char separator)
{
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, separator);) {
        fields.push_back(field);
    }
    return fields;
}

/// "%d" if all cells are integers, "%f" if all are numbers, else "%s".
std::string determineType(const std::vector<std::string>& cells)
{
    std::string type = "%d";
    for (const std::string& cell : cells) {
        if (StringTools::isCompatible<int>(cell)) {
            continue;
        }
        if (!StringTools::isCompatible<float>(cell)) {
            return "%s";
        }
        type = "%f";
    }
    return type;
}

} // namespace

void DataSet::load(const std::string& filename)
{
    const std::string where = "void DataSet::load(const string&)";
    if (!FileInfo::fileExists(filename)) {
        raiseFile<FileReadError>(where, "The file does not exist", filename);
    }
    std::ifstream stream(filename, std::ios_base::binary);
    DataSet read;
    read.fieldSeparator = fieldSeparator;
    if (stream) {
        stream >> read;
    }
    if (!stream.is_open() || stream.bad()) {
        raiseFile<FileReadError>(where, "The file can't be read", filename);
    }
    swap(read);
}

bool DataSet::save(const std::string& filename, bool overwrite) const
{
    const std::string where = "void DataSet::save(const string&, const bool) const";
    if (!overwrite && FileInfo::fileExists(filename)) {
        raiseFile<FileWriteError>(where, "File exists", filename);
    }
    std::unique_ptr<FileReplacement> replacement;
    try {
        replacement = std::make_unique<FileReplacement>(where, filename);
    } catch (const FileWriteError&) {
        return false;
    }
    std::ofstream stream(replacement->temporaryName(), std::ios_base::binary);
    stream << *this;
    stream.close();
    replacement->commit(stream.good());
    return true;
}

std::ostream& operator<<(std::ostream& stream, const DataSet& dataSet)
{
    if (dataSet.columns.empty()) {
        return stream;
    }
    // Composed aside, since a stream that changes its locale on the way flushes, and can fail at it.
    std::ostringstream text;
    text.copyfmt(stream);
    text.imbue(std::locale::classic());
    for (std::size_t i = 0; i < dataSet.names.size(); ++i) {
        if (i != 0) {
            text << dataSet.fieldSeparator;
        }
        text << dataSet.names[i];
    }
    text << '\n';
    for (int row = 0; row < dataSet.numRows_; ++row) {
        dataSet.writeRow(text, row);
    }
    stream.flags(text.flags());
    const std::string bytes = text.str();
    return stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void DataSet::writeRow(std::ostream& stream, int row) const
{
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i != 0) {
            stream << fieldSeparator;
        }
        std::visit([&](const auto& values) { writeCell(stream, values, row); }, *columns[i]);
    }
    stream << '\n';
}

std::istream& operator>>(std::istream& stream, DataSet& dataSet)
{
    dataSet.clear();
    std::string line;
    readLine(stream, line);
    const std::vector<std::string> header = split(line, dataSet.fieldSeparator);
    std::vector<std::vector<std::string>> cells(header.size());
    std::size_t gaps = 0;
    for (std::size_t row = 0; readLine(stream, line);) {
        const std::vector<std::string> fields = split(line, dataSet.fieldSeparator);
        for (std::size_t i = 0; i < std::min(fields.size(), cells.size()); ++i) {
            gaps += row - cells[i].size();
            if (gaps > mostGaps) {
                stream.setstate(std::ios_base::badbit);
                return stream;
            }
            cells[i].resize(row);
            cells[i].push_back(fields[i]);
        }
        row += fields.empty() ? 0 : 1;
    }
    for (std::size_t i = 0; i < header.size(); ++i) {
        dataSet.fillColumn(removeQuotes(header[i]), cells[i]);
    }
    return stream;
}

void DataSet::fillColumn(const std::string& name, const std::vector<std::string>& cells)
{
    const int length = static_cast<int>(cells.size());
    const std::string type = determineType(cells);
    names.push_back(name);
    const auto fill = [&](auto values, const auto& convert) {
        for (int row = 0; row < length; ++row) {
            values[row] = convert(cells[static_cast<std::size_t>(row)]);
        }
        columns.push_back(std::make_unique<Column>(std::move(values)));
    };
    if (type == "%d") {
        fill(Vector<int>(length), StringTools::toInt);
    } else if (type == "%f") {
        fill(Vector<float>(length), StringTools::toFloat);
    } else {
        fill(Vector<std::string>(length), removeQuotes);
    }
    numRows_ = std::max(numRows_, length);
}
