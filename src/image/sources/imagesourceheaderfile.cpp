#include "image/sources/imagesourceheaderfile.h"

#include "image/files/headerloading.h"
#include "image/values/imageheader.h"
#include "system/exception.h"

ImageSourceHeaderFile::ImageSourceHeaderFile() = default;

ImageSourceHeaderFile::ImageSourceHeaderFile(const ImageSourceHeaderFile& other)
    : ImageSource(other)
    , header_(copyOf(other.header_))
    , filename_(other.filename_)
{}

ImageSourceHeaderFile& ImageSourceHeaderFile::operator=(const ImageSourceHeaderFile& other)
{
    if (this != &other) {
        header_ = copyOf(other.header_);
        filename_ = other.filename_;
    }
    return *this;
}

ImageSourceHeaderFile::~ImageSourceHeaderFile() = default;

bool ImageSourceHeaderFile::isDefined() const
{
    return !filename_.empty();
}

int ImageSourceHeaderFile::getSize1() const
{
    return header_ ? header_->getHeight() : 0;
}

int ImageSourceHeaderFile::getSize2() const
{
    return header_ ? header_->getWidth() : 0;
}

int ImageSourceHeaderFile::getDepth() const
{
    return header_ ? header_->getDepth() : 0;
}

const Colormap* ImageSourceHeaderFile::getColormap() const
{
    return header_ ? header_->getColormap() : nullptr;
}

void ImageSourceHeaderFile::setFile(const std::string& filename, const char* where)
{
    filename_ = filename;
    loadHeader(header_, filename, where);
}

const ImageHeader& ImageSourceHeaderFile::header(const char* where) const
{
    if (!header_) {
        raise<UsageError>(where, "The image source has no file");
    }
    return *header_;
}
