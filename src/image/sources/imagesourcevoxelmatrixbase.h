#pragma once

#include "image/sources/imagesource.h"

/// Base of the sources that are a plane of a volume. The depth is 32 whatever the volume holds:
/// callers take the depth from the image that they read.
class ImageSourceVoxelMatrixBase : public ImageSource
{
public:
    /// Rows of the volume, 0 before one is set.
    int getSize1() const override;

    /// Columns of the volume, 0 before one is set.
    int getSize2() const override;
    int getDepth() const override;
    const Colormap* getColormap() const override;

    void setPlane(int plane) { plane_ = plane; }

    /// -1 until it is set.
    int getPlane() const { return plane_; }

protected:
    ImageSourceVoxelMatrixBase();

    void setVolumeSize(const Vector<int>& size) { volumeSize_ = size; }

private:
    Vector<int> volumeSize_;
    int plane_ = -1;
};
