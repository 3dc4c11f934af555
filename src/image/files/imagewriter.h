#pragma once

#include "image/files/abstractimageio.h"

#include <string>

class Image0;
class Image2;
class ImageHeader;

/// Writes images as TIFF, whatever the suffix of the path.
///
/// The file is written under a temporary name in the same folder and takes its name when it is
/// whole: a failure leaves an earlier file as it was. Every operation raises `FileWriteError`
/// naming the file when it exists and `overwrite` is false, or when it can't be written.
class ImageWriter : public virtual AbstractImageIO
{
public:
    ImageWriter();

    /// What the images are made from: the pages state it, and their file is brought to the disk at
    /// once, as the only copy of it. See `tiffOrigin`.
    void setOrigin(const std::string& text) { origin_ = text; }

    /// One page. A 16-bit image is written as two 8-bit samples and does not read back as one.
    void write(const Image0& image, const std::string& path, bool overwrite);

    /// The same without loss in less room: LZW on the differences of neighbouring pixels, which makes
    /// a photograph about half as long.
    void writeCompressed(const Image0& image, const std::string& path, bool overwrite);

    /// All frames, a directory for each plane, with the description that ImageJ reads; BigTIFF from
    /// 2 GiB on, LZW with `compress`.
    void write(const Image2& image, const std::string& path, bool compress, bool overwrite);

protected:
    void writeTIFFHeader(const ImageHeader& header, TIFF* tif);
    void writeTIFFPixels(const Image0& image, TIFF* tif);
    void writeTIFFColormap(const ImageHeader& header, TIFF* tif);
    void writeTiffCalibration(const ImageHeader& header, TIFF* tif);
    void writeTIFF(const Image0& image, TIFF* tif);
    void writeTIFF(const Image2& image, TIFF* tif, bool compress);
    void writeTiffData(const Image2& image, TIFF* tif, bool compress);

private:
    std::string origin_;
};
