#pragma once

#include "image/sources/mosaicgrid.h"

#include <string>

class Colormap;
class Image0;
template <class T>
class BoundingBox;

/// The older kind of a grid of files, with name and path of each file kept apart. Empty cells are
/// black; a row or column without any file has size 0. Copies are deep.
class ImageMosaic
{
public:
    /// An empty grid; a negative size counts as 0.
    ImageMosaic(int rows, int cols);
    ImageMosaic(const ImageMosaic& other);
    ImageMosaic& operator=(const ImageMosaic& other);
    ~ImageMosaic();

    int getRows() const { return grid_.rowHeights().getSize(); }

    int getCols() const { return grid_.colWidths().getSize(); }

    /// Fills a cell, with the rules and errors of `ImageSourceFileMosaic::setFilename`.
    void setItemFilename(int row, int col, const std::string& name, const std::string& path);

    /// Empty for an empty cell, as is the path. Both raise `RangeError` outside the grid.
    std::string getItemFilename(int row, int col) const;
    std::string getItemPathname(int row, int col) const;

    /// The path of the first filled cell, row by row; empty without one.
    std::string getImageDirName() const;

    bool isEmpty() const;

    /// Sum of the row heights.
    int getHeight() const;

    /// Sum of the column widths.
    int getWidth() const;

    /// Depth and colormap are those of the first filled cell; 0 and null without one.
    int getDepth() const;
    const Colormap* getColormap() const;

    /// (0, 0) to (width - 1, height - 1).
    BoundingBox<int> boundingBox() const;

    const Vector<int>& rowHeights() const { return grid_.rowHeights(); }

    const Vector<int>& colWidths() const { return grid_.colWidths(); }

    /// Empties all cells and zeroes the sizes; the grid keeps its shape.
    void clear();

    /// Reads all files into one image.
    void load(Image0& image) const;

private:
    MosaicGrid<ImageMosaicItem> grid_;
};
