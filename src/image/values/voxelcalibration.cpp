#include "image/values/voxelcalibration.h"

VoxelCalibration::VoxelCalibration()
{
    voxelSize_.setOnes(3);
}

void VoxelCalibration::setVoxelSize(const Vector<float>& size)
{
    if (size.getSize() != 3) {
        raise<SizeError>("void VoxelCalibration::setVoxelSize(const Vector<float>&)",
                         "Size vector does not contain three values as expected");
    }
    voxelSize_ = size;
}

PixelCalibration VoxelCalibration::pixelCalibration() const
{
    PixelCalibration calibration;
    calibration.setLengthUnit(lengthUnit_);
    calibration.setPixelWidth(voxelSize_[0]);
    calibration.setPixelHeight(voxelSize_[1]);
    calibration.compute();
    return calibration;
}
