#include "image/sources/imagesourcefilemosaic.h"

#include "image/sources/imagesourcefile.h"

ImageSourceFileMosaic::ImageSourceFileMosaic(int rows, int cols)
    : grid_(rows, cols, "void ImageSourceFileMosaic::setFilename(...)")
{}

ImageSourceFileMosaic::ImageSourceFileMosaic(const ImageSourceFileMosaic& other) = default;

ImageSourceFileMosaic&
ImageSourceFileMosaic::operator=(const ImageSourceFileMosaic& other) = default;

ImageSourceFileMosaic::~ImageSourceFileMosaic() = default;

ImageSource* ImageSourceFileMosaic::clone() const
{
    return new ImageSourceFileMosaic(*this);
}

int ImageSourceFileMosaic::getType() const
{
    return 1;
}

bool ImageSourceFileMosaic::isDefined() const
{
    return grid_.first() != nullptr;
}

int ImageSourceFileMosaic::getSize1() const
{
    return grid_.height();
}

int ImageSourceFileMosaic::getSize2() const
{
    return grid_.width();
}

int ImageSourceFileMosaic::getDepth() const
{
    return grid_.depth();
}

const Colormap* ImageSourceFileMosaic::getColormap() const
{
    return grid_.colormap();
}

void ImageSourceFileMosaic::setFilename(int row, int col, const std::string& filename)
{
    grid_.requireEmpty(row, col);
    grid_.place(row, col, std::make_unique<ImageSourceFile>(filename));
}

std::string ImageSourceFileMosaic::getFilename(int row, int col) const
{
    const ImageSourceFile* const item = grid_.at(row, col);
    return item == nullptr ? "" : item->getFilename();
}

void ImageSourceFileMosaic::clear()
{
    grid_.clear();
}
