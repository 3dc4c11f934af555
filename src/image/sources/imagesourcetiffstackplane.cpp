#include "image/sources/imagesourcetiffstackplane.h"

#include "image/values/imageheader.h"

ImageSourceTiffStackPlane::ImageSourceTiffStackPlane() = default;

ImageSource* ImageSourceTiffStackPlane::clone() const
{
    return new ImageSourceTiffStackPlane(*this);
}

int ImageSourceTiffStackPlane::getType() const
{
    return 4;
}

void ImageSourceTiffStackPlane::setTiffStackFilename(const std::string& filename)
{
    setFile(filename, "void ImageSourceTiffStackPlane::setTiffStackFilename(const string&)");
}

int ImageSourceTiffStackPlane::getNumImages() const
{
    return header() != nullptr ? header()->getPlanes() : 0;
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
