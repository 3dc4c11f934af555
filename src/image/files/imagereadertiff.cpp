// Part of `ImageReader`: TIFF and BigTIFF with the description conventions of ImageJ.

#include "image/files/imagereader.h"
#include "image/files/tiffdescription.h"
#include "image/files/tifffile.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"

#include <cmath>

namespace {

const char* const headerWhere = "void ImageReader::readTiffHeader(ImageHeader&, TIFF*)";
const char* const imageWhere = "void ImageReader::readTiffHeader(Image2&, TIFF*)";
const char* const pixelsWhere = "void Image::readTiffPixels(Image&, TIFF*)";
const char* const dataWhere = "void ImageReader::readTiffData(Image2&, TIFF*)";

int field16(TIFF* tif, std::uint32_t tag, int absent)
{
    std::uint16_t value = 0;
    return TIFFGetFieldDefaulted(tif, tag, &value) ? value : absent;
}

[[noreturn]] void refuse(TIFF* tif, const char* where, const std::string& what)
{
    raiseFile<FileFormatError>(where, "Cannot read TIFF with " + what, TIFFFileName(tif));
}

/// Sample size and samples of a pixel that an `Image0` can hold.
int supportedDepth(TIFF* tif)
{
    const int samples = field16(tif, TIFFTAG_SAMPLESPERPIXEL, 1);
    const int bits = field16(tif, TIFFTAG_BITSPERSAMPLE, 1);
    if (bits != 8 && bits != 16) {
        refuse(tif, headerWhere, std::to_string(bits) + " bits per sample");
    }
    if (samples != 1 && samples != 3 && samples != 4) {
        refuse(tif, headerWhere, std::to_string(samples) + " samples per pixel");
    }
    if (bits == 16 && samples > 1) {
        refuse(tif, headerWhere,
               std::to_string(bits) + " bits per sample and " + std::to_string(samples) +
                   " samples per pixel");
    }
    return bits * samples;
}

/// Scale of the unit that the resolution tags stand in, and the number of such units in the unit of
/// the tag (an inch has 2.54 centimetres).
struct ResolutionUnit
{
    int scale = 0;
    float factor = 1.0F;
    bool none = false; ///< the tag says that there is no absolute unit
};

ResolutionUnit resolutionUnit(TIFF* tif)
{
    ResolutionUnit unit;
    std::uint16_t value = 0;
    if (TIFFGetField(tif, TIFFTAG_RESOLUTIONUNIT, &value)) {
        unit.none = value == RESUNIT_NONE;
        unit.scale = unit.none ? 0 : -2;
        unit.factor = value == RESUNIT_INCH ? 2.54F : 1.0F;
    }
    return unit;
}

struct UnitText
{
    const char* text;
    int scale;
};

/// The scale that the description names last in the order of the list, or the one given.
int describedScale(const TiffDescription& description, bool escapedMicro, int scale)
{
    static constexpr UnitText units[] = {
        {"unit=cm", -2},        {"unit=mm", -3}, {"unit=micron", -6}, {"00B5m", -6},
        {"unit=\xC2\xB5m", -6}, {"unit=um", -6}, {"unit=nm", -9}};
    for (const UnitText& unit : units) {
        const bool escaped = unit.text[0] == '0';
        if ((!escaped || escapedMicro) && description.contains(unit.text)) {
            scale = unit.scale;
        }
    }
    return scale;
}

/// Sets the size of a pixel from a resolution tag that holds a usable number.
template <class Set>
void takeResolution(TIFF* tif, std::uint32_t tag, float factor, Set set)
{
    float value = 0.0F;
    if (TIFFGetField(tif, tag, &value) && std::isfinite(value) && value > 0.0F &&
        std::isfinite(factor / value)) {
        set(factor / value);
    }
}

void requireContiguous(TIFF* tif, const char* where)
{
    if (field16(tif, TIFFTAG_SAMPLESPERPIXEL, 1) > 1 &&
        field16(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) != PLANARCONFIG_CONTIG) {
        refuse(tif, where, "separate planes");
    }
}

struct Extent
{
    int channels = 1;
    int timepoints = 1;
};

/// The counts that a description of several pages tells; both at least 1 and no more frames than
/// pages.
Extent describedExtent(TIFF* tif, int pages)
{
    Extent extent;
    const TiffDescription description(tif);
    if (pages <= 1 || description.isEmpty()) {
        return extent;
    }
    extent.channels = description.integerAfter("channels=").value_or(1);
    extent.timepoints = description.integerAfter("frames=").value_or(1);
    if (extent.channels < 1 || extent.timepoints < 1 ||
        extent.channels > pages / extent.timepoints) {
        raiseFile<FileFormatError>(
            imageWhere,
            "The image description tells of more channels and frames than the file has pages",
            TIFFFileName(tif));
    }
    return extent;
}

ValueType valueTypeFor(TIFF* tif, int bits)
{
    const int format = field16(tif, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    switch (bits) {
    case 8:
        return ValueType::UnsignedChar;
    case 64:
        return ValueType::Double;
    case 16:
        if (format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_INT) {
            return format == SAMPLEFORMAT_UINT ? ValueType::UnsignedShort : ValueType::Short;
        }
        break;
    case 32:
        if (format == SAMPLEFORMAT_IEEEFP) {
            return ValueType::Float;
        }
        if (format == SAMPLEFORMAT_UINT || format == SAMPLEFORMAT_INT) {
            return format == SAMPLEFORMAT_UINT ? ValueType::UnsignedInt : ValueType::Int;
        }
        break;
    default:
        refuse(tif, imageWhere, std::to_string(bits) + " bits per sample");
    }
    refuse(tif, imageWhere,
           std::to_string(bits) + " bits per sample in sample format " + std::to_string(format));
}

std::string compressionText(TIFF* tif)
{
    switch (field16(tif, TIFFTAG_COMPRESSION, COMPRESSION_NONE)) {
    case COMPRESSION_NONE:
        return "";
    case COMPRESSION_LZW:
        return "lzw";
    case COMPRESSION_JPEG:
        return "jpg";
    case COMPRESSION_PACKBITS:
        return "packbits";
    case COMPRESSION_JP2000:
        return "j2k";
    default:
        return "other";
    }
}

} // namespace

int ImageReader::readTiffNumPlanes(TIFF* tif)
{
    // libtiff counts up to a directory that it can't read, and tells of it. A pointer behind the last
    // page that leads nowhere does no harm; a file that was cut off knows of more pages. What libtiff
    // told of the file before does not count here.
    const TiffMessages ofCounting;
    const tdir_t directories = TIFFNumberOfDirectories(tif);
    const int described = TiffDescription(tif).integerAfter("images=").value_or(1);
    const bool isCut =
        !TiffMessages::firstError().empty() && described > 0 && tdir_t(described) > directories;
    if (directories == 0 || isCut) {
        raiseFile<FileReadError>(headerWhere,
                                 TiffMessages::withReason("Cannot find all pages of TIFF"),
                                 TIFFFileName(tif));
    }
    if (directories > 0xFFFF) {
        refuse(tif, headerWhere, "more than 65535 pages");
    }
    return static_cast<int>(directories);
}

void ImageReader::readTiffHeader(ImageHeader& header, TIFF* tif)
{
    const int depth = supportedDepth(tif);
    tiffcheck::readableLayout(tif, headerWhere);
    header.setHeight(tiffcheck::dimension(tif, TIFFTAG_IMAGELENGTH, headerWhere));
    header.setWidth(tiffcheck::dimension(tif, TIFFTAG_IMAGEWIDTH, headerWhere));
    header.setPlanes(readTiffNumPlanes(tif));
    header.setDepth(depth);
    readTiffCalibration(header, tif);
    if (field16(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK) == PHOTOMETRIC_PALETTE) {
        readTiffColormap(header, tif);
    }
}

void ImageReader::readTiffCalibration(ImageHeader& header, TIFF* tif)
{
    const ResolutionUnit resolution = resolutionUnit(tif);
    int scale = resolution.scale;
    if (resolution.none) {
        const TiffDescription description(tif);
        scale = describedScale(description, false, scale);
        if (header.getPlanes() > 1) {
            if (const auto spacing = description.numberAfter("spacing=")) {
                header.setVoxelSizeZ(*spacing);
            }
        }
    }
    PixelCalibration calibration;
    takeResolution(tif, TIFFTAG_XRESOLUTION, resolution.factor,
                   [&calibration](float size) { calibration.setPixelWidth(size); });
    takeResolution(tif, TIFFTAG_YRESOLUTION, resolution.factor,
                   [&calibration](float size) { calibration.setPixelHeight(size); });
    LengthUnit unit;
    unit.setScale(scale);
    calibration.setLengthUnit(unit);
    calibration.compute();
    header.setPixelCalibration(calibration);
}

SpatialCalibration ImageReader::readTiffCalibration(TIFF* tif)
{
    SpatialCalibration calibration;
    const ResolutionUnit resolution = resolutionUnit(tif);
    int scale = resolution.scale;
    if (resolution.none) {
        const TiffDescription description(tif);
        scale = describedScale(description, true, scale);
        if (const auto spacing = description.numberAfter("spacing=")) {
            calibration.setSize3(*spacing);
        }
    }
    takeResolution(tif, TIFFTAG_XRESOLUTION, resolution.factor,
                   [&calibration](float size) { calibration.setSize2(size); });
    takeResolution(tif, TIFFTAG_YRESOLUTION, resolution.factor,
                   [&calibration](float size) { calibration.setSize1(size); });
    LengthUnit unit;
    unit.setScale(scale);
    calibration.setLengthUnit(unit);
    readPosition(calibration, tif);
    return calibration;
}

void ImageReader::readPosition(SpatialCalibration& calibration, TIFF* tif)
{
    const float* position = nullptr;
    if (!TIFFGetField(tif, ImagePosition3D, &position) || position == nullptr) {
        return;
    }
    Vector<float> place(3);
    for (int axis = 0; axis < 3; ++axis) {
        if (!std::isfinite(position[axis])) {
            return;
        }
        place[axis] = position[axis];
    }
    calibration.setPosition(place);
}

void ImageReader::readTiffColormap(ImageHeader& header, TIFF* tif)
{
    std::uint16_t* red = nullptr;
    std::uint16_t* green = nullptr;
    std::uint16_t* blue = nullptr;
    if (header.getDepth() != 8 || !TIFFGetField(tif, TIFFTAG_COLORMAP, &red, &green, &blue)) {
        return;
    }
    Colormap colormap(1 << field16(tif, TIFFTAG_BITSPERSAMPLE, 1));
    for (int i = 0; i < colormap.getSize(); ++i) {
        colormap.getRed()[i] = static_cast<unsigned char>(red[i] >> 8);
        colormap.getGreen()[i] = static_cast<unsigned char>(green[i] >> 8);
        colormap.getBlue()[i] = static_cast<unsigned char>(blue[i] >> 8);
    }
    header.setColormap(colormap);
}

void ImageReader::readTiffPixels(Image0& image, TIFF* tif)
{
    if (image.getDepth() >= 24) {
        requireContiguous(tif, pixelsWhere);
    }
    readRows(image, tif, 0, pixelsWhere);
}

void ImageReader::readRows(Image0& image, TIFF* tif, int sample, const char* where)
{
    notifyStarted("");
    tiffcheck::rowLength(tif, image.bytesPerLine(), where);
    TiffRows rows(tif, sample, image.bytesPerLine(), where);
    for (int row = 0; row < image.getHeight() && !isCanceled(); ++row) {
        rows.read(image.getPixels()[row], row);
        notifyProgressed(row + 1, image.getHeight());
    }
    if (isCanceled()) {
        notifyCanceled("");
    } else {
        notifyFinished("");
    }
}

void ImageReader::readTiffPage(Image0& image,
                               const std::string& path,
                               int page,
                               const ImageHeader& header)
{
    const char* const where = "void ImageReader::read(Image0&, const ImageSourceTiffStackPlane&)";
    notifyStarted("");
    const TiffFile file(path, "r");
    TIFF* const tif = TiffFile::require(file, where, path);
    setTiffDirectory(tif, page, where);
    tiffcheck::readableLayout(tif, where);
    if (supportedDepth(tif) != header.getDepth() ||
        tiffcheck::dimension(tif, TIFFTAG_IMAGELENGTH, where) != header.getHeight() ||
        tiffcheck::dimension(tif, TIFFTAG_IMAGEWIDTH, where) != header.getWidth()) {
        refuse(tif, where, "pages of different size or depth");
    }
    tiffcheck::dataFits(tif, std::uint64_t(header.getHeight()) * TIFFScanlineSize64(tif), where);
    initAs(image, header);
    readTiffPixels(image, tif);
    if (!isCanceled()) {
        notifyFinished("");
    }
}

void ImageReader::readTiffImage(Image2& image, const std::string& path, bool load)
{
    const bool big = readImageFileFormat(path) == ImageFormat::BigTiff;
    const TiffFile file(path, big ? "r8" : "r4");
    TIFF* const tif = TiffFile::require(
        file, "void ImageReader::readTiffImage(Image2&, const string&, const bool)", path);
    readTiffHeader(image, tif);
    if (load) {
        tiffcheck::readableLayout(tif, dataWhere);
        requireContiguous(tif, dataWhere);
        tiffcheck::dataFits(tif, image.bytes(), dataWhere);
        image.allocateData();
        readTiffData(image, tif);
    }
}

void ImageReader::readTiffHeader(Image2& image, TIFF* tif)
{
    const int pages = readTiffNumPlanes(tif);
    const Extent extent = describedExtent(tif, pages);
    const ValueType type = valueTypeFor(tif, field16(tif, TIFFTAG_BITSPERSAMPLE, 1));
    setReadGeometry(image, tif, type, pages / (extent.channels * extent.timepoints),
                    field16(tif, TIFFTAG_SAMPLESPERPIXEL, 1), extent.channels, extent.timepoints);
    image.setSpatialCalibration(readTiffCalibration(tif));
    image.setFileCompression(compressionText(tif));
}

/// Gives the image the size of the present directory; a frame that an image can't hold is told as a
/// fault of the file.
void ImageReader::setReadGeometry(
    Image2& image, TIFF* tif, ValueType type, int planes, int samples, int channels, int timepoints)
{
    const int size1 = tiffcheck::dimension(tif, TIFFTAG_IMAGELENGTH, imageWhere);
    const int size2 = tiffcheck::dimension(tif, TIFFTAG_IMAGEWIDTH, imageWhere);
    try {
        image.setGeometry(type, size1, size2, planes, samples, channels, timepoints);
    } catch (const SizeError&) {
        refuse(tif, imageWhere, "more pixels than an image can hold");
    }
}

void ImageReader::readTiffData(Image2& image, TIFF* tif)
{
    notifyStarted("");
    const int channels = image.getNumChannels();
    for (int c = 0; c < channels; ++c) {
        int directory = c;
        for (int t = 0; t < image.getNumTimepoints(); ++t) {
            for (int k = 0; k < image.getSize3(); ++k, directory += channels) {
                setTiffDirectory(tif, directory, dataWhere);
                requireContiguous(tif, dataWhere);
                if (!readPlane(image, c, t, k, tif, 0)) {
                    return notifyCanceled("");
                }
            }
        }
    }
    notifyFinished("");
}

/// Reads a plane from the present directory, which must be like the first. False when cancelled.
bool ImageReader::readPlane(
    Image2& image, int channel, int timepoint, int plane, TIFF* tif, int sample)
{
    const int rows = image.getSize1();
    tiffcheck::readableLayout(tif, dataWhere);
    tiffcheck::rowLength(tif, image.bytesPerLine(), dataWhere);
    if (valueTypeFor(tif, field16(tif, TIFFTAG_BITSPERSAMPLE, 1)) != image.getValueType() ||
        tiffcheck::dimension(tif, TIFFTAG_IMAGELENGTH, dataWhere) != rows) {
        refuse(tif, dataWhere, "pages of different size or value type");
    }
    TiffRows source(tif, sample, image.bytesPerLine(), dataWhere);
    unsigned char* row =
        image.frame(channel, timepoint) + static_cast<std::size_t>(plane) * image.bytesPerPlane();
    for (int i = 0; i < rows; ++i, row += image.bytesPerLine()) {
        if (isCanceled()) {
            return false;
        }
        source.read(row, i);
        notifyProgressed(plane * rows + i + 1, rows * image.getSize3());
    }
    return true;
}
