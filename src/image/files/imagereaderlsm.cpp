// Part of `ImageReader`: the microscope's TIFF variant, with an image and a thumbnail for each
// plane and the channels as samples.

#include "image/files/imagereader.h"
#include "image/files/lsminfo.h"
#include "image/files/tifffile.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"

#include <cmath>
#include <iostream>
#include <limits>

namespace {

const char* const headerWhere = "void LSMReader::readTiffHeader(ImageHeader&, TIFF*)";
const char* const imageWhere = "void ImageReader::readLSMHeader(Image2&, TIFF*)";
const char* const dataWhere = "void ImageReader::readLSMData(Image2&, TIFF*)";

[[noreturn]] void refuse(TIFF* tif, const char* where, const std::string& what)
{
    raiseFile<FileFormatError>(where, what, TIFFFileName(tif));
}

/// A count of the info block as a positive `int`.
int positive(std::uint32_t count, TIFF* tif, const char* where)
{
    if (count == 0 || count > static_cast<std::uint32_t>(std::numeric_limits<int>::max())) {
        refuse(tif, where, "The LSM info block holds a bad size");
    }
    return static_cast<int>(count);
}

/// The block must agree with the tags of the first directory.
void requireSameSize(const LsmInfo& info, TIFF* tif, const char* where)
{
    if (positive(info.dimensionY, tif, where) !=
            tiffcheck::dimension(tif, TIFFTAG_IMAGELENGTH, where) ||
        positive(info.dimensionX, tif, where) !=
            tiffcheck::dimension(tif, TIFFTAG_IMAGEWIDTH, where)) {
        refuse(tif, where, "The LSM info block tells of another image size than the file");
    }
}

/// Metres as micrometres; 1 for what is no size.
float micrometres(double metres)
{
    const float size = static_cast<float>(1e6 * metres);
    return std::isfinite(size) && size > 0.0F ? size : 1.0F;
}

LengthUnit micrometre()
{
    LengthUnit unit;
    unit.setScale(-6);
    return unit;
}

/// The channels of a directory are read as its planes: rows of one sample must lie together.
void requireSeparate(TIFF* tif, int sample, const char* where)
{
    std::uint16_t samples = 1;
    std::uint16_t planar = PLANARCONFIG_CONTIG;
    TIFFGetFieldDefaulted(tif, TIFFTAG_SAMPLESPERPIXEL, &samples);
    TIFFGetFieldDefaulted(tif, TIFFTAG_PLANARCONFIG, &planar);
    if (samples > 1 && planar != PLANARCONFIG_SEPARATE) {
        refuse(tif, where, "Cannot read LSM with interleaved channels");
    }
    if (sample < 0 || sample >= samples) {
        refuse(tif, where, "The LSM file has no channel " + std::to_string(sample));
    }
}

} // namespace

void ImageReader::readLSMHeader(ImageHeader& header, TIFF* tif)
{
    const LsmInfo info(tif);
    std::cout << "S32MagicNumber :" << info.S32MagicNumber << '\n';
    std::uint16_t bits = 1;
    TIFFGetFieldDefaulted(tif, TIFFTAG_BITSPERSAMPLE, &bits);
    if (bits != 8 && bits != 16) {
        refuse(tif, headerWhere,
               "Cannot read TIFF with " + std::to_string(bits) + " bits per sample");
    }
    if (!info.isValid()) {
        return;
    }
    requireSameSize(info, tif, headerWhere);
    header.setHeight(positive(info.dimensionX, tif, headerWhere));
    header.setWidth(positive(info.dimensionY, tif, headerWhere));
    header.setDepth(bits);
    header.setPlanes(readTiffNumPlanes(tif));
    header.setChannels(positive(info.channels, tif, headerWhere));
    std::uint32_t subFileType = 0;
    TIFFGetFieldDefaulted(tif, TIFFTAG_SUBFILETYPE, &subFileType);
    header.setNewSubFileType(static_cast<int>(subFileType));
    header.setVoxelSizeX(micrometres(info.voxelSizeX));
    header.setVoxelSizeY(micrometres(info.voxelSizeY));
    header.setVoxelSizeZ(readLSMCalibration(tif).getSize3());
    PixelCalibration calibration;
    calibration.setPixelHeight(micrometres(info.voxelSizeX));
    calibration.setPixelWidth(micrometres(info.voxelSizeY));
    calibration.setLengthUnit(micrometre());
    calibration.compute();
    header.setPixelCalibration(calibration);
    readLSMColormap(header, tif);
}

