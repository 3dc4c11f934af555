#pragma once

#include "image/values/lengthunit.h"
#include "image/values/pixelcalibration.h"
#include "numerics/vector.h"

/// The physical size of a voxel, 1 x 1 x 1 metre at first. The voxel size as a vector is height,
/// width, depth.
class VoxelCalibration
{
public:
    VoxelCalibration();

    void setLengthUnit(const LengthUnit& unit) { lengthUnit_ = unit; }

    const LengthUnit& getLengthUnit() const { return lengthUnit_; }

    void setVoxelHeight(float height) { voxelSize_[0] = height; }

    float getVoxelHeight() const { return voxelSize_[0]; }

    void setVoxelWidth(float width) { voxelSize_[1] = width; }

    float getVoxelWidth() const { return voxelSize_[1]; }

    void setVoxelDepth(float depth) { voxelSize_[2] = depth; }

    float getVoxelDepth() const { return voxelSize_[2]; }

    /// `SizeError` unless the vector has three elements.
    void setVoxelSize(const Vector<float>& size);

    const Vector<float>& getVoxelSize() const { return voxelSize_; }

    /// The calibration of a plane, in the same unit: element 0 of the voxel size becomes the pixel
    /// width and element 1 the pixel height, the other way round than in `getVoxelSize`.
    PixelCalibration pixelCalibration() const;

private:
    LengthUnit lengthUnit_;
    Vector<float> voxelSize_;
};
