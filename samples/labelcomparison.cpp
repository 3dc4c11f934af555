#include "samples/labelcomparison.h"

#include "system/dataset.h"
#include "system/exception.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <set>
#include <vector>

namespace {

using Classes = std::set<ToothClass>;

struct Found
{
    Point place;
    Structure structure;
    Classes classes;
    bool isNearest = false;
};

using Drawn = std::map<std::string, std::vector<TrueLandmark>>;

struct FoundKind
{
    const char* model;
    Structure structure;
    ToothClass label;
};

constexpr FoundKind foundKinds[] = {
    {"Primary Sinus", Structure::Sinus, ToothClass::Primary},
    {"Primary Distal Sinus", Structure::Sinus, ToothClass::Distal},
    {"Secondary Sinus", Structure::Sinus, ToothClass::Secondary},
    {"Primary Peak", Structure::Tip, ToothClass::Primary},
    {"Primary Distal Peak", Structure::Tip, ToothClass::Distal},
    {"Secondary Peak", Structure::Tip, ToothClass::Secondary},
};

DataSet readTable(const std::string& filename, const std::vector<const char*>& columns)
{
    const DataSet table(filename);
    for (const char* name : columns) {
        if (table.column(name) < 0) {
            raiseFile<FileFormatError>("DataSet readTable(...)",
                                       "There is no column '" + std::string(name) + "'", filename);
        }
    }
    return table;
}

template <class Enum>
Enum named(std::initializer_list<Enum> values,
           std::string (*nameOf)(Enum),
           const std::string& name,
           const std::string& filename)
{
    for (const Enum value : values) {
        if (nameOf(value) == name) {
            return value;
        }
    }
    raiseFile<FileFormatError>("Enum named(...)", "Unknown name '" + name + "'", filename);
}

Point placeOf(DataSet& table, int row)
{
    return {double(table.getValue<int>("X", row)), double(table.getValue<int>("Y", row))};
}

Drawn readDrawn(const std::string& filename)
{
    DataSet table = readTable(filename, {"Slice_Name", "Structure", "Class", "X", "Y"});
    Drawn drawn;
    for (int row = 0; row < table.numRows(); ++row) {
        drawn[table.getValue<std::string>("Slice_Name", row)].push_back(
            {placeOf(table, row),
             named({Structure::Sinus, Structure::Tip}, structureName,
                   table.getValue<std::string>("Structure", row), filename),
             named({ToothClass::Primary, ToothClass::Secondary, ToothClass::Distal}, className,
                   table.getValue<std::string>("Class", row), filename)});
    }
    return drawn;
}

void addFound(std::vector<Found>& slice, const FoundKind& kind, const Point& place)
{
    for (Found& found : slice) {
        if (found.structure == kind.structure && length(found.place - place) == 0.0) {
            found.classes.insert(kind.label);
            return;
        }
    }
    slice.push_back({place, kind.structure, {kind.label}});
}

/// The landmarks of each slice; none where a slice has other items alone.
std::map<std::string, std::vector<Found>> readFound(const std::string& filename)
{
    DataSet table = readTable(filename, {"Slice_Name", "Model", "X", "Y"});
    std::map<std::string, std::vector<Found>> slices;
    for (int row = 0; row < table.numRows(); ++row) {
        std::vector<Found>& slice = slices[table.getValue<std::string>("Slice_Name", row)];
        const std::string model = table.getValue<std::string>("Model", row);
        for (const FoundKind& kind : foundKinds) {
            if (model == kind.model) {
                addFound(slice, kind, placeOf(table, row));
            }
        }
    }
    return slices;
}

Found* nearestOf(std::vector<Found>& slice, const TrueLandmark& landmark, double reach)
{
    Found* nearest = nullptr;
    for (Found& found : slice) {
        const double distance = length(found.place - landmark.place);
        if (found.structure == landmark.structure && distance <= reach &&
            (!nearest || distance < length(nearest->place - landmark.place))) {
            nearest = &found;
        }
    }
    return nearest;
}

bool agree(const TrueLandmark& drawn, const Classes& found)
{
    return drawn.structure == Structure::Sinus && drawn.label == ToothClass::Primary
               ? found.count(ToothClass::Primary) > 0
               : found == Classes{drawn.label};
}

std::string text(const Classes& classes)
{
    std::string names;
    for (const ToothClass label : classes) {
        names += (names.empty() ? "" : " and ") + className(label);
    }
    return names;
}

std::ostream& begin(std::ostream& out, Structure structure, const Point& place)
{
    return out << "    " << structureName(structure) << " at (" << place.x << ", " << place.y
               << ") ";
}

/// Tells about one slice; gives whether all is well.
bool compareSlice(const std::string& name,
                  const std::vector<TrueLandmark>& drawn,
                  std::vector<Found>& found,
                  double reach,
                  std::ostream& out)
{
    std::size_t agreeing = 0;
    std::size_t missing = 0;
    double farthest = 0.0;
    for (const TrueLandmark& landmark : drawn) {
        Found* nearest = nearestOf(found, landmark, reach);
        if (!nearest) {
            begin(out, landmark.structure, landmark.place)
                << "drawn " << className(landmark.label) << ", not found\n";
            ++missing;
            continue;
        }
        nearest->isNearest = true;
        farthest = std::max(farthest, length(nearest->place - landmark.place));
        if (agree(landmark, nearest->classes)) {
            ++agreeing;
        } else {
            begin(out, landmark.structure, landmark.place)
                << "drawn " << className(landmark.label) << ", found " << text(nearest->classes)
                << "\n";
        }
    }
    std::size_t extra = 0;
    for (const Found& one : found) {
        if (!one.isNearest) {
            begin(out, one.structure, one.place)
                << "not drawn, found " << text(one.classes) << "\n";
            ++extra;
        }
    }
    out << "  " << name << ": of " << drawn.size() << " drawn landmarks " << agreeing << " agree, "
        << drawn.size() - agreeing - missing << " disagree, " << missing << " were not found, and "
        << extra << " were found that were not drawn; the farthest lies "
        << static_cast<int>(farthest + 0.5) << " pixels off\n";
    return agreeing == drawn.size() && extra == 0;
}

} // namespace

std::string structureName(Structure structure)
{
    return structure == Structure::Sinus ? "sinus" : "tip";
}

std::string className(ToothClass label)
{
    switch (label) {
    case ToothClass::Primary:
        return "primary";
    case ToothClass::Secondary:
        return "secondary";
    case ToothClass::Distal:
        return "distal";
    }
    raise<ProgramError>("string className(ToothClass)", "unknown class of teeth");
}

bool compareLabels(const std::string& labels,
                   const std::string& landmarks,
                   bool distal,
                   double reach,
                   std::ostream& out)
{
    Drawn drawn = readDrawn(labels);
    std::map<std::string, std::vector<Found>> found = readFound(landmarks);
    bool any = false;
    bool good = true;
    for (auto& [name, slice] : drawn) {
        const auto entry = found.find(name);
        if (entry == found.end()) {
            continue;
        }
        for (TrueLandmark& landmark : slice) {
            const bool isPrimary = !distal && landmark.label == ToothClass::Distal;
            landmark.label = isPrimary ? ToothClass::Primary : landmark.label;
        }
        any = true;
        good = compareSlice(name, slice, entry->second, reach, out) && good;
    }
    if (!any) {
        raiseFile<FileFormatError>("bool compareLabels(...)",
                                   "No slice of the landmarks has labels", landmarks);
    }
    return good;
}
