#pragma once

#include "blade/landmarks/junctionplacing.h"

#include <string>
#include <unordered_map>
#include <vector>

class Stack;

/// A row of the table: the two blade-petiole junctions of one slice.
struct Junctions : JunctionPoints
{
    std::string slice;
    int line;
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

    /// What to tell of rows for slices that the stack does not have; empty if there are none.
    std::string strangers(const Stack& stack) const;

    /// What to tell, once, where the pixels of a slice are not those of its file.
    static constexpr const char* scaleNote = "photographs whose pixels are not square are shown "
                                             "with square ones, and their junctions are "
                                             "scaled with them";

    /// "FILE:LINE: slice NAME".
    std::string place(const Junctions& row) const;

private:
    void readHeader(const std::string& text);
    void readRow(const std::string& text, int line);
    int number(const std::string& field, const Junctions& row, const char* column) const;

    std::string path_;
    std::vector<int> columns_; // where the five columns stand
    std::vector<Junctions> rows_;
    std::unordered_map<std::string, std::size_t> rowsBySlice_;
};
