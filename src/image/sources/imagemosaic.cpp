#include "image/sources/imagemosaic.h"

#include "image/pixels/image0.h"
#include "image/sources/imagemosaicitem.h"
#include "shape/vertices/boundingbox.h"
#include "system/exception.h"

ImageMosaic::ImageMosaic(int rows, int cols)
    : grid_(rows, cols, "void ImageMosaic::setItemFileName(...)")
{}

ImageMosaic::ImageMosaic(const ImageMosaic& other) = default;

ImageMosaic& ImageMosaic::operator=(const ImageMosaic& other) = default;

ImageMosaic::~ImageMosaic() = default;

void ImageMosaic::setItemFilename(int row,
                                  int col,
                                  const std::string& name,
                                  const std::string& path)
{
    grid_.requireEmpty(row, col);
    auto item = std::make_unique<ImageMosaicItem>();
    item->setFilename(name, path);
    grid_.place(row, col, std::move(item));
}

std::string ImageMosaic::getItemFilename(int row, int col) const
{
    const ImageMosaicItem* const item = grid_.at(row, col);
    return item == nullptr ? "" : item->getFilename();
}

std::string ImageMosaic::getItemPathname(int row, int col) const
{
    const ImageMosaicItem* const item = grid_.at(row, col);
    return item == nullptr ? "" : item->getPathname();
}

std::string ImageMosaic::getImageDirName() const
{
    const ImageMosaicItem* const item = grid_.first();
    return item == nullptr ? "" : item->getPathname();
}

bool ImageMosaic::isEmpty() const
{
    return grid_.first() == nullptr;
}

int ImageMosaic::getHeight() const
{
    return grid_.height();
}

int ImageMosaic::getWidth() const
{
    return grid_.width();
}

int ImageMosaic::getDepth() const
{
    return grid_.depth();
}

const Colormap* ImageMosaic::getColormap() const
{
    return grid_.colormap();
}

BoundingBox<int> ImageMosaic::boundingBox() const
{
    Vector<int> first(2);
    first.setZeros();
    Vector<int> last(2);
    last[0] = getWidth() - 1;
    last[1] = getHeight() - 1;
    return BoundingBox<int>(first, last);
}

void ImageMosaic::clear()
{
    grid_.clear();
}

void ImageMosaic::load(Image0& image) const
{
    if (getRows() == 1 && getCols() == 1 && !isEmpty()) {
        try {
            grid_.first()->load(image);
        } catch (Exception& exception) {
            exception.addWhere("void ImageMosaic::load(Image0&) const");
            throw;
        }
        return;
    }
    image.init(getWidth(), getHeight(), getDepth());
    image.setGrayscale(0);
    if (getColormap() != nullptr) {
        image.setColormap(*getColormap());
    }
    image.clear();
    for (int row = 0, y = 0; row < getRows(); y += rowHeights()[row++]) {
        for (int col = 0, x = 0; col < getCols(); x += colWidths()[col++]) {
            const ImageMosaicItem* const item = grid_.at(row, col);
            if (item != nullptr) {
                Image0 cell;
                item->load(cell);
                image.paste(cell, x, y);
            }
        }
    }
}
