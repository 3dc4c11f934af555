#include "image/sources/imagesourcevoxelmatrixfileplane.h"

#include "image/pixels/voxelmatrix.h"

ImageSource* ImageSourceVoxelMatrixFilePlane::clone() const
{
    return new ImageSourceVoxelMatrixFilePlane(*this);
}

int ImageSourceVoxelMatrixFilePlane::getType() const
{
    return 3;
}

bool ImageSourceVoxelMatrixFilePlane::isDefined() const
{
    return !filename_.empty() && getPlane() >= 0;
}

void ImageSourceVoxelMatrixFilePlane::setVoxelMatrixFilename(const std::string& filename)
{
    filename_ = filename;
    VoxelMatrix<float> header;
    header.loadHeader(filename);
    setVolumeSize(header.getSize());
}
