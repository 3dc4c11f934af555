#include "image/values/pixelcalibration.h"

#include <cmath>

void PixelCalibration::clear()
{
    *this = PixelCalibration();
}

void PixelCalibration::setPixelWidth(float width)
{
    pixelWidth_ = width;
    widthUndefined_ = false;
}

void PixelCalibration::setPixelHeight(float height)
{
    pixelHeight_ = height;
    heightUndefined_ = false;
}

void PixelCalibration::setAspectRatio(float ratio)
{
    aspectRatio_ = ratio;
    aspectUndefined_ = false;
}

Vector<float> PixelCalibration::getPixelSize() const
{
    Vector<float> size(2);
    size[0] = pixelHeight_;
    size[1] = pixelWidth_;
    return size;
}

float PixelCalibration::pixelDiagonal() const
{
    return std::sqrt(pixelWidth_ * pixelWidth_ + pixelHeight_ * pixelHeight_);
}

void PixelCalibration::compute()
{
    if (aspectUndefined_) {
        if (!widthUndefined_ && heightUndefined_) {
            pixelHeight_ = pixelWidth_;
        } else if (!widthUndefined_ && !heightUndefined_) {
            aspectRatio_ = pixelHeight_ / pixelWidth_;
        } else if (!heightUndefined_) {
            pixelWidth_ = pixelHeight_;
        }
    } else if (heightUndefined_) {
        pixelHeight_ = aspectRatio_ * pixelWidth_;
    } else if (widthUndefined_) {
        pixelWidth_ = pixelHeight_ / aspectRatio_;
    }
}

bool PixelCalibration::operator==(const PixelCalibration& other) const
{
    return pixelWidth_ == other.pixelWidth_ && pixelHeight_ == other.pixelHeight_ &&
           aspectRatio_ == other.aspectRatio_;
}
