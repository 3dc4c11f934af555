#pragma once

#include <string>
#include <vector>

/// A unit of length: a power of ten of the metre, with the name and symbol that its prefix gives.
/// Powers without a prefix in the table are kept, but are called "???".
class LengthUnit
{
public:
    /// The metre.
    LengthUnit() = default;

    /// Takes any power of ten.
    void setScale(int powerOfTen) { scale = powerOfTen; }

    int getScale() const { return scale; }

    /// "meter".
    static std::string baseName();

    /// "m".
    static std::string baseSymbol();

    /// Both empty for the metre itself.
    std::string prefixName() const;
    std::string prefixSymbol() const;

    /// Prefix and base joined: "micrometer"; symbols are UTF-8.
    std::string name() const;
    std::string symbol() const;

    /// All units that have a prefix, in ascending order of scale.
    static std::vector<int> availableScales();
    static std::vector<std::string> availableNames();
    static std::vector<std::string> availableSymbols();

    bool operator==(const LengthUnit& other) const { return scale == other.scale; }

    bool operator!=(const LengthUnit& other) const { return !(*this == other); }

private:
    int scale = 0;
};
