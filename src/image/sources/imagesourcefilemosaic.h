#pragma once

#include "image/sources/imagesource.h"
#include "image/sources/mosaicgrid.h"

#include <string>

/// A grid of image files that form one image. Empty cells are black; a row or column without any
/// file has size 0. Copies are deep.
class ImageSourceFileMosaic : public ImageSource
{
public:
    /// An empty grid; a negative size counts as 0.
    ImageSourceFileMosaic(int rows, int cols);
    ImageSourceFileMosaic(const ImageSourceFileMosaic& other);
    ImageSourceFileMosaic& operator=(const ImageSourceFileMosaic& other);
    ~ImageSourceFileMosaic() override;

    ImageSource* clone() const override;
    int getType() const override;

    /// Whether any cell is filled.
    bool isDefined() const override;

    /// Sum of the row heights.
    int getSize1() const override;

    /// Sum of the column widths.
    int getSize2() const override;

    /// Depth and colormap are those of the first filled cell, row by row; 0 and null without one.
    int getDepth() const override;
    const Colormap* getColormap() const override;

    int getRows() const { return grid_.rowHeights().getSize(); }

    int getCols() const { return grid_.colWidths().getSize(); }

    /// Fills a cell and reads the header of its file. The first file of a row or column sets its
    /// height or width. Raises `RangeError` outside the grid, `ValueError` when the cell is filled,
    /// `DepthError`, `ColormapError` or `SizeError` when the file does not fit the others; the cell
    /// then stays empty.
    void setFilename(int row, int col, const std::string& filename);

    /// Empty for an empty cell. Raises `RangeError` outside the grid.
    std::string getFilename(int row, int col) const;

    const Vector<int>& rowHeights() const { return grid_.rowHeights(); }

    const Vector<int>& colWidths() const { return grid_.colWidths(); }

    /// Empties all cells and zeroes the sizes; the grid keeps its shape.
    void clear();

private:
    MosaicGrid<ImageSourceFile> grid_;
};