void ImageReader::readLSMHeader(Image2& image, TIFF* tif)
{
    const LsmInfo info(tif);
    if (!info.isValid()) {
        return;
    }
    std::uint16_t samples = 1;
    TIFFGetFieldDefaulted(tif, TIFFTAG_SAMPLESPERPIXEL, &samples);
    const int channels = positive(info.channels, tif, imageWhere);
    const int timepoints = positive(info.timepoints, tif, imageWhere);
    const int pages = readTiffNumPlanes(tif);
    if (channels > samples || timepoints > pages / 2 ||
        info.dimensionZ > static_cast<std::uint32_t>(pages / 2 / timepoints)) {
        refuse(tif, imageWhere, "The LSM info block tells of more frames than the file holds");
    }
    // Value type and size are checked as those of a TIFF; the block must agree with them.
    readTiffHeader(image, tif);
    requireSameSize(info, tif, imageWhere);
    const std::string compression = image.fileCompression();
    setReadGeometry(image, tif, image.getValueType(), pages / (timepoints * 2), samples / channels,
                    channels, timepoints);
    image.setSpatialCalibration(readLSMCalibration(tif));
    image.setFileCompression(compression);
}

SpatialCalibration ImageReader::readLSMCalibration(TIFF* tif)
{
    const LsmInfo info(tif);
    const bool deep = info.dimensionZ > 1 && readTiffNumPlanes(tif) > 1;
    SpatialCalibration calibration;
    calibration.setSize(micrometres(info.voxelSizeY), micrometres(info.voxelSizeX),
                        deep ? micrometres(info.voxelSizeZ) : 1.0F);
    calibration.setLengthUnit(micrometre());
    readPosition(calibration, tif);
    return calibration;
}

void ImageReader::readLSMColormap(ImageHeader& header, TIFF* tif)
{
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    TIFFGetField(tif, TIFFTAG_PHOTOMETRIC, &photometric);
    if (photometric == PHOTOMETRIC_PALETTE) {
        readTiffColormap(header, tif);
    }
}

void ImageReader::readLSMPixels(Image0& image, TIFF* tif, int frame)
{
    const char* const where = "void ImageReader::readLSMPixels(Image0&, TIFF*, const int)";
    requireSeparate(tif, frame, where);
    readRows(image, tif, frame, where);
}

void ImageReader::readLSMPage(
    Image0& image, const std::string& path, int directory, int frame, const ImageHeader& header)
{
    const char* const where = "void ImageReader::read(Image0&, const ImageSourceLSMStackPlane&)";
    const TiffFile file(path, "r");
    TIFF* const tif = TiffFile::require(file, where, path);
    setTiffDirectory(tif, directory, where);
    tiffcheck::readableLayout(tif, where);
    if (tiffcheck::dimension(tif, TIFFTAG_IMAGELENGTH, where) < header.getHeight()) {
        refuse(tif, where, "The page is smaller than the image");
    }
    tiffcheck::rowLength(
        tif, std::uint64_t(header.getWidth()) * std::uint64_t(header.getDepth() / 8), where);
    tiffcheck::dataFits(tif, std::uint64_t(header.getHeight()) * TIFFScanlineSize64(tif), where);
    initAs(image, header);
    readLSMPixels(image, tif, frame);
}

void ImageReader::readLSMImage(Image2& image, const std::string& path, bool load)
{
    const TiffFile file(path, "r4");
    TIFF* const tif = TiffFile::require(
        file, "void ImageReader::readLSMImage(Image2&, const string&, const bool)", path);
    readLSMHeader(image, tif);
    if (load) {
        tiffcheck::dataFits(tif, image.bytes(), dataWhere);
        image.allocateData();
        readLSMData(image, tif);
    }
}

void ImageReader::readLSMData(Image2& image, TIFF* tif)
{
    notifyStarted("");
    for (int c = 0; c < image.getNumChannels(); ++c) {
        int directory = 0;
        for (int t = 0; t < image.getNumTimepoints(); ++t) {
            for (int k = 0; k < image.getSize3(); ++k, directory += 2) {
                setTiffDirectory(tif, directory, dataWhere);
                requireSeparate(tif, c, dataWhere);
                if (!readPlane(image, c, t, k, tif, c)) {
                    return notifyCanceled("");
                }
            }
        }
    }
    notifyFinished("");
}
