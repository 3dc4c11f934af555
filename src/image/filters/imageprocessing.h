#pragma once

#include "image/values/valuetype.h"

#include <map>

class Image2;

/// An operation on a general image, which chooses the implementation for the image's value type.
/// Derived classes fill the map; an operation without an implementation for a type raises
/// `UsageError` for such images.
class ImageProcessing
{
public:
    /// The operation for one value type, on an image of one sample an element.
    class AbstractImplementation
    {
    public:
        virtual ~AbstractImplementation();
        virtual void apply(Image2& image) = 0;
    };

    ImageProcessing();
    virtual ~ImageProcessing();
    ImageProcessing(const ImageProcessing&) = delete;
    ImageProcessing& operator=(const ImageProcessing&) = delete;

    /// Whether the operation has a meaning for this image; and whether it keeps the size of images
    /// of several samples. True here.
    virtual bool canProcess(const Image2& image) const;
    virtual bool canProcessInplace(const Image2& image) const;

    /// Works on the image, or on each sample of the current frame by itself. Where the operation
    /// can't work in place the image becomes one frame of the size and calibration that the first
    /// sample takes.
    virtual void apply(Image2& image);

    /// Milliseconds that the last `apply` took.
    long getDuration() const { return duration; }

protected:
    void destroyImplementations();

    /// Owned.
    std::map<ValueType, AbstractImplementation*> implementations;

private:
    long duration = 0;
};
