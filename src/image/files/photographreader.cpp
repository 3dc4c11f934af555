#include "image/files/photographreader.h"

#include "image/files/tifffile.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"
#include "image/values/spatialcalibration.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

const char* const pagesWhere = "vector<TiffPage> PhotographReader::readPages(const string&)";
const char* const appearanceWhere =
    "void PhotographReader::readAppearance(Image0&, const string&, int)";
const char* const numbersWhere = "void PhotographReader::readNumbers(Image2&, const string&)";

int field16(TIFF* tif, std::uint32_t tag, int absent)
{
    std::uint16_t value = 0;
    return TIFFGetFieldDefaulted(tif, tag, &value) ? value : absent;
}

bool hasSize(TIFF* tif, std::uint32_t tag)
{
    float value = 0.0F;
    return TIFFGetField(tif, tag, &value) && std::isfinite(value) && value > 0.0F;
}

/// Rows of pixels brought upright: how the rows and columns lie in a file that was not.
class Upright
{
public:
    Upright(int orientation, int rows, int columns)
        : turned_(orientation >= ORIENTATION_LEFTTOP)
        , fromBottom_(orientation == ORIENTATION_BOTRIGHT || orientation == ORIENTATION_BOTLEFT ||
                      orientation == ORIENTATION_RIGHTTOP || orientation == ORIENTATION_RIGHTBOT)
        , fromRight_(orientation == ORIENTATION_TOPRIGHT || orientation == ORIENTATION_BOTRIGHT ||
                     orientation == ORIENTATION_RIGHTBOT || orientation == ORIENTATION_LEFTBOT)
        , rows_(rows)
        , columns_(columns)
    {}

    int rows() const { return turned_ ? columns_ : rows_; }

    int columns() const { return turned_ ? rows_ : columns_; }

    /// `from` and `to` hold as many pixels, row after row.
    void copy(const unsigned char* from, unsigned char* to, std::size_t pixelBytes) const
    {
        for (int i = 0; i < rows(); ++i) {
            for (int j = 0; j < columns(); ++j, to += pixelBytes) {
                const int row = turned_ ? j : i;
                const int column = turned_ ? i : j;
                const auto place =
                    static_cast<std::size_t>(fromBottom_ ? rows_ - 1 - row : row) *
                        static_cast<std::size_t>(columns_) +
                    static_cast<std::size_t>(fromRight_ ? columns_ - 1 - column : column);
                std::memcpy(to, from + place * pixelBytes, pixelBytes);
            }
        }
    }

private:
    bool turned_;     ///< rows are columns
    bool fromBottom_; ///< the file's first row is the last
    bool fromRight_;
    int rows_;
    int columns_;
};

void makeUpright(Image2& image, int orientation)
{
    if (orientation <= ORIENTATION_TOPLEFT || orientation > ORIENTATION_LEFTBOT) {
        return;
    }
    const Upright upright(orientation, image.getSize1(), image.getSize2());
    Image2 result(image.getValueType(), upright.rows(), upright.columns(), image.getSize3(),
                  image.samplesPerElement(), image.getNumChannels(), image.getNumTimepoints());
    SpatialCalibration calibration = image.getSpatialCalibration();
    if (orientation >= ORIENTATION_LEFTTOP) {
        calibration.setSize(calibration.getSize2(), calibration.getSize1(), calibration.getSize3());
    }
    result.setSpatialCalibration(calibration);
    const std::size_t pixelBytes =
        image.bytesPerSample() * static_cast<std::size_t>(image.samplesPerElement());
    for (int c = 0; c < image.getNumChannels(); ++c) {
        for (int t = 0; t < image.getNumTimepoints(); ++t) {
            for (int k = 0; k < image.getSize3(); ++k) {
                const std::size_t plane = static_cast<std::size_t>(k) * image.bytesPerPlane();
                upright.copy(image.frame(c, t) + plane, result.frame(c, t) + plane, pixelBytes);
            }
        }
    }
    image = std::move(result);
}

/// The image with its samples taken for such of `Stored`, which have as many bytes, converted to `To`.
template <class To, class Stored>
Image2 retyped(const Image2& image)
{
    Image2 result(valueTypeOf<To>(), image.getSize1(), image.getSize2(), image.getSize3(),
                  image.samplesPerElement(), image.getNumChannels(), image.getNumTimepoints());
    result.setSpatialCalibration(image.getSpatialCalibration());
    const std::size_t count = image.bytesPerFrame() / sizeof(Stored);
    for (int c = 0; c < image.getNumChannels(); ++c) {
        for (int t = 0; t < image.getNumTimepoints(); ++t) {
            const auto* from = reinterpret_cast<const Stored*>(image.frame(c, t));
            std::copy_n(from, count, reinterpret_cast<To*>(result.frame(c, t)));
        }
    }
    return result;
}

