#pragma once

#include "numerics/vector.h"

#include <string>

/// The lookup tables of an indexed image: entry `i` of the red, green and blue table is the colour
/// of index `i`. The three tables always have the same size.
class Colormap
{
public:
    Colormap() = default;

    /// `size` entries, which the caller sets; 0 or less gives none.
    explicit Colormap(int size);

    /// Reads a table file with the columns "Red", "Green" and "Blue", separated by tabs; each value
    /// is truncated to a byte. Raises `FileReadError` when the file is missing, `NameError` when a
    /// column is, `TypeError` when a column holds text, `SizeError` when they differ in length.
    explicit Colormap(const std::string& path);

    Colormap(const Colormap&) = default;
    Colormap& operator=(const Colormap&) = default;

    /// Entries keep their values only when the size stays the same.
    void setSize(int size);

    int getSize() const { return red_.getSize(); }

    /// The same as `setSize(0)`.
    void clear();

    Vector<unsigned char>& getRed() { return red_; }

    const Vector<unsigned char>& getRed() const { return red_; }

    Vector<unsigned char>& getGreen() { return green_; }

    const Vector<unsigned char>& getGreen() const { return green_; }

    Vector<unsigned char>& getBlue() { return blue_; }

    const Vector<unsigned char>& getBlue() const { return blue_; }

    /// Red, green and blue of entry `i`, which must exist.
    Vector<int> getColor(int i) const;

    /// An even ramp from black to white over all entries; a single entry is black.
    void makeGrayscale();

    /// Each entry becomes the mean of its three values, in integers.
    void convertToGrayscale();

    /// Whether every table holds its own index.
    bool isIdentity() const;

    /// Whether red, green and blue agree in every entry; true for an empty map, as are the next three.
    bool isGrayscale() const;
    bool isRedOnly() const;
    bool isGreenOnly() const;
    bool isBlueOnly() const;

    bool operator==(const Colormap& other) const;

    bool operator!=(const Colormap& other) const { return !(*this == other); }

    /// Writes the title, when not empty, and a line per entry to the standard output.
    void print(const std::string& title) const;

    /// 16 colours that are easy to tell apart, black first.
    static Colormap flag();

    /// `entries` colours from blue through cyan, green and yellow to red, in logarithmic steps.
    /// Raises `SizeError` unless `entries` is a multiple of 4, 0 included.
    static Colormap cold2Hot(int entries);

    /// 256 colours from black through blue-violet and red to yellow and white.
    static Colormap fire();

    /// 256 colours from violet through blue, cyan, green and yellow to red.
    static Colormap thermal();

private:
    Vector<unsigned char> red_;
    Vector<unsigned char> green_;
    Vector<unsigned char> blue_;
};
