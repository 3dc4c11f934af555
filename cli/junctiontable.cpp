#include "cli/junctiontable.h"

#include "cli/failure.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <locale>
#include <sstream>

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

std::string decimal(double value)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.setf(std::ios_base::fixed);
    stream.precision(1);
    stream << value;
    return stream.str();
}

const ModelItem* contourOf(const StackSlice& slice)
{
    const ModelItem* contour = nullptr;
    for (int i = 0; i < slice.getNumItems(); ++i) {
        const ModelItem& item = slice.getItem(i);
        if (item.getModel() && item.getModel()->getName() == "Contour" && item.getSize() > 0) {
            contour = &item;
        }
    }
    return contour;
}

struct Foot
{
    double x;
    double y;
    double distance;
};

/// The point of a segment that is nearest to (x, y).
Foot footOnSegment(double x, double y, const Vector<int>& a, const Vector<int>& b)
{
    const double dx = b[0] - a[0];
    const double dy = b[1] - a[1];
    const double squared = dx * dx + dy * dy;
    const double along =
        squared > 0.0 ? std::clamp(((x - a[0]) * dx + (y - a[1]) * dy) / squared, 0.0, 1.0) : 0.0;
    const double footX = a[0] + along * dx;
    const double footY = a[1] + along * dy;
    return {footX, footY, std::hypot(x - footX, y - footY)};
}

Foot footOnOutline(double x, double y, const Vertices<int>& outline)
{
    const int size = outline.getSize();
    Foot nearest = footOnSegment(x, y, outline[size - 1], outline[0]);
    for (int i = 1; i < size; ++i) {
        const Foot foot = footOnSegment(x, y, outline[i - 1], outline[i]);
        if (foot.distance < nearest.distance) {
            nearest = foot;
        }
    }
    return nearest;
}

double boxDiagonal(const Vertices<int>& outline)
{
    int lower[2] = {outline[0][0], outline[0][1]};
    int upper[2] = {outline[0][0], outline[0][1]};
    for (int i = 1; i < outline.getSize(); ++i) {
        for (int c = 0; c < 2; ++c) {
            lower[c] = std::min(lower[c], outline[i][c]);
            upper[c] = std::max(upper[c], outline[i][c]);
        }
    }
    return std::hypot(upper[0] - lower[0], upper[1] - lower[1]);
}

std::string faultOnOutline(const Junctions& junctions, const Vertices<int>& outline)
{
    const double allowed = boxDiagonal(outline) / 10.0;
    Foot feet[2];
    for (int i = 0; i < 2; ++i) {
        feet[i] = footOnOutline(junctions.x[i], junctions.y[i], outline);
        if (feet[i].distance > allowed) {
            return "junction " + std::to_string(i + 1) + " lies " + decimal(feet[i].distance) +
                   " pixels from the contour, more than " + decimal(allowed);
        }
    }
    // Where the contour does not reach into the notch beside the stalk, the nearest points of both
    // junctions are on one side of the stalk, and the blade could not be told from it.
    const double drawn =
        std::hypot(junctions.x[0] - junctions.x[1], junctions.y[0] - junctions.y[1]);
    const double found = std::hypot(feet[0].x - feet[1].x, feet[0].y - feet[1].y);
    if (found < drawn / 2.0) {
        return "both junctions fall on one place of the contour, " + decimal(found) +
               " pixels apart there instead of " + decimal(drawn);
    }
    return "";
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
    Junctions row{field(0), line, {0, 0}, {0, 0}};
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
    const auto row = std::find_if(rows_.begin(), rows_.end(),
                                  [&](const Junctions& other) { return other.slice == slice; });
    return row == rows_.end() ? nullptr : &*row;
}

std::string JunctionTable::place(const Junctions& row) const
{
    return path_ + ":" + std::to_string(row.line) + ": slice " + row.slice;
}

std::string junctionFault(const Junctions& junctions, const StackSlice& slice)
{
    const int width = slice.width();
    const int height = slice.height();
    for (int i = 0; i < 2; ++i) {
        const int x = junctions.x[i];
        const int y = junctions.y[i];
        if (x < 0 || y < 0 || x >= width || y >= height) {
            return "junction " + std::to_string(i + 1) + " (" + std::to_string(x) + ", " +
                   std::to_string(y) + ") lies outside the image of " + std::to_string(width) +
                   " x " + std::to_string(height) + " pixels";
        }
    }
    if (junctions.x[0] == junctions.x[1] && junctions.y[0] == junctions.y[1]) {
        return "both junctions are the same point";
    }
    const ModelItem* contour = contourOf(slice);
    return contour ? faultOnOutline(junctions, contour->getVertices()) : "";
}

void JunctionPlacing::createModels()
{
    const int index = stack->findModel("Petiole");
    if (index < 0) {
        createModelPetiole();
    } else {
        petioleModel = &stack->getModel(index);
    }
}

void JunctionPlacing::place(const Junctions& junctions, int slice)
{
    createModels();
    StackSlice& target = stack->getSlice(slice);
    for (int i = target.getNumItems() - 1; i >= 0; --i) {
        if (target.getItem(i).getModel() == petioleModel) {
            LMXModelItemDeleteEvent event(target.getItem(i));
            LMXEventServer::notifyEvent(event);
            delete &target.getItem(i);
        }
    }
    petioleItem = new ModelItem;
    petioleItem->setModel(*petioleModel);
    petioleItem->setSlice(target);
    Vector<int> vertex(2);
    for (int i = 0; i < 2; ++i) {
        vertex[0] = junctions.x[i];
        vertex[1] = junctions.y[i];
        petioleItem->appendVertex(vertex);
    }
    petioleItem->attach();
    LMXModelItemCreateEvent event(*petioleItem);
    LMXEventServer::notifyEvent(event);
}
