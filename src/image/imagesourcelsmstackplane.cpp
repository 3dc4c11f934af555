#include "image/imagesourcelsmstackplane.h"

#include "image/headerloading.h"
#include "image/imageheader.h"

ImageSourceLSMStackPlane::ImageSourceLSMStackPlane() = default;

ImageSourceLSMStackPlane::ImageSourceLSMStackPlane(const ImageSourceLSMStackPlane& other)
    : ImageSource(other)
    , header_(copyOf(other.header_))
    , filename_(other.filename_)
    , plane_(other.plane_)
    , frame_(other.frame_)
{}

ImageSourceLSMStackPlane& ImageSourceLSMStackPlane::operator=(const ImageSourceLSMStackPlane& other)
{
    if (this != &other) {
        header_ = copyOf(other.header_);
        filename_ = other.filename_;
        plane_ = other.plane_;
        frame_ = other.frame_;
    }
    return *this;
}

ImageSourceLSMStackPlane::~ImageSourceLSMStackPlane() = default;

ImageSource* ImageSourceLSMStackPlane::clone() const
{
    return new ImageSourceLSMStackPlane(*this);
}

int ImageSourceLSMStackPlane::getType() const
{
    return 5;
}

bool ImageSourceLSMStackPlane::isDefined() const
{
    return !filename_.empty();
}

int ImageSourceLSMStackPlane::getSize1() const
{
    return header_ ? header_->getHeight() : 0;
}

int ImageSourceLSMStackPlane::getSize2() const
{
    return header_ ? header_->getWidth() : 0;
}

int ImageSourceLSMStackPlane::getDepth() const
{
    return header_ ? header_->getDepth() : 0;
}

const Colormap* ImageSourceLSMStackPlane::getColormap() const
{
    return header_ ? header_->getColormap() : nullptr;
}

void ImageSourceLSMStackPlane::setLSMStackFilename(const std::string& filename)
{
    filename_ = filename;
    loadHeader(header_, filename,
               "void ImageSourceLSMStackPlane::setLSMStackFilename(const string&)");
}

int ImageSourceLSMStackPlane::getNumImages() const
{
    return header_ ? header_->getPlanes() : 0;
}

const ImageHeader& ImageSourceLSMStackPlane::header(const char* where) const
{
    return requireHeader(header_, where);
}

int ImageSourceLSMStackPlane::getChannel() const
{
    return header_ ? header_->getChannels() : 0;
}

float ImageSourceLSMStackPlane::getVoxelSizeZ() const
{
    return header("float ImageSourceLSMStackPlane::getVoxelSizeZ() const").getVoxelSizeZ();
}

int ImageSourceLSMStackPlane::getNewSubFileType() const
{
    return header("int ImageSourceLSMStackPlane::getNewSubFileType() const").getNewSubFileType();
}

const PixelCalibration& ImageSourceLSMStackPlane::getPixelCalibration() const
{
    return header("const PixelCalibration& ImageSourceLSMStackPlane::getPixelCalibration() const")
        .getPixelCalibration();
}