/// A floating number of 16 bits: sign, 5 bits of exponent, 10 of fraction.
float fromHalf(std::uint16_t bits)
{
    const int exponent = bits >> 10 & 31;
    const int fraction = bits & 1023;
    float value = 0.0F;
    if (exponent == 31) {
        value = fraction == 0 ? HUGE_VALF : NAN;
    } else {
        value = std::ldexp(static_cast<float>(exponent == 0 ? fraction : fraction + 1024),
                           std::max(exponent, 1) - 25);
    }
    return (bits & 0x8000) != 0 ? -value : value;
}

} // namespace

bool TiffPage::isPlain() const
{
    return (bits == 8 || (bits == 16 && samples == 1)) && samples != 2 && orientation == 1 &&
           !isWhiteZero && !(isSeparate && samples > 1) && !hasAlpha && isUnsigned &&
           !isOtherColour && !(isPalette && bits != 8);
}

bool TiffPage::isNumeric() const
{
    return (bits > 8 || (bits == 8 && !isUnsigned)) && !isPalette && !hasAlpha && !isOtherColour &&
           samples != 2 && !(isSeparate && samples > 1);
}

bool TiffPage::isLike(const TiffPage& other) const
{
    return width == other.width && height == other.height && bits == other.bits &&
           samples == other.samples;
}

