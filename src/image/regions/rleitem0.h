#pragma once

#include "numerics/vector.h"

template <class T>
class Vertices;

/// A run of pixels along a row. Positions are (row, column).
class RLEItem0
{
public:
    /// One pixel at (0, 0).
    RLEItem0();
    RLEItem0(int row, int column, int pixels);

    void setOrigin(int row, int column);

    /// `SizeError` unless the vector has two elements.
    void setOrigin(const Vector<int>& position);

    const Vector<int>& getOrigin() const { return origin; }

    /// `ProgramError` below 1.
    void setLength(int pixels);

    int getLength() const { return length; }

    /// The first column and the last one.
    int begin() const { return origin[1]; }

    int end() const { return origin[1] + length - 1; }

    /// The two setters leave the other end where it is; `ProgramError`, and no change, if nothing
    /// were left.
    void setBegin(int column);
    void setEnd(int column);

    void translate(const Vector<int>& shift);

    /// Position of pixel `i` of the run.
    Vector<int> operator[](int i) const { return vertex(i); }

    Vector<int> vertex(int i) const;

    /// All pixels, in a space of two coordinates.
    Vertices<int> vertices() const;

    /// Index of the pixel nearest to `position`.
    int findNearestVertex(const Vector<int>& position) const;

    /// The same if it lies within `tolerance`, else -1.
    int findNearVertex(const Vector<int>& position, int tolerance) const;

    bool operator==(const RLEItem0& other) const;

    bool operator!=(const RLEItem0& other) const { return !(*this == other); }

private:
    Vector<int> origin;
    int length = 1;
};
