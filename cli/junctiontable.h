#pragma once

#include "blade/modelsmanager.h"

#include <string>
#include <vector>

class StackSlice;

/// The two blade-petiole junctions of one slice, in pixels, x to the right and y down.
struct Junctions
{
    std::string slice;
    int line;
    int x[2];
    int y[2];
};

/// The table of junctions: fields parted by TAB, a header line with the columns Slice_Name, X1, Y1,
/// X2, Y2 in any order (others are ignored), a line per slice. Numbers have a decimal point and are
/// rounded to the nearest pixel.
class JunctionTable
{
public:
    /// Reads the file. Throws `Failure` with file, line and slice for a column that is missing, a
    /// field that is no number, and a slice that stands there twice.
    explicit JunctionTable(const std::string& path);

    const std::string& path() const { return path_; }

    const std::vector<Junctions>& rows() const { return rows_; }

    /// The row of a slice, or null.
    const Junctions* find(const std::string& slice) const;

    /// "FILE:LINE: slice NAME".
    std::string place(const Junctions& row) const;

private:
    void readHeader(const std::string& text);
    void readRow(const std::string& text, int line);
    int number(const std::string& field, const Junctions& row, const char* column) const;

    std::string path_;
    std::vector<int> columns_; // where the five columns stand
    std::vector<Junctions> rows_;
};

/// Why the junctions can't be those of the slice: equal points, points outside its image, and, if it
/// has a contour, points farther from it than a tenth of the diagonal of the contour's box, or points
/// that fall on one place of it. Empty if they can.
std::string junctionFault(const Junctions& junctions, const StackSlice& slice);

/// Puts junctions on slices, in the place of those that a slice has. Makes the model of the
/// junctions where the stack has none.
class JunctionPlacing : public ModelsManager
{
public:
    void place(const Junctions& junctions, int slice);

    /// Makes the model, unless it is there.
    void createModels() override;

    // The work needs the junctions: these do nothing.
    void run() override {}

    std::string process(int) override { return ""; }
};
