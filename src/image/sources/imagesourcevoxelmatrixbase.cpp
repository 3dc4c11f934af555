#include "image/sources/imagesourcevoxelmatrixbase.h"

ImageSourceVoxelMatrixBase::ImageSourceVoxelMatrixBase()
{
    volumeSize_.setZeros(3);
}

int ImageSourceVoxelMatrixBase::getSize1() const
{
    return volumeSize_[0];
}

int ImageSourceVoxelMatrixBase::getSize2() const
{
    return volumeSize_[1];
}

int ImageSourceVoxelMatrixBase::getDepth() const
{
    return 32;
}

const Colormap* ImageSourceVoxelMatrixBase::getColormap() const
{
    return nullptr;
}