TiffPage PhotographReader::describe(TIFF* tif)
{
    TiffPage page;
    page.width = tiffcheck::dimension(tif, TIFFTAG_IMAGEWIDTH, pagesWhere);
    page.height = tiffcheck::dimension(tif, TIFFTAG_IMAGELENGTH, pagesWhere);
    page.bits = field16(tif, TIFFTAG_BITSPERSAMPLE, 1);
    page.samples = field16(tif, TIFFTAG_SAMPLESPERPIXEL, 1);
    page.orientation = std::clamp(field16(tif, TIFFTAG_ORIENTATION, 1), 1, 8);
    const int photometric = field16(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    const int compression = field16(tif, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    page.isPalette = photometric == PHOTOMETRIC_PALETTE;
    page.isWhiteZero = photometric == PHOTOMETRIC_MINISWHITE;
    page.isOtherColour = photometric > PHOTOMETRIC_PALETTE &&
                         !(photometric == PHOTOMETRIC_YCBCR && compression == COMPRESSION_JPEG);
    page.isSeparate =
        field16(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) != PLANARCONFIG_CONTIG;
    const int format = field16(tif, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    page.isInteger = format != SAMPLEFORMAT_IEEEFP;
    page.isUnsigned = format != SAMPLEFORMAT_INT && page.isInteger;
    std::uint16_t extras = 0;
    std::uint16_t* kinds = nullptr;
    page.hasAlpha = TIFFGetField(tif, TIFFTAG_EXTRASAMPLES, &extras, &kinds) && extras > 0 &&
                    kinds[0] != EXTRASAMPLE_UNSPECIFIED;
    const bool across = hasSize(tif, TIFFTAG_XRESOLUTION);
    const bool down = hasSize(tif, TIFFTAG_YRESOLUTION);
    if (across || down) {
        const SpatialCalibration stated = readTiffCalibration(tif);
        page.calibration.setLengthUnit(stated.getLengthUnit());
        page.calibration.setPixelWidth(across ? stated.getSize2() : stated.getSize1());
        page.calibration.setPixelHeight(down ? stated.getSize1() : stated.getSize2());
    }
    page.calibration.compute();
    return page;
}

std::vector<TiffPage> PhotographReader::readPages(const std::string& path)
{
    const TiffFile file(path, "r");
    TIFF* const tif = TiffFile::require(file, pagesWhere, path);
    readTiffNumPlanes(tif); // raises where the file is cut off
    std::vector<TiffPage> pages = {describe(tif)};
    while (TIFFReadDirectory(tif)) {
        pages.push_back(describe(tif));
    }
    return pages;
}

void PhotographReader::readAppearance(Image0& image, const std::string& path, int page)
{
    const TiffFile file(path, "r");
    TIFF* const tif = TiffFile::require(file, appearanceWhere, path);
    setTiffDirectory(tif, page, appearanceWhere);
    const TiffPage tags = describe(tif);
    tiffcheck::dataFits(tif, std::uint64_t(tags.height) * TIFFScanlineSize64(tif), appearanceWhere);
    constexpr std::uint64_t mostPixels = std::uint64_t(1) << 29;
    if (std::uint64_t(tags.height) * std::uint64_t(tags.width) > mostPixels) {
        raiseFile<FileFormatError>(
            appearanceWhere, "Cannot read TIFF with more pixels than an image can hold", path);
    }
    char reason[1024] = "";
    if (!TIFFRGBAImageOK(tif, reason)) {
        raiseFile<FileFormatError>(appearanceWhere, std::string("Cannot read TIFF: ") + reason,
                                   path);
    }
    // libtiff mirrors, but does not turn.
    TIFFSetField(tif, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    const auto width = static_cast<std::size_t>(tags.width);
    const auto height = static_cast<std::size_t>(tags.height);
    std::vector<std::uint32_t> raster(width * height);
    const TiffMessages ofPixels;
    if (!TIFFReadRGBAImageOriented(tif, static_cast<std::uint32_t>(tags.width),
                                   static_cast<std::uint32_t>(tags.height), raster.data(),
                                   ORIENTATION_TOPLEFT, 1) ||
        !TiffMessages::firstError().empty()) {
        raiseFile<FileReadError>(appearanceWhere,
                                 TiffMessages::withReason("Cannot read the pixels of TIFF"), path);
    }
    bool isGrey = true;
    std::vector<unsigned char> pixels(3 * raster.size());
    for (std::size_t p = 0; p < raster.size(); ++p) {
        // libtiff has multiplied the colours by their opacity; white shows through the rest.
        const std::uint32_t colour = raster[p];
        const std::uint32_t through = 255 - TIFFGetA(colour);
        const std::uint32_t channels[] = {TIFFGetR(colour), TIFFGetG(colour), TIFFGetB(colour)};
        for (std::size_t c = 0; c < 3; ++c) {
            pixels[3 * p + c] = static_cast<unsigned char>(std::min(channels[c] + through, 255U));
        }
        isGrey = isGrey && channels[0] == channels[1] && channels[0] == channels[2];
    }
    if (isGrey) {
        for (std::size_t p = 0; p < raster.size(); ++p) {
            pixels[p] = pixels[3 * p];
        }
    }
    const Upright upright(tags.orientation, tags.height, tags.width);
    Image0 result(upright.columns(), upright.rows(), isGrey ? 8 : 24);
    upright.copy(pixels.data(), result.getData(), isGrey ? 1 : 3);
    image.swap(result);
}

void PhotographReader::readNumbers(Image2& image, const std::string& path)
{
    const TiffPage first = readPages(path).front();
    if (first.bits == 16 && !first.isInteger) {
        readHalves(image, path, first);
    } else {
        read(image, path, true);
        if (first.bits == 8 && !first.isUnsigned) {
            image = retyped<short, signed char>(image);
        } else if (first.bits == 64 && first.isInteger) {
            image = first.isUnsigned ? retyped<double, std::uint64_t>(image)
                                     : retyped<double, std::int64_t>(image);
        }
    }
    makeUpright(image, first.orientation);
}

void PhotographReader::readHalves(Image2& image, const std::string& path, const TiffPage& first)
{
    const TiffFile file(path, "r");
    TIFF* const tif = TiffFile::require(file, numbersWhere, path);
    const int pages = readTiffNumPlanes(tif);
    const std::size_t line = std::size_t(2) * static_cast<std::size_t>(first.width) *
                             static_cast<std::size_t>(first.samples);
    tiffcheck::dataFits(tif, std::uint64_t(pages) * std::uint64_t(first.height) * line,
                        numbersWhere);
    Image2 result(ValueType::Float, first.height, first.width, pages, first.samples, 1, 1);
    result.setSpatialCalibration(ImageReader::readTiffCalibration(tif));
    auto* to = reinterpret_cast<float*>(result.frame(0, 0));
    std::vector<unsigned char> row(line);
    for (int page = 0; page < pages; ++page) {
        setTiffDirectory(tif, page, numbersWhere);
        if (!describe(tif).isLike(first)) {
            raiseFile<FileFormatError>(
                numbersWhere, "Cannot read TIFF with pages of different size or value type", path);
        }
        tiffcheck::readableLayout(tif, numbersWhere);
        tiffcheck::rowLength(tif, line, numbersWhere);
        TiffRows rows(tif, 0, line, numbersWhere);
        for (int i = 0; i < first.height; ++i) {
            rows.read(row.data(), i);
            for (std::size_t s = 0; s < line; s += 2) {
                std::uint16_t bits = 0;
                std::memcpy(&bits, row.data() + s, sizeof(bits));
                *to++ = fromHalf(bits);
            }
        }
    }
    image = std::move(result);
}

bool PhotographReader::isPhotograph(const Image0& indices)
{
    // Of a dozen photographs with 4 to 256 colours at least 17 % of the runs are one pixel long, of
    // pictures of labels about 1 %.
    constexpr double share = 0.1;
    bool used[256] = {};
    std::size_t ends = 0;
    std::size_t single = 0;
    for (int y = 0; y < indices.getHeight(); ++y) {
        const unsigned char* const row = indices.getPixels()[y];
        bool endedBefore = false;
        for (int x = 0; x < indices.getWidth(); ++x) {
            used[row[x]] = true;
            const bool endsHere = x + 1 < indices.getWidth() && row[x] != row[x + 1];
            ends += endsHere;
            single += endsHere && endedBefore;
            endedBefore = endsHere;
        }
    }
    // A picture of two values is a mask, whatever its edge looks like.
    return std::count(used, used + 256, true) > 2 &&
           static_cast<double>(single) > share * static_cast<double>(ends);
}
