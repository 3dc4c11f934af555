#pragma once

#include <string>
#include <vector>

class Image2;

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
        Convertible, ///< LSM, HDF5, BigTIFF, or a TIFF file of samples that slices can't show
        Photograph   ///< all else, left to `PhotographImport`
    };

    /// Raises the errors of the readers for a damaged TIFF file.
    static Kind kindOf(const std::string& path);

    /// Writes the file's planes, and gives the name of the TIFF file: the full file name and ".tif",
    /// in `folder`. Samples that are not unsigned with 8 or 16 bits become bytes, the least value of
    /// the file 0 and the largest 255, of which `note` tells. A conversion of the same file that is
    /// there is used; where a file of anything else has the name, another one is taken (see
    /// `Conversion`), and `note` tells that.
    ///
    /// Raises the errors of `ImageReader`, `FileFormatError` for elements of other than 1, 3 or 4
    /// samples, `FileWriteError` for a conversion that can't be written.
    static std::string
    convert(const std::string& path, const std::string& folder, std::string& note);

private:
    static std::string makeBytes(Image2& image);
};
