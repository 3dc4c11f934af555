#pragma once

#include "numerics/vector.h"

#include <memory>
#include <string>
#include <vector>

class Colormap;

/// The cells of a mosaic: a grid of owned items, null where empty, with the height of each row and
/// the width of each column, 0 without any item. Copies are deep. `Item` is `ImageSourceFile` or
/// `ImageMosaicItem`. Cells outside the grid raise `RangeError`.
template <class Item>
class MosaicGrid
{
public:
    /// `where` names the operation that fills cells, in the errors of `place`.
    MosaicGrid(int rows, int cols, const char* where);
    MosaicGrid(const MosaicGrid& other);
    MosaicGrid& operator=(const MosaicGrid& other);
    ~MosaicGrid();

    const Vector<int>& rowHeights() const { return rowHeights_; }

    const Vector<int>& colWidths() const { return colWidths_; }

    int height() const;
    int width() const;
    int depth() const;
    const Colormap* colormap() const;

    const Item* at(int row, int col) const;

    /// The first item, row by row; null without one.
    const Item* first() const;

    /// Raises `ValueError` unless the cell is empty.
    void requireEmpty(int row, int col) const;

    /// Puts the item into an empty cell. Raises `DepthError`, `ColormapError` or `SizeError`, and
    /// changes nothing, when it does not fit the others.
    void place(int row, int col, std::unique_ptr<Item> item);
    void clear();

private:
    std::size_t index(int row, int col) const;

    const char* where_;
    std::vector<std::unique_ptr<Item>> items_;
    Vector<int> rowHeights_;
    Vector<int> colWidths_;
};

class ImageMosaicItem;
class ImageSourceFile;

extern template class MosaicGrid<ImageMosaicItem>;
extern template class MosaicGrid<ImageSourceFile>;
