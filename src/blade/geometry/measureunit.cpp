#include "blade/geometry/measureunit.h"

#include "interface/stackbuilder.h"
#include "stack/stack.h"
#include "stack/stackslice.h"

#include <map>

namespace {

/// What the numbers of a column are.
enum class Kind { Text, Count, Ratio, Percent, Length, Area, Day, Hour, Calibration };

Kind kindOf(const std::string& column)
{
    static const std::map<std::string, Kind> kinds = {
        {"Slice_Name", Kind::Text},
        {"Calibration", Kind::Calibration},
        {"Blade_Length", Kind::Length},
        {"Age(day)", Kind::Day},
        {"Age(hours)", Kind::Hour},
        {"Blade_Width(BB)", Kind::Length},
        {"Blade_Width(IS)", Kind::Length},
        {"Blade_Area", Kind::Area},
        {"Blade_Perimeter", Kind::Length},
        {"HullPerimeter", Kind::Length},
        {"HullArea", Kind::Area},
        {"Petiole_Width", Kind::Length},
        {"Upper_Peak_Number", Kind::Count},
        {"Lower_Peak_Number", Kind::Count},
        {"Terminal_Peak_Number", Kind::Count},
        {"Total_Peak_Number", Kind::Count},
        {"Tooth_Position", Kind::Count},
        {"Side", Kind::Text},
        {"Tooth_Width", Kind::Length},
        {"Tooth_Height (altitude)", Kind::Length},
        {"Tooth_Height (median)", Kind::Length},
        {"Tooth_Area", Kind::Area},
        {"Tooth_Perimeter", Kind::Length},
        {"Tooth_Position_From_The_Tip", Kind::Percent},
        {"Tooth_Position_From_The_Base", Kind::Percent},
    };
    const auto kind = kinds.find(column);
    return kind == kinds.end() ? Kind::Ratio : kind->second;
}

} // namespace

std::string measureUnit(const std::string& column, const std::string& length)
{
    switch (kindOf(column)) {
    case Kind::Text:
        return "text";
    case Kind::Count:
        return "count";
    case Kind::Ratio:
        return "1";
    case Kind::Percent:
        return "%";
    case Kind::Length:
        return length;
    case Kind::Area:
        return length + "²";
    case Kind::Day:
        return "day";
    case Kind::Hour:
        return "hour";
    case Kind::Calibration:
        return length + " per pixel";
    }
    return "";
}

std::string lengthUnitOf(const Stack& stack)
{
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        if (StackBuilder::hasPixelSize(stack.getSlice(i))) {
            return stack.getLengthUnit().symbol();
        }
    }
    return stack.getNumSlices() == 0 ? stack.getLengthUnit().symbol() : "pixel";
}
