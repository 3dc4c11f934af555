#pragma once

#include "image/pixels/image2.h"

#include <string>
#include <vector>

struct TiffPage;

/// Makes of the image files of other programs what slices can show: grey or RGB with 8 bits a sample,
/// upright, black as 0, opaque.
///
/// Pictures for a screen become what they look like on white: palettes (of photographs, not of labels,
/// whose indices are what counts), 1 to 4 bits, white as 0, opacity, other colours. Numbers become bytes,
/// the least value of the file 0 and the largest 255; where a few outliers would take more than half of
/// that range they are cut at one in a thousand. Elements of HDF5 that are bytes stay as they are.
class ForeignImage
{
public:
    /// Whether slices show the pages as they are meant, of 16 bits only with an even range.
    static bool isShownAsItIs(const std::string& path, const std::vector<TiffPage>& pages);

    /// Whether all pages have the size and the samples of the first, as those of a stack do; the second
    /// page of a photograph is often a small copy of it.
    static bool areAlike(const std::vector<TiffPage>& pages);

    /// Reads a TIFF, BigTIFF, LSM or HDF5 file. `note` tells, as a clause, where values change or one
    /// dataset of several is taken; it is empty otherwise. Errors as those of the readers;
    /// `FileFormatError` for elements of other than 1, 3 or 4 samples.
    static Image2 read(const std::string& path, std::string& note);

private:
    static Image2 readTiff(const std::string& path, std::string& note);
    static Image2 readAppearances(const std::string& path, const std::vector<TiffPage>& pages);
    static Image2 readHdf5(const std::string& path, std::string& note);
    static std::string makeBytes(Image2& image);
};
