#include "image/values/spatialcalibration.h"

#include <cmath>

SpatialCalibration::SpatialCalibration()
{
    position_.setZeros(3);
}

void SpatialCalibration::setSize(float size1, float size2, float size3)
{
    size1_ = size1;
    size2_ = size2;
    size3_ = size3;
}

void SpatialCalibration::setSize(const Vector<float>& size)
{
    if (size.getSize() < 2) {
        raise<SizeError>("void SpatialCalibration::setSize(const Vector<float>&)",
                         "The specified size is neither a 2D nor a 3D size");
    }
    setSize(size[0], size[1], size.getSize() < 3 ? 1.0F : size[2]);
}

Vector<float> SpatialCalibration::getSize() const
{
    Vector<float> size(3);
    size[0] = size1_;
    size[1] = size2_;
    size[2] = size3_;
    return size;
}

void SpatialCalibration::setPosition(const Vector<float>& position)
{
    const int dimension = position.getSize();
    if (dimension != 2 && dimension != 3) {
        raise<SizeError>("void SpatialCalibration::setPosition(const Vector<float>&)",
                         "The specified position is neither a 2D nor a 3D position");
    }
    position_[0] = position[0];
    position_[1] = position[1];
    position_[2] = dimension == 3 ? position[2] : 0.0F;
}

void SpatialCalibration::reset()
{
    setSize(1.0F, 1.0F, 1.0F);
    position_.setZeros();
}

float SpatialCalibration::pixelDiagonal() const
{
    return std::sqrt(size1_ * size1_ + size2_ * size2_);
}

float SpatialCalibration::voxelDiagonal() const
{
    return std::sqrt(size1_ * size1_ + size2_ * size2_ + size3_ * size3_);
}
