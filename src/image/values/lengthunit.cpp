#include "image/values/lengthunit.h"

#include <map>

namespace {

struct Prefix
{
    const char* name;
    const char* symbol;
};

const std::map<int, Prefix>& prefixes()
{
    static const std::map<int, Prefix> table = {
        {-24, {"yopto", "y"}},       {-21, {"zepto", "z"}},
        {-18, {"atto", "a"}},        {-15, {"femto", "f"}},
        {-12, {"pico", "p"}},        {-9, {"nano", "n"}},
        {-6, {"micro", "\xC2\xB5"}}, {-3, {"milli", "m"}},
        {-2, {"centi", "c"}},        {0, {"", ""}},
        {3, {"kilo", "k"}},          {6, {"mega", "M"}},
        {9, {"giga", "G"}},          {12, {"tera", "T"}},
        {15, {"peta", "P"}},         {18, {"exa", "E"}},
        {21, {"zetta", "Z"}},        {24, {"yotta", "Y"}},
    };
    return table;
}

Prefix prefixOf(int scale)
{
    const auto row = prefixes().find(scale);
    return row == prefixes().end() ? Prefix{"???", "???"} : row->second;
}

} // namespace

std::string LengthUnit::baseName()
{
    return "meter";
}

std::string LengthUnit::baseSymbol()
{
    return "m";
}

std::string LengthUnit::prefixName() const
{
    return prefixOf(scale).name;
}

std::string LengthUnit::prefixSymbol() const
{
    return prefixOf(scale).symbol;
}

std::string LengthUnit::name() const
{
    return prefixName() + baseName();
}

std::string LengthUnit::symbol() const
{
    return prefixSymbol() + baseSymbol();
}

std::vector<int> LengthUnit::availableScales()
{
    std::vector<int> scales;
    for (const auto& row : prefixes()) {
        scales.push_back(row.first);
    }
    return scales;
}

std::vector<std::string> LengthUnit::availableNames()
{
    std::vector<std::string> names;
    for (const auto& row : prefixes()) {
        names.push_back(row.second.name + baseName());
    }
    return names;
}

std::vector<std::string> LengthUnit::availableSymbols()
{
    std::vector<std::string> symbols;
    for (const auto& row : prefixes()) {
        symbols.push_back(row.second.symbol + baseSymbol());
    }
    return symbols;
}
