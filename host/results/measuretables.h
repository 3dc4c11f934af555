#pragma once

#include "system/dataset.h"

#include <string>
#include <vector>

class LMXStack;
class ProjectConfig;

/// The measures of leaves and teeth as two tables, with the slice of each row.
class MeasureTables
{
public:
    enum class Kind { Leaves, Teeth };

    /// Measures all leaves of the stack, which stays as it is, by the venation and the growth curve
    /// of the project: the tables are those of `LeafAnalysis`.
    void measure(LMXStack& stack, const ProjectConfig& project);

    /// Reads a table that was written before, of leaves or of teeth, and leaves the other one as it
    /// is. Returns which of the two it was. Raises `FileReadError`, and `FileFormatError` for a file
    /// without a column of slices.
    Kind load(const std::string& filename);

    void clear();

    const DataSet& table(Kind kind) const { return part(kind).table; }

    /// Index of the slice that a row of the table tells of; -1 if the stack has none of its name.
    int slice(Kind kind, int row, const LMXStack& stack) const;

    /// The unit of lengths in the tables; empty if nothing tells it, as of tables from files.
    const std::string& lengthUnit() const { return lengthUnit_; }

    /// The slices that the last measuring found no contour, two junctions or apex on.
    const std::vector<std::string>& leftOut() const { return leftOut_; }

    /// The slices without a pixel size where others have one: their lengths are in pixels.
    const std::vector<std::string>& inPixels() const { return inPixels_; }

    /// Where the command line puts the table of a stack file: beside it, under its name.
    static std::string usualPath(Kind kind, const LMXStack& stack);

private:
    struct Part
    {
        DataSet table;
        std::vector<int> slices; // one a row; empty for a table from a file
    };

    const Part& part(Kind kind) const { return kind == Kind::Leaves ? leaves_ : teeth_; }

    Part leaves_;
    Part teeth_;
    std::string lengthUnit_;
    std::vector<std::string> leftOut_;
    std::vector<std::string> inPixels_;
};
