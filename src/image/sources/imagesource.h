#pragma once

#include "numerics/vector.h"

class Colormap;

/// Where the pixels of a slice come from: a file, a grid of files, or a plane of a larger file or of
/// a volume in memory. A source knows size, depth and colormap without reading the pixels;
/// `ImageReader` turns it into an `Image0`.
class ImageSource
{
public:
    virtual ~ImageSource() = default;

    /// A copy on the heap, owned by the caller.
    virtual ImageSource* clone() const = 0;

    /// The number of the kind: 0 file, 1 mosaic, 2 plane of a voxel matrix, 3 plane of a voxel matrix
    /// file, 4 page of a TIFF stack, 5 plane of an LSM file.
    virtual int getType() const = 0;

    /// Whether the source names something.
    virtual bool isDefined() const = 0;

    /// Height of the image.
    virtual int getSize1() const = 0;

    /// Width of the image.
    virtual int getSize2() const = 0;

    /// Bits a pixel.
    virtual int getDepth() const = 0;

    /// Null when the image has none.
    virtual const Colormap* getColormap() const = 0;

    /// Height, then width.
    Vector<int> getSize() const;

protected:
    ImageSource() = default;
    ImageSource(const ImageSource&) = default;
    ImageSource& operator=(const ImageSource&) = default;
};
