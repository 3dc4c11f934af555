#pragma once

#include "support/leaf.h"
#include "support/temporaryfolder.h"

#include <string>
#include <vector>

/// A folder with drawn leaf photographs, dark background, and the table of their junctions.
class LeafFolder : public TemporaryFolder
{
public:
    /// Draws a leaf with this many teeth on either side, writes it as `<name>.tif` and remembers its
    /// junctions. Gives the path of the photograph.
    std::string addLeaf(const std::string& name, int teethPerSide = 4);

    /// A photograph with nothing on it but its background.
    std::string addBlank(const std::string& name);

    /// A row of the table, with the places as texts.
    void addJunctions(const std::string& name, const std::vector<std::string>& places);

    /// Writes the table of the rows so far and gives its path.
    std::string writeJunctions(const std::string& file = "junctions.tsv") const;

    /// Stack "s.sdf" of these photographs, with contours and junctions, made by the command.
    std::string makeStack(const std::vector<std::string>& photographs) const;

    /// The same with the sinuses, and with the tips if wanted.
    std::string makeLandmarks(const std::vector<std::string>& photographs, bool tips = true) const;

    const leaf::Outline& outline(std::size_t i) const { return outlines_[i]; }

    /// The photographs added so far.
    const std::vector<std::string>& photographs() const { return photographs_; }

private:
    std::string table_ = "Slice_Name\tX1\tY1\tX2\tY2\n";
    std::vector<std::string> photographs_;
    std::vector<leaf::Outline> outlines_;
};

/// Arguments from pieces.
std::vector<std::string> joined(std::vector<std::string> first,
                                const std::vector<std::string>& second);

/// The bytes of a file.
std::string bytesOf(const std::string& path);

/// Columns and rows of a table of measures.
std::vector<std::vector<std::string>> tableOf(const std::string& path);

/// The column of this name, without its name.
std::vector<std::string> columnOf(const std::string& path, const std::string& column);

/// The cell of the row whose first field is `name`.
std::string cellOf(const std::string& path, const std::string& name, const std::string& column);
