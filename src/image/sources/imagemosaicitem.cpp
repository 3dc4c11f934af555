#include "image/sources/imagemosaicitem.h"

#include "image/files/headerloading.h"
#include "image/files/imagereader.h"
#include "image/pixels/image0.h"

ImageMosaicItem::ImageMosaicItem() = default;

ImageMosaicItem::ImageMosaicItem(const ImageMosaicItem& other)
    : filename_(other.filename_)
    , pathname_(other.pathname_)
    , header_(copyOf(other.header_))
{}

ImageMosaicItem& ImageMosaicItem::operator=(const ImageMosaicItem& other)
{
    if (this != &other) {
        filename_ = other.filename_;
        pathname_ = other.pathname_;
        header_ = copyOf(other.header_);
    }
    return *this;
}

ImageMosaicItem::~ImageMosaicItem() = default;

void ImageMosaicItem::setFilename(const std::string& name, const std::string& path)
{
    filename_ = name;
    pathname_ = path;
    loadHeader(header_, path.empty() ? name : path + "/" + name,
               "void ImageMosaicItem::setFilename(const string&, const string&)");
}

int ImageMosaicItem::getWidth() const
{
    return header_ ? header_->getWidth() : 0;
}

int ImageMosaicItem::getHeight() const
{
    return header_ ? header_->getHeight() : 0;
}

int ImageMosaicItem::getDepth() const
{
    return header_ ? header_->getDepth() : 0;
}

const Colormap* ImageMosaicItem::getColormap() const
{
    return header_ ? header_->getColormap() : nullptr;
}

void ImageMosaicItem::load(Image0& image) const
{
    ImageReader().read(image, completeFileName());
}
