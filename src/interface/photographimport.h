#pragma once

#include <string>

class Image0;

/// Takes photographs that are not TIFF files, which is all that slices can be made of: a PNG or JPEG
/// photograph is converted once, to a TIFF file beside the stack.
class PhotographImport
{
public:
    /// The file has a TIFF file's suffix, "tif" or "tiff" in either case, and is used where it lies.
    static bool isTiff(const std::string& path);

    /// Reads a PNG or JPEG photograph, upright, with the calibration that a conversion would have.
    /// Raises the errors of `convert` for reading.
    static Image0 read(const std::string& photograph);

    /// Converts a photograph, upright as its EXIF record says, and gives the name of the TIFF file: its
    /// full file name and ".tif", in `folder`. A resolution that the photograph states becomes the
    /// TIFF file's calibration, in centimetres, unless it is no scale (`PhotographRecord::doubt`).
    ///
    /// A conversion of the same photograph that is there is used; where a file of anything else has
    /// the name, another one is taken (see `Conversion`), of which `note` tells; it is empty
    /// otherwise. Raises `FileReadError` for a file
    /// that can't be read, `FileFormatError` for one that is damaged or neither PNG nor JPEG,
    /// `FileWriteError` for a conversion that can't be written.
    static std::string
    convert(const std::string& photograph, const std::string& folder, std::string& note);
};
