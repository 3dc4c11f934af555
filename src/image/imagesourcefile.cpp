#include "image/imagesourcefile.h"

#include "image/headerloading.h"
#include "image/imageheader.h"

ImageSourceFile::ImageSourceFile() = default;

ImageSourceFile::ImageSourceFile(const std::string& filename)
{
    setFilename(filename);
}

ImageSourceFile::ImageSourceFile(const ImageSourceFile& other)
    : ImageSource(other)
    , filename_(other.filename_)
    , header_(copyOf(other.header_))
{}

ImageSourceFile& ImageSourceFile::operator=(const ImageSourceFile& other)
{
    if (this != &other) {
        filename_ = other.filename_;
        header_ = copyOf(other.header_);
    }
    return *this;
}

ImageSourceFile::~ImageSourceFile() = default;

ImageSource* ImageSourceFile::clone() const
{
    return new ImageSourceFile(*this);
}

int ImageSourceFile::getType() const
{
    return 0;
}

bool ImageSourceFile::isDefined() const
{
    return !filename_.empty();
}

int ImageSourceFile::getSize1() const
{
    return header_ ? header_->getHeight() : 0;
}

int ImageSourceFile::getSize2() const
{
    return header_ ? header_->getWidth() : 0;
}

int ImageSourceFile::getDepth() const
{
    return header_ ? header_->getDepth() : 0;
}

const Colormap* ImageSourceFile::getColormap() const
{
    return header_ ? std::as_const(*header_).getColormap() : nullptr;
}

void ImageSourceFile::setFilename(const std::string& filename)
{
    filename_ = filename;
    loadHeader(header_, filename, "void ImageSourceFile::setFilename(const string&)");
}

const PixelCalibration& ImageSourceFile::getPixelCalibration() const
{
    return requireHeader(header_,
                         "const PixelCalibration& ImageSourceFile::getPixelCalibration() const")
        .getPixelCalibration();
}
