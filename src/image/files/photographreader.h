#pragma once

#include "image/files/imagereader.h"
#include "image/values/pixelcalibration.h"

/// What the tags of a page tell one who wants to see it.
struct TiffPage
{
    int width = 0;
    int height = 0;
    int bits = 1;
    int samples = 1;
    int orientation = 1;          ///< the tag's number, 1 for upright
    bool isPalette = false;       ///< the samples are places in a colormap
    bool isWhiteZero = false;     ///< 0 is white
    bool isSeparate = false;      ///< the samples of a pixel lie in planes of their own
    bool hasAlpha = false;        ///< the last sample is an opacity
    bool isUnsigned = true;       ///< the samples are unsigned integers
    bool isInteger = true;        ///< the samples are integers
    bool isOtherColour = false;   ///< neither grey, nor palette, nor RGB
    PixelCalibration calibration; ///< in no unit where the page states no resolution

    /// Whether the readers of slices show the page as it is meant.
    bool isPlain() const;

    /// Whether the samples are numbers of a range of their own, and not the bytes of a screen.
    bool isNumeric() const;

    /// Same size and samples.
    bool isLike(const TiffPage& other) const;
};

/// Reads TIFF files as other programs write them: what `ImageReader` leaves to its callers, such as
/// orientation, opacity and palettes, is applied here. Errors as those of `ImageReader`.
class PhotographReader : public ImageReader
{
public:
    /// All pages of a TIFF or BigTIFF file, in their order; at least one.
    std::vector<TiffPage> readPages(const std::string& path);

    /// The page as it looks, upright and on white: 8 bits where it is grey, else 24.
    void readAppearance(Image0& image, const std::string& path, int page);

    /// The samples of all pages, upright, as the numbers that they are: of 8 bits with a sign as
    /// `Short`, of 64 bits as `Double`, floating numbers of 16 bits as `Float`.
    void readNumbers(Image2& image, const std::string& path);

    /// Whether a picture with a colormap is a photograph, and its colours what counts. One of labels
    /// has long runs of one index; in a photograph many runs end after one pixel.
    static bool isPhotograph(const Image0& indices);

private:
    TiffPage describe(TIFF* tif);
    void readHalves(Image2& image, const std::string& path, const TiffPage& first);
};
