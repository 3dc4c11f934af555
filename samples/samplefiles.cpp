#include "samples/samplefiles.h"

#include "samples/sampletables.h"
#include "system/exception.h"
#include "system/filereplacement.h"

#include <tiffio.h>

#include <cmath>
#include <filesystem>
#include <memory>

namespace {

constexpr int pictureWidth = 900;
constexpr int pictureHeight = sampleHeight;

void writePixels(TIFF* tiff, const Picture& picture, double resolution, bool& written)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(picture.width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(picture.height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, picture.samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 picture.samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
    if (resolution > 0.0) {
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, resolution);
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, resolution);
    }
    const auto rowSize = static_cast<std::size_t>(picture.width * picture.samples);
    std::vector<std::uint8_t> row(rowSize);
    for (int y = 0; written && y < picture.height; ++y) {
        const auto begin = picture.bytes.begin() + static_cast<std::ptrdiff_t>(rowSize) * y;
        std::copy_n(begin, rowSize, row.begin()); // the library may change what it is given
        written = TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0) == 1;
    }
    written = written && TIFFFlush(tiff) == 1;
}

} // namespace

void writeTiff(const Picture& picture, const std::string& filename, double resolution)
{
    FileReplacement replacement("void writeTiff(const Picture&, const string&)", filename);
    bool written = false;
    {
        const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(
            TIFFOpen(replacement.temporaryName().c_str(), "w"), TIFFClose);
        if (tiff) {
            written = true;
            writePixels(tiff.get(), picture, resolution, written);
        }
    }
    replacement.commit(written);
}

void makeFolder(const std::string& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        raiseFile<FileWriteError>("void makeFolder(const string&)",
                                  "The folder can't be made: " + error.message(), folder);
    }
}

void writeSamples(const std::string& folder, int count, long seed, Series series, int height)
{
    const double factor = double(height) / pictureHeight;
    const int width = static_cast<int>(std::lround(factor * pictureWidth));
    makeFolder(folder);
    SampleTables tables;
    for (int index = 0; index < count; ++index) {
        const LeafPlan plan =
            series == Series::Growing ? planGrowingLeaf(index, count, seed) : planLeaf(index, seed);
        const LeafOutline leaf = makeOutline(plan, pictureWidth, pictureHeight);
        writeTiff(drawLeaf(plan, leaf, width, height, factor), folder + "/" + plan.name + ".tif");
        tables.add(plan, enlarged(leaf, factor));
    }
    tables.save(folder);
}
