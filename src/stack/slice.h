#pragma once

#include "image/values/pixelcalibration.h"
#include "shape/vertices/boundingbox.h"

#include <memory>
#include <string>

class Image0;
class ImageSource;

/// A named image: where its pixels come from and how large they are.
///
/// It holds no pixels but a description of their source, which it owns. Pixels that are not square
/// are made so when the image is read: `width()` and `height()` are the corrected size, and all
/// coordinates on a slice are in corrected pixels.
class Slice
{
public:
    Slice();

    /// A copy has a source of its own, or none if `other` has none.
    Slice(const Slice& other);
    Slice& operator=(const Slice& other);
    virtual ~Slice();

    const std::string& getName() const { return name; }

    void setName(const std::string& newName) { name = newName; }

    const std::string& getAnnotation() const { return annotation; }

    void setAnnotation(const std::string& text) { annotation = text; }

    /// Without a source: `ProgramError` "This slice has no image source".
    const ImageSource& getImageSource() const;

    /// Keeps a clone of the source in place of the old one.
    void setImageSource(const ImageSource& source);

    /// There is no source, or one that names no image.
    bool isEmpty() const;

    const PixelCalibration& getPixelCalibration() const { return pixelCalibration; }

    void setPixelCalibration(const PixelCalibration& calibration)
    {
        pixelCalibration = calibration;
    }

    /// Columns of the corrected image. Here and in the operations below a slice without a source
    /// raises the error of `getImageSource`, an aspect ratio that is not positive `ValueError`.
    int width() const;

    /// Rows of the corrected image.
    int height() const;

    /// From (0, 0) to (width - 1, height - 1).
    BoundingBox<int> boundingBox() const;

    /// Shrinks one side of a requested size, so that it has the proportions of this slice.
    void sizeForSize(unsigned& w, unsigned& h) const;

    /// Reads the image and brings it to the corrected size by taking the nearest pixels.
    void load(Image0& image) const;

private:
    std::string name = "<slice>";
    std::string annotation;
    std::unique_ptr<ImageSource> imageSource;
    PixelCalibration pixelCalibration;
};
