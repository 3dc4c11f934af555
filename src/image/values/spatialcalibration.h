#pragma once

#include "image/values/lengthunit.h"
#include "numerics/vector.h"

/// Size of a sample along each of the three axes of an image and the place of the image in space,
/// in one length unit. At first 1 x 1 x 1 metre at the origin.
class SpatialCalibration
{
public:
    SpatialCalibration();

    void setLengthUnit(const LengthUnit& unit) { lengthUnit_ = unit; }

    const LengthUnit& getLengthUnit() const { return lengthUnit_; }

    void setSize1(float size) { size1_ = size; }

    void setSize2(float size) { size2_ = size; }

    void setSize3(float size) { size3_ = size; }

    void setSize(float size1, float size2, float size3);

    /// Two or three elements; of two, the third size becomes 1. `SizeError` for fewer.
    void setSize(const Vector<float>& size);

    float getSize1() const { return size1_; }

    float getSize2() const { return size2_; }

    float getSize3() const { return size3_; }

    /// All three sizes.
    Vector<float> getSize() const;

    /// Two or three elements (`SizeError`); of two, the third coordinate becomes 0.
    void setPosition(const Vector<float>& position);

    /// Always three elements.
    const Vector<float>& getPosition() const { return position_; }

    /// Sizes 1 and position 0; the unit stays.
    void reset();

    float pixelDiagonal() const;
    float voxelDiagonal() const;

    float pixelArea() const { return size1_ * size2_; }

    float voxelVolume() const { return size1_ * size2_ * size3_; }

private:
    float size1_ = 1.0F;
    float size2_ = 1.0F;
    float size3_ = 1.0F;
    LengthUnit lengthUnit_;
    Vector<float> position_;
};
