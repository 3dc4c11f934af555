#include "image/sources/imagesourcevoxelmatrixplane.h"

#include "image/pixels/voxelmatrix.h"
#include "system/exception.h"

ImageSource* ImageSourceVoxelMatrixPlane::clone() const
{
    return new ImageSourceVoxelMatrixPlane(*this);
}

int ImageSourceVoxelMatrixPlane::getType() const
{
    return 2;
}

bool ImageSourceVoxelMatrixPlane::isDefined() const
{
    return matrix_ != nullptr && getPlane() >= 0;
}

void ImageSourceVoxelMatrixPlane::setVoxelMatrix(VoxelMatrix<float>& matrix)
{
    matrix_ = &matrix;
    setVolumeSize(matrix.getSize());
}

VoxelMatrix<float>& ImageSourceVoxelMatrixPlane::getVoxelMatrix() const
{
    if (matrix_ == nullptr) {
        raise<UsageError>("VoxelMatrix<float>& ImageSourceVoxelMatrixPlane::getVoxelMatrix() const",
                          "The image source has no volume");
    }
    return *matrix_;
}
