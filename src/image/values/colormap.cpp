#include "image/values/colormap.h"

#include "system/dataset.h"
#include "system/exception.h"

#include <array>
#include <cmath>
#include <iostream>

namespace {

using Color = std::array<int, 3>;

struct TellingRow
{
    int index;
    Color color;
};

unsigned char truncatedToByte(double value)
{
    return std::isfinite(value) ? static_cast<unsigned char>(static_cast<long long>(value)) : 0;
}

template <class T>
void takeBytes(Vector<unsigned char>& table, const Vector<T>& values)
{
    table.setSize(values.getSize());
    for (int i = 0; i < values.getSize(); ++i) {
        table[i] = truncatedToByte(static_cast<double>(values[i]));
    }
}

void readTable(Vector<unsigned char>& table, const DataSet& dataSet, const std::string& name)
{
    const int column = dataSet.column(name);
    if (column >= 0 && dataSet.columnType(column) == "%f") {
        takeBytes(table, dataSet.getValues<float>(name));
    } else {
        takeBytes(table, dataSet.getValues<int>(name));
    }
}

bool isZero(const Vector<unsigned char>& table)
{
    for (int i = 0; i < table.getSize(); ++i) {
        if (table[i] != 0) {
            return false;
        }
    }
    return true;
}

void setEntry(Colormap& colormap, int i, const Color& color)
{
    colormap.getRed()[i] = static_cast<unsigned char>(color[0]);
    colormap.getGreen()[i] = static_cast<unsigned char>(color[1]);
    colormap.getBlue()[i] = static_cast<unsigned char>(color[2]);
}

/// The colour `step` entries behind `from` on the straight way to `to`, to the nearest integer.
Color between(const TellingRow& from, const TellingRow& to, int step)
{
    const double fraction = static_cast<double>(step) / (to.index - from.index);
    Color color;
    for (std::size_t c = 0; c < color.size(); ++c) {
        const double value = from.color[c] + fraction * (to.color[c] - from.color[c]);
        color[c] = static_cast<int>(std::lround(value));
    }
    return color;
}

/// A table that meets the rows exactly and runs straight between them; the first row is entry 0.
template <std::size_t Count>
Colormap interpolated(const std::array<TellingRow, Count>& rows)
{
    Colormap colormap(rows.back().index + 1);
    for (std::size_t r = 0; r + 1 < Count; ++r) {
        for (int i = rows[r].index; i < rows[r + 1].index; ++i) {
            setEntry(colormap, i, between(rows[r], rows[r + 1], i - rows[r].index));
        }
    }
    setEntry(colormap, rows.back().index, rows.back().color);
    return colormap;
}

} // namespace

Colormap::Colormap(int size)
{
    setSize(size);
}

Colormap::Colormap(const std::string& path)
{
    const DataSet dataSet(path, '\t');
    readTable(red_, dataSet, "Red");
    readTable(green_, dataSet, "Green");
    readTable(blue_, dataSet, "Blue");
    if (red_.getSize() != green_.getSize() || red_.getSize() != blue_.getSize()) {
        raise<SizeError>("Colormap::Colormap(const string&)", "Columns differ in length");
    }
}

void Colormap::setSize(int size)
{
    const int entries = size > 0 ? size : 0;
    red_.setSize(entries);
    green_.setSize(entries);
    blue_.setSize(entries);
}

void Colormap::clear()
{
    setSize(0);
}

Vector<int> Colormap::getColor(int i) const
{
    Vector<int> color(3);
    color[0] = red_[i];
    color[1] = green_[i];
    color[2] = blue_[i];
    return color;
}

void Colormap::makeGrayscale()
{
    const int size = getSize();
    for (int i = 0; i < size; ++i) {
        const int value = truncatedToByte(i * 255.0 / (size - 1));
        setEntry(*this, i, {value, value, value});
    }
}

void Colormap::convertToGrayscale()
{
    for (int i = 0; i < getSize(); ++i) {
        const int value = (red_[i] + green_[i] + blue_[i]) / 3;
        setEntry(*this, i, {value, value, value});
    }
}

