#pragma once

#include "image/values/lengthunit.h"
#include "numerics/vector.h"

/// The physical size of a pixel. Each of width, height and aspect ratio (height / width) is 1 and
/// counts as undefined until it is set; `compute` derives what is undefined from the rest.
class PixelCalibration
{
public:
    PixelCalibration() = default;

    /// Back to the state of a new object, the metre included.
    void clear();

    /// The three setters make the value a defined one.
    void setPixelWidth(float width);
    void setPixelHeight(float height);
    void setAspectRatio(float ratio);

    /// Size along a row.
    float getPixelWidth() const { return pixelWidth_; }

    /// Size along a column.
    float getPixelHeight() const { return pixelHeight_; }

    float getAspectRatio() const { return aspectRatio_; }

    void setLengthUnit(const LengthUnit& unit) { lengthUnit_ = unit; }

    const LengthUnit& getLengthUnit() const { return lengthUnit_; }

    /// Height, then width.
    Vector<float> getPixelSize() const;

    float pixelDiagonal() const;

    /// Fills in what is undefined: of a single length, a square pixel; of both lengths, the aspect
    /// ratio; of the aspect ratio and one length, the other one. A defined aspect ratio wins where
    /// the height is undefined, whether the width was set or not. What was derived still counts as
    /// undefined.
    void compute();

    /// Compares width, height and aspect ratio, but neither unit nor what is undefined.
    bool operator==(const PixelCalibration& other) const;

    bool operator!=(const PixelCalibration& other) const { return !(*this == other); }

private:
    float pixelWidth_ = 1.0F;
    float pixelHeight_ = 1.0F;
    float aspectRatio_ = 1.0F;
    bool widthUndefined_ = true;
    bool heightUndefined_ = true;
    bool aspectUndefined_ = true;
    LengthUnit lengthUnit_;
};
