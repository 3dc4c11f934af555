#pragma once

#include "image/regions/rleitem0.h"
#include "numerics/vector.h"

#include <map>
#include <ostream>
#include <vector>

template <class T>
class BoundingBox;
template <class T>
class PixelMatrix;
template <class T>
class Vertices;

/// A region of pixels as runs along rows. In each row the runs ascend, do not overlap, and do not
/// touch. Pixels are numbered row after row, from left to right. Positions are (row, column).
class RLEItemSet0
{
public:
    RLEItemSet0() = default;

    void clear() { rows_.clear(); }

    bool isEmpty() const { return rows_.empty(); }

    /// Number of runs and of pixels.
    int numItems() const;
    int numVertices() const;

    /// Smallest and largest row and column; a box of no dimension for an empty region.
    BoundingBox<int> boundingBox() const;

    /// Run `i`, counted row after row; `RangeError` if there is none.
    const RLEItem0& getItem(int i) const;

    /// Position of pixel `i`; `RangeError` if there is none.
    Vector<int> vertex(int i) const;
    Vertices<int> vertices() const;

    void add(const RLEItem0& item);

    /// One pixel; `SizeError` unless the vector has two elements, here and in `remove`.
    void add(const Vector<int>& position);
    void add(int row, int column);
    void add(const RLEItemSet0& other);

    void remove(const RLEItem0& item);
    void remove(const Vector<int>& position);
    void remove(const RLEItemSet0& other);

    /// The pixels within `radius` of the centre.
    void setBall(const Vector<int>& centre, int radius);

    /// The pixels of this value.
    void fromMask(const PixelMatrix<int>& mask, int value);

    /// Writes `value` into the pixels of the region, or adds it to them. Pixels outside the mask
    /// are left out.
    void toMask(PixelMatrix<int>& mask, int value, bool add) const;

    void translate(const Vector<int>& shift);

    /// Number of the pixel nearest to `position`, the first one of equal distance; -1 for an empty
    /// region.
    int findNearestVertex(const Vector<int>& position) const;

    /// The same if it lies within `tolerance`, else -1.
    int findNearVertex(const Vector<int>& position, int tolerance) const;

    /// A line for each run: row, first column, length.
    void print(std::ostream& stream) const;

    bool operator==(const RLEItemSet0& other) const { return rows_ == other.rows_; }

    bool operator!=(const RLEItemSet0& other) const { return !(*this == other); }

private:
    using Runs = std::vector<RLEItem0>;

    static void addToRow(Runs& runs, const RLEItem0& item);
    static void removeFromRow(Runs& runs, const RLEItem0& item);

    std::map<int, Runs> rows_;
};