bool Colormap::isIdentity() const
{
    for (int i = 0; i < getSize(); ++i) {
        if (red_[i] != i || green_[i] != i || blue_[i] != i) {
            return false;
        }
    }
    return true;
}

bool Colormap::isGrayscale() const
{
    return red_ == green_ && red_ == blue_;
}

bool Colormap::isRedOnly() const
{
    return isZero(green_) && isZero(blue_);
}

bool Colormap::isGreenOnly() const
{
    return isZero(red_) && isZero(blue_);
}

bool Colormap::isBlueOnly() const
{
    return isZero(red_) && isZero(green_);
}

bool Colormap::operator==(const Colormap& other) const
{
    return red_ == other.red_ && green_ == other.green_ && blue_ == other.blue_;
}

void Colormap::print(const std::string& title) const
{
    if (!title.empty()) {
        std::cout << title << '\n';
    }
    for (int i = 0; i < getSize(); ++i) {
        std::cout << i << " = " << int(red_[i]) << ' ' << int(green_[i]) << ' ' << int(blue_[i])
                  << '\n';
    }
}

Colormap Colormap::flag()
{
    static constexpr std::array<Color, 16> colors = {{{0, 0, 0},
                                                      {255, 255, 255},
                                                      {255, 0, 0},
                                                      {85, 0, 255},
                                                      {0, 170, 0},
                                                      {255, 170, 0},
                                                      {170, 255, 127},
                                                      {170, 170, 0},
                                                      {0, 170, 255},
                                                      {255, 170, 255},
                                                      {170, 0, 255},
                                                      {170, 170, 255},
                                                      {255, 255, 0},
                                                      {170, 85, 0},
                                                      {0, 255, 255},
                                                      {255, 0, 255}}};
    Colormap colormap(static_cast<int>(colors.size()));
    for (std::size_t i = 0; i < colors.size(); ++i) {
        setEntry(colormap, static_cast<int>(i), colors[i]);
    }
    return colormap;
}

Colormap Colormap::cold2Hot(int entries)
{
    if (entries < 0 || entries % 4 != 0) {
        raise<SizeError>("Colormap Colormap::cold2Hot(const int)",
                         "Colormap dimension is not a multiple of 4");
    }
    const int quarter = entries / 4;
    const double a = 255.0 / std::log(static_cast<double>(quarter));
    const double b = 255.0 / std::log(quarter + 1.0);
    Colormap colormap(entries);
    for (int x = 0; x < quarter; ++x) {
        const int rising = x == 0 ? 0 : truncatedToByte(std::log(static_cast<double>(x)) * a);
        const double falling = std::log(static_cast<double>(quarter - x));
        setEntry(colormap, x, {0, rising, 255});
        setEntry(colormap, quarter + x, {0, 255, truncatedToByte(falling * a)});
        setEntry(colormap, 2 * quarter + x, {truncatedToByte(std::log(x + 2.0) * b), 255, 0});
        setEntry(colormap, 3 * quarter + x, {255, truncatedToByte(falling * b), 0});
    }
    return colormap;
}

// The rows beside 0, 16, 96, 144 and 255 let the lightness rise evenly from black to white.
Colormap Colormap::fire()
{
    static constexpr std::array<TellingRow, 8> rows = {{{0, {0, 0, 0}},
                                                        {16, {1, 0, 96}},
                                                        {48, {88, 0, 178}},
                                                        {96, {195, 0, 93}},
                                                        {144, {255, 117, 0}},
                                                        {192, {255, 188, 0}},
                                                        {224, {255, 236, 95}},
                                                        {255, {255, 255, 255}}}};
    return interpolated(rows);
}

// The rows beside 0, 96, 144, 224 and 255 lead the hue through blue and yellow.
Colormap Colormap::thermal()
{
    static constexpr std::array<TellingRow, 8> rows = {{{0, {70, 0, 115}},
                                                        {32, {46, 40, 255}},
                                                        {64, {40, 150, 255}},
                                                        {96, {76, 255, 247}},
                                                        {144, {178, 255, 163}},
                                                        {184, {255, 244, 92}},
                                                        {224, {255, 175, 37}},
                                                        {255, {255, 2, 2}}}};
    return interpolated(rows);
}
