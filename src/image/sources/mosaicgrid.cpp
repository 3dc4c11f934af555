#include "image/sources/mosaicgrid.h"

#include "image/sources/imagemosaicitem.h"
#include "image/sources/imagesourcefile.h"
#include "image/values/colormap.h"
#include "image/values/imageerrors.h"

#include <algorithm>

namespace {

int heightOf(const ImageSourceFile& item)
{
    return item.getSize1();
}

int widthOf(const ImageSourceFile& item)
{
    return item.getSize2();
}

int heightOf(const ImageMosaicItem& item)
{
    return item.getHeight();
}

int widthOf(const ImageMosaicItem& item)
{
    return item.getWidth();
}

int total(const Vector<int>& sizes)
{
    return sizes.getSize() == 0 ? 0 : sizes.sum();
}

bool sameColormap(const Colormap* a, const Colormap* b)
{
    return a == nullptr || b == nullptr ? a == b : *a == *b;
}

} // namespace

template <class Item>
MosaicGrid<Item>::MosaicGrid(int rows, int cols, const char* where)
    : where_(where)
{
    rowHeights_.setZeros(std::max(rows, 0));
    colWidths_.setZeros(std::max(cols, 0));
    items_.resize(static_cast<std::size_t>(rowHeights_.getSize()) *
                  static_cast<std::size_t>(colWidths_.getSize()));
}

template <class Item>
MosaicGrid<Item>::MosaicGrid(const MosaicGrid& other)
    : where_(other.where_)
    , rowHeights_(other.rowHeights_)
    , colWidths_(other.colWidths_)
{
    for (const std::unique_ptr<Item>& item : other.items_) {
        items_.push_back(item ? std::make_unique<Item>(*item) : nullptr);
    }
}

template <class Item>
MosaicGrid<Item>& MosaicGrid<Item>::operator=(const MosaicGrid& other)
{
    MosaicGrid copy(other);
    where_ = copy.where_;
    items_.swap(copy.items_);
    rowHeights_.swap(copy.rowHeights_);
    colWidths_.swap(copy.colWidths_);
    return *this;
}

template <class Item>
MosaicGrid<Item>::~MosaicGrid() = default;

template <class Item>
std::size_t MosaicGrid<Item>::index(int row, int col) const
{
    if (row < 0 || row >= rowHeights_.getSize() || col < 0 || col >= colWidths_.getSize()) {
        raise<RangeError>(where_, "Mosaic position out of range");
    }
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(colWidths_.getSize()) +
           static_cast<std::size_t>(col);
}

template <class Item>
int MosaicGrid<Item>::height() const
{
    return total(rowHeights_);
}

template <class Item>
int MosaicGrid<Item>::width() const
{
    return total(colWidths_);
}

template <class Item>
int MosaicGrid<Item>::depth() const
{
    const Item* const item = first();
    return item == nullptr ? 0 : item->getDepth();
}

template <class Item>
const Colormap* MosaicGrid<Item>::colormap() const
{
    const Item* const item = first();
    return item == nullptr ? nullptr : item->getColormap();
}

template <class Item>
const Item* MosaicGrid<Item>::at(int row, int col) const
{
    return items_[index(row, col)].get();
}

template <class Item>
const Item* MosaicGrid<Item>::first() const
{
    for (const std::unique_ptr<Item>& item : items_) {
        if (item) {
            return item.get();
        }
    }
    return nullptr;
}

template <class Item>
void MosaicGrid<Item>::requireEmpty(int row, int col) const
{
    if (at(row, col) != nullptr) {
        raise<ValueError>(where_, "Mosaic position already set");
    }
}

template <class Item>
void MosaicGrid<Item>::place(int row, int col, std::unique_ptr<Item> item)
{
    if (first() != nullptr) {
        if (item->getDepth() != depth()) {
            raise<DepthError>(where_, "Incompatible image depths");
        }
        if (!sameColormap(item->getColormap(), colormap())) {
            raise<ColormapError>(where_, "Incompatible colormaps");
        }
    }
    const std::size_t cell = index(row, col);
    const int rowHeight = rowHeights_[row] == 0 ? heightOf(*item) : rowHeights_[row];
    const int colWidth = colWidths_[col] == 0 ? widthOf(*item) : colWidths_[col];
    // An item that is refused leaves no size behind in an empty row or column.
    if (heightOf(*item) != rowHeight || widthOf(*item) != colWidth) {
        raise<SizeError>(where_, "Incompatible image dimensions");
    }
    rowHeights_[row] = rowHeight;
    colWidths_[col] = colWidth;
    items_[cell] = std::move(item);
}

template <class Item>
void MosaicGrid<Item>::clear()
{
    for (std::unique_ptr<Item>& item : items_) {
        item.reset();
    }
    rowHeights_.setZeros();
    colWidths_.setZeros();
}

template class MosaicGrid<ImageMosaicItem>;
template class MosaicGrid<ImageSourceFile>;
