#include "image/sources/imagesourcelsmstackplane.h"

#include "image/values/imageheader.h"

ImageSourceLSMStackPlane::ImageSourceLSMStackPlane() = default;

ImageSource* ImageSourceLSMStackPlane::clone() const
{
    return new ImageSourceLSMStackPlane(*this);
}

int ImageSourceLSMStackPlane::getType() const
{
    return 5;
}

void ImageSourceLSMStackPlane::setLSMStackFilename(const std::string& filename)
{
    setFile(filename, "void ImageSourceLSMStackPlane::setLSMStackFilename(const string&)");
}

int ImageSourceLSMStackPlane::getNumImages() const
{
    return header() != nullptr ? header()->getPlanes() : 0;
}

int ImageSourceLSMStackPlane::getChannel() const
{
    return header() != nullptr ? header()->getChannels() : 0;
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
