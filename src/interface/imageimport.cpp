#include "interface/imageimport.h"

#include "image/files/imagereader.h"
#include "image/files/imagewriter.h"
#include "image/files/tifffile.h"
#include "image/pixels/image2.h"
#include "image/values/imageheader.h"
#include "interface/conversion.h"
#include "interface/photographimport.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <locale>
#include <sstream>

namespace {

const char* const where = "string ImageImport::convert(const string&, const string&, string&)";

bool isReadable(const std::string& path)
{
    return std::ifstream(path, std::ios::binary).good();
}

/// Calls `work(samples, count)` for each frame.
template <class T, class Work>
void forEachFrame(const Image2& image, Work work)
{
    const std::size_t count = image.bytesPerFrame() / sizeof(T);
    for (int c = 0; c < image.getNumChannels(); ++c) {
        for (int t = 0; t < image.getNumTimepoints(); ++t) {
            work(reinterpret_cast<const T*>(image.frame(c, t)), count, c, t);
        }
    }
}

/// Least and largest of the finite samples; equal, and 0, without any.
template <class T>
std::pair<double, double> range(const Image2& image)
{
    double least = std::numeric_limits<double>::infinity();
    double largest = -least;
    forEachFrame<T>(image, [&](const T* samples, std::size_t count, int, int) {
        for (std::size_t s = 0; s < count; ++s) {
            const double value = static_cast<double>(samples[s]);
            if (std::isfinite(value)) {
                least = std::min(least, value);
                largest = std::max(largest, value);
            }
        }
    });
    return least <= largest ? std::pair(least, largest) : std::pair(0.0, 0.0);
}

/// The samples as bytes; what is no number is 0.
template <class T>
Image2 bytesOf(const Image2& image, std::pair<double, double> bounds)
{
    Image2 bytes(ValueType::UnsignedChar, image.getSize1(), image.getSize2(), image.getSize3(),
                 image.samplesPerElement(), image.getNumChannels(), image.getNumTimepoints());
    bytes.setSpatialCalibration(image.getSpatialCalibration());
    // Halves, since the difference of two large numbers may be none.
    const double half = bounds.second / 2 - bounds.first / 2;
    const double scale = half > 0.0 ? 127.5 / half : 0.0;
    forEachFrame<T>(image, [&](const T* samples, std::size_t count, int c, int t) {
        unsigned char* const to = bytes.frame(c, t);
        for (std::size_t s = 0; s < count; ++s) {
            const double value =
                (static_cast<double>(samples[s]) / 2 - bounds.first / 2) * 2 * scale;
            to[s] = static_cast<unsigned char>(value > 0.0 ? std::min(value + 0.5, 255.0) : 0.0);
        }
    });
    return bytes;
}

/// Whether all pages have the size and the samples of the first, as those of a stack do; the second
/// page of a photograph is often a small copy of it.
bool pagesAlike(const std::string& path)
{
    const TiffFile file(path, "r");
    TIFF* const tif = TiffFile::require(file, where, path);
    using Page = std::array<std::uint32_t, 4>;
    const auto page = [tif] {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        std::uint16_t bits = 1;
        std::uint16_t samples = 1;
        TIFFGetField(tif, TIFFTAG_IMAGEWIDTH, &width);
        TIFFGetField(tif, TIFFTAG_IMAGELENGTH, &height);
        TIFFGetFieldDefaulted(tif, TIFFTAG_BITSPERSAMPLE, &bits);
        TIFFGetFieldDefaulted(tif, TIFFTAG_SAMPLESPERPIXEL, &samples);
        return Page{width, height, bits, samples};
    };
    const Page first = page();
    while (TIFFReadDirectory(tif)) {
        if (page() != first) {
            return false;
        }
    }
    return true;
}

/// The file can be read and has these pixels.
bool holds(const std::string& path, const Image2& image)
{
    try {
        return Image2(path) == image;
    } catch (const FileError&) {
        return false;
    }
}

} // namespace

ImageImport::Kind ImageImport::kindOf(const std::string& path)
{
    if (FileInfo::suffixName(path) == "vm") {
        return Kind::Volume;
    }
    if (!isReadable(path)) {
        return PhotographImport::isTiff(path) ? Kind::Image : Kind::Photograph;
    }
    switch (ImageReader().readImageFileFormat(path)) {
    case ImageFormat::Tiff:
        if (!PhotographImport::isTiff(path)) {
            return Kind::Photograph;
        }
        break;
    case ImageFormat::Img:
        return Kind::Image;
    case ImageFormat::BigTiff:
    case ImageFormat::Lsm:
    case ImageFormat::Hdf5:
        return Kind::Convertible;
    default:
        return PhotographImport::isTiff(path) ? Kind::Image : Kind::Photograph;
    }
    try {
        ImageHeader header;
        ImageReader().read(header, path);
        return header.getPlanes() > 1 && pagesAlike(path) ? Kind::Pages : Kind::Image;
    } catch (const FileFormatError&) {
        // A whole image can hold samples of more kinds; its reader tells what it can't.
        return Kind::Convertible;
    }
}

std::string ImageImport::makeBytes(Image2& image)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    withValueType(
        image.getValueType(),
        [&](auto sample) {
            using T = typename decltype(sample)::type;
            const std::pair<double, double> bounds = range<T>(image);
            image = bytesOf<T>(image, bounds);
            text << "values from " << bounds.first << " to " << bounds.second
                 << " are written as 0 to 255";
        },
        [] { raise<FatalError>(where, "unknown value type"); });
    return text.str();
}

std::string
ImageImport::convert(const std::string& path, const std::string& folder, std::string& note)
{
    note.clear();
    Image2 image(path);
    const int samples = image.samplesPerElement();
    if (samples != 1 && samples != 3 && samples != 4) {
        raiseFile<FileFormatError>(
            where, "Cannot make slices of " + std::to_string(samples) + " samples per pixel", path);
    }
    const bool shown = image.getValueType() == ValueType::UnsignedChar ||
                       (image.getValueType() == ValueType::UnsignedShort && samples == 1);
    const std::string scaling = shown ? "" : makeBytes(image);
    Conversion conversion(path, folder);
    while (conversion.isMade() && !holds(conversion.path(), image)) {
        conversion.next();
    }
    note = shown ? conversion.note() : path + ": " + scaling + " in " + conversion.path();
    if (!conversion.isMade()) {
        ImageWriter writer;
        writer.setOrigin(conversion.origin());
        writer.write(image, conversion.path(), false, false);
    }
    return conversion.path();
}
