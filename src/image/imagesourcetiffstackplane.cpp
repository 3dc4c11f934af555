#include "image/imagesourcetiffstackplane.h"

#include "image/headerloading.h"
#include "image/imageheader.h"

ImageSourceTiffStackPlane::ImageSourceTiffStackPlane() = default;

ImageSourceTiffStackPlane::ImageSourceTiffStackPlane(const ImageSourceTiffStackPlane& other)
    : ImageSource(other)
    , header_(copyOf(other.header_))
    , filename_(other.filename_)
    , plane_(other.plane_)
{}

ImageSourceTiffStackPlane&
ImageSourceTiffStackPlane::operator=(const ImageSourceTiffStackPlane& other)
{
    if (this != &other) {
        header_ = copyOf(other.header_);
        filename_ = other.filename_;
        plane_ = other.plane_;
    }
    return *this;
}

ImageSourceTiffStackPlane::~ImageSourceTiffStackPlane() = default;

ImageSource* ImageSourceTiffStackPlane::clone() const
{
    return new ImageSourceTiffStackPlane(*this);
}

int ImageSourceTiffStackPlane::getType() const
{
    return 4;
}

bool ImageSourceTiffStackPlane::isDefined() const
{
    return !filename_.empty();
}

int ImageSourceTiffStackPlane::getSize1() const
{
    return header_ ? header_->getHeight() : 0;
}

int ImageSourceTiffStackPlane::getSize2() const
{
    return header_ ? header_->getWidth() : 0;
}

int ImageSourceTiffStackPlane::getDepth() const
{
    return header_ ? header_->getDepth() : 0;
}

const Colormap* ImageSourceTiffStackPlane::getColormap() const
{
    return header_ ? header_->getColormap() : nullptr;
}

void ImageSourceTiffStackPlane::setTiffStackFilename(const std::string& filename)
{
    filename_ = filename;
    loadHeader(header_, filename,
               "void ImageSourceTiffStackPlane::setTiffStackFilename(const string&)");
}

int ImageSourceTiffStackPlane::getNumImages() const
{
    return header_ ? header_->getPlanes() : 0;
}

const ImageHeader& ImageSourceTiffStackPlane::header(const char* where) const
{
    return requireHeader(header_, where);
}

float ImageSourceTiffStackPlane::getVoxelSizeX() const
{
    return header("float ImageSourceTiffStackPlane::getVoxelSizeX() const").getVoxelSizeX();
}

float ImageSourceTiffStackPlane::getVoxelSizeY() const
{
    return header("float ImageSourceTiffStackPlane::getVoxelSizeY() const").getVoxelSizeY();
}

float ImageSourceTiffStackPlane::getVoxelSizeZ() const
{
    return header("float ImageSourceTiffStackPlane::getVoxelSizeZ() const").getVoxelSizeZ();
}

const PixelCalibration& ImageSourceTiffStackPlane::getPixelCalibration() const
{
    return header("const PixelCalibration& ImageSourceTiffStackPlane::getPixelCalibration() const")
        .getPixelCalibration();
}
