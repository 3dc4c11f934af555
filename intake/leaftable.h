#pragma once

#include <opencv2/core.hpp>

#include <optional>
#include <string>
#include <vector>

/// A row of the table of leaves: where a slice comes from, and how its outline was found.
struct LeafRow
{
    std::string slice;
    std::string photograph; ///< path of the file
    /// Where the slice lies in the photograph, upright; reaches beyond it where a margin was added.
    /// Empty where a table given back leaves it open.
    cv::Rect part;
    std::string background; ///< "dark" or "light"
    std::string channel;    ///< as `ChosenOutline::nameOf`
    std::optional<double> overlap;
    std::optional<double> contrast;
    bool touchesEdge = false;
    std::string scaleSource;          ///< "none", "file", "option", "table", or what was found
    std::optional<double> pixelWidth; ///< in the stack's unit
    std::string venation;             ///< "pinnate", "palmate", or empty for that of the run
    std::optional<int> halfNeighbourhood;
    int line = 0; ///< of the file that it was read from
};

/// The table of leaves, NAME_leaves.tsv: a row a slice, fields parted by TAB, a header line. A run
/// writes it; edited, it is given back as the settings of another run. Then a photograph that has
/// rows gives the slices of these rows, and empty fields are found again.
class LeafTable
{
public:
    LeafTable() = default;

    /// Reads a table given back. Columns may come in any order, only Slice_Name is needed; columns
    /// that are not known are ignored. Raises `FileReadError` and, naming line and column,
    /// `FileFormatError`.
    explicit LeafTable(const std::string& path);

    void add(const LeafRow& row) { rows_.push_back(row); }

    const std::vector<LeafRow>& rows() const { return rows_; }

    const std::string& path() const { return path_; }

    /// The row of a slice, or null.
    const LeafRow* find(const std::string& slice) const;

    /// The rows of a photograph: of its path, or of its file's name where the table has another
    /// folder.
    std::vector<const LeafRow*> rowsOf(const std::string& photograph) const;

    /// Writes the table whole or not at all. Raises `FileWriteError`.
    void write(const std::string& path) const;

private:
    void readRow(const std::vector<std::string>& fields, const std::vector<int>& columns, int line);

    std::string path_;
    std::vector<LeafRow> rows_;
};
