#pragma once

#include <string>
#include <vector>

class PixelCalibration;

/// Takes image files of other kinds than photographs: a stack file names images, pages of TIFF files
/// and planes of volume files, so that all else is written once, as a TIFF file of 8 or 16 bits a
/// sample with a page per plane, beside the stack.
class ImageImport
{
public:
    /// How the pixels of a file get into slices.
    enum class Kind {
        Image,       ///< a TIFF or raw image, used where it lies; a TIFF's first page
        Pages,       ///< a TIFF file of several pages that are alike, used where it lies
        Volume,      ///< a volume file (.vm), used where it lies
        Convertible, ///< LSM, HDF5, BigTIFF, or a TIFF file that slices don't show as it is meant
        Photograph   ///< all else, left to `PhotographImport`
    };

    /// Raises the errors of the readers for a damaged TIFF file.
    static Kind kindOf(const std::string& path);

    /// Writes the file's planes, and gives the name of the TIFF file: the full file name and ".tif",
    /// in `folder`. What becomes of its pixels, `ForeignImage` tells, and `note` where their values change.
    /// A conversion of the same file that is there is used; where a file of anything else has the name,
    /// another one is taken (see `Conversion`), and `note` tells that.
    ///
    /// Raises the errors of `ImageReader`, `FileFormatError` for elements of other than 1, 3 or 4
    /// samples, `FileWriteError` for a conversion that can't be written.
    static std::string
    convert(const std::string& path, const std::string& folder, std::string& note);

    /// The size of a pixel that an image file states, in no unit without one: a TIFF file's first page
    /// must tell a resolution, a unit alone is no scale. Errors as those of the readers.
    static PixelCalibration statedCalibration(const std::string& path);
};
