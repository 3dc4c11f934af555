#include "image/files/imagewriter.h"

#include "image/files/tifffile.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"
#include "image/values/imageerrors.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <algorithm>
#include <cstring>
#include <locale>
#include <memory>
#include <sstream>
#include <vector>

namespace {

const char* const writeWhere = "void ImageWriter::write(...)";

[[noreturn]] void raiseWriteError(TIFF* tif)
{
    raiseFile<FileWriteError>(writeWhere, TiffMessages::withReason("Cannot write TIFF"),
                              TIFFFileName(tif));
}

template <class... Values>
void setField(TIFF* tif, std::uint32_t tag, Values... values)
{
    if (!TIFFSetField(tif, tag, values...)) {
        raiseWriteError(tif);
    }
}

void writeRow(TIFF* tif, void* row, int index)
{
    if (TIFFWriteScanline(tif, row, static_cast<std::uint32_t>(index), 0) < 0) {
        raiseWriteError(tif);
    }
}

void setResolution(TIFF* tif, std::uint32_t tag, float size)
{
    if (size > 0.0F) {
        setField(tif, tag, static_cast<double>(1.0F / size));
    }
}

std::unique_ptr<FileReplacement> openReplacement(const std::string& path)
{
    try {
        return std::make_unique<FileReplacement>(writeWhere, path);
    } catch (FileWriteError& error) {
        error.setWhat("Cannot open file for writing");
        throw;
    }
}

/// Lets `fill` write a TIFF in the place of the file `path`.
template <class Fill>
void replaceTiff(
    const std::string& path, const char* mode, bool overwrite, bool onlyCopy, Fill fill)
{
    if (!overwrite && FileInfo::fileExists(path)) {
        raiseFile<FileWriteError>(writeWhere, "File already exists", path);
    }
    const std::unique_ptr<FileReplacement> replacement = openReplacement(path);
    if (onlyCopy) {
        replacement->setOnlyCopy();
    }
    try {
        TiffFile file(replacement->temporaryName(), mode);
        if (file.get() == nullptr) {
            raiseFile<FileWriteError>(writeWhere, "Cannot open file for writing", path);
        }
        fill(file.get());
        file.close();
        if (!TiffMessages::firstError().empty()) {
            raiseFile<FileWriteError>(writeWhere, TiffMessages::withReason("Cannot write TIFF"),
                                      path);
        }
    } catch (FileError& error) {
        error.setFilename(path);
        throw;
    }
    replacement->commit();
}

int sampleFormat(ValueType type)
{
    switch (type) {
    case ValueType::UnsignedChar:
    case ValueType::UnsignedShort:
    case ValueType::UnsignedInt:
        return SAMPLEFORMAT_UINT;
    case ValueType::Short:
    case ValueType::Int:
        return SAMPLEFORMAT_INT;
    case ValueType::Float:
    case ValueType::Double:
        return SAMPLEFORMAT_IEEEFP;
    }
    raise<FatalError>("void ImageWriter::writeTIFFHeader(const Image2&, TIFF*)",
                      "Internal error: Value type not handled in switch");
}

std::string line(const char* key, std::size_t value)
{
    return std::string(key) + "=" + std::to_string(value) + "\n";
}

/// The number with six decimals, as "%f" prints it, in every locale.
std::string fixedText(float value)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::fixed << value;
    return stream.str();
}

/// What ImageJ reads from the description of the pages.
std::string description(const Image2& image)
{
    std::string text = "ImageJ=1.51s\n";
    if (image.numSubFiles() >= 2) {
        text += line("images", image.numSubFiles());
    }
    if (image.getNumChannels() >= 2) {
        text += line("channels", static_cast<std::size_t>(image.getNumChannels()));
    }
    if (image.getSize3() >= 2) {
        text += line("slices", static_cast<std::size_t>(image.getSize3()));
    }
    if (image.getNumTimepoints() >= 2) {
        text += line("frames", static_cast<std::size_t>(image.getNumTimepoints()));
        text += "hyperstack=true\n";
    }
    if (image.samplesPerElement() == 1) {
        text += "mode=grayscale\n";
    }
    const SpatialCalibration& calibration = image.getSpatialCalibration();
    const LengthUnit& unit = calibration.getLengthUnit();
    text += "unit=" + (unit.getScale() == -6 ? std::string("micron") : unit.symbol()) + "\n";
    if (image.getSize3() >= 2) {
        text += "spacing=" + fixedText(calibration.getSize3()) + "\nloop=false";
    }
    return text;
}

void setPosition(TIFF* tif, const Vector<float>& position)
{
    if (position.min() != 0.0F || position.max() != 0.0F) {
        float place[3] = {position[0], position[1], position[2]};
        setField(tif, AbstractImageIO::ImagePosition3D, static_cast<float*>(place));
    }
}

void setOriginTag(TIFF* tif, const std::string& origin)
{
    if (!origin.empty()) {
        setField(tif, TIFFTAG_DOCUMENTNAME, origin.c_str());
    }
}

/// The tags of a directory, the same for all planes.
void setTags(TIFF* tif, const Image2& image, const std::string& text, bool compress)
{
    const SpatialCalibration& calibration = image.getSpatialCalibration();
    const int samples = image.samplesPerElement();
    setField(tif, TIFFTAG_IMAGEWIDTH, image.getSize2());
    setField(tif, TIFFTAG_IMAGELENGTH, image.getSize1());
    setField(tif, TIFFTAG_SAMPLESPERPIXEL, samples);
    setField(tif, TIFFTAG_BITSPERSAMPLE, static_cast<int>(image.bytesPerSample() * 8));
    setField(tif, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    setField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    setField(tif, TIFFTAG_ROWSPERSTRIP, 1);
    setField(tif, TIFFTAG_SUBFILETYPE, 0);
    setField(tif, TIFFTAG_IMAGEDESCRIPTION, text.c_str());
    setResolution(tif, TIFFTAG_XRESOLUTION, calibration.getSize2());
    setResolution(tif, TIFFTAG_YRESOLUTION, calibration.getSize1());
    setField(tif, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    setPosition(tif, calibration.getPosition());
    setField(tif, TIFFTAG_SAMPLEFORMAT, sampleFormat(image.getValueType()));
    setField(tif, TIFFTAG_PHOTOMETRIC, samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
    if (samples > 4) {
        const std::vector<std::uint16_t> extra(static_cast<std::size_t>(samples - 3),
                                               EXTRASAMPLE_UNSPECIFIED);
        setField(tif, TIFFTAG_EXTRASAMPLES, static_cast<int>(extra.size()), extra.data());
    }
    if (compress) {
        setField(tif, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    }
}

} // namespace

ImageWriter::ImageWriter() = default;

void ImageWriter::write(const Image0& image, const std::string& path, bool overwrite)
{
    replaceTiff(path, "w", overwrite, !origin_.empty(), [&](TIFF* tif) { writeTIFF(image, tif); });
}

void ImageWriter::writeCompressed(const Image0& image, const std::string& path, bool overwrite)
{
    replaceTiff(path, "w", overwrite, !origin_.empty(), [&](TIFF* tif) {
        setField(tif, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
        setField(tif, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
        writeTIFF(image, tif);
    });
}

void ImageWriter::write(const Image2& image, const std::string& path, bool compress, bool overwrite)
{
    const char* const mode = image.bytes() >= 0x80000000U ? "w8" : "w";
    replaceTiff(path, mode, overwrite, !origin_.empty(),
                [&](TIFF* tif) { writeTIFF(image, tif, compress); });
}

void ImageWriter::writeTIFF(const Image0& image, TIFF* tif)
{
    writeTIFFHeader(image.getHeader(), tif);
    writeTIFFPixels(image, tif);
    if (image.getHeader().hasColormap()) {
        writeTIFFColormap(image.getHeader(), tif);
    }
    writeTiffCalibration(image.getHeader(), tif);
    setOriginTag(tif, origin_);
    if (!TIFFWriteDirectory(tif)) {
        raiseWriteError(tif);
    }
}

void ImageWriter::writeTIFFHeader(const ImageHeader& header, TIFF* tif)
{
    const bool indexed = header.getDepth() == 8 && header.hasColormap();
    const int photometric = indexed                  ? PHOTOMETRIC_PALETTE
                            : header.getDepth() == 8 ? PHOTOMETRIC_MINISBLACK
                                                     : PHOTOMETRIC_RGB;
    if (header.getWidth() < 1 || header.getHeight() < 1) {
        raiseFile<FileWriteError>(writeWhere, "Cannot write an image without pixels",
                                  TIFFFileName(tif));
    }
    setField(tif, TIFFTAG_PHOTOMETRIC, photometric);
    setField(tif, TIFFTAG_SAMPLESPERPIXEL, header.getDepth() / 8);
    setField(tif, TIFFTAG_BITSPERSAMPLE, 8);
    setField(tif, TIFFTAG_IMAGELENGTH, header.getHeight());
    setField(tif, TIFFTAG_IMAGEWIDTH, header.getWidth());
    setField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
}

void ImageWriter::writeTIFFPixels(const Image0& image, TIFF* tif)
{
    // libtiff would gather the one strip whole.
    constexpr tmsize_t gathered = tmsize_t(1) << 16;
    TIFFWriteBufferSetup(tif, nullptr, gathered);
    std::vector<unsigned char> row(static_cast<std::size_t>(TIFFScanlineSize(tif)));
    for (int i = 0; i < image.getHeight(); ++i) {
        std::memcpy(row.data(), image.getPixels()[i], row.size());
        writeRow(tif, row.data(), i);
    }
}

void ImageWriter::writeTIFFColormap(const ImageHeader& header, TIFF* tif)
{
    // A TIFF table has an entry for every index; those that the image lacks are black.
    constexpr int entries = 256;
    const Colormap& colormap = *header.getColormap();
    std::vector<std::uint16_t> tables[3];
    const Vector<unsigned char>* const sources[3] = {&colormap.getRed(), &colormap.getGreen(),
                                                     &colormap.getBlue()};
    for (int c = 0; c < 3; ++c) {
        tables[c].resize(entries);
        for (int i = 0; i < std::min(entries, colormap.getSize()); ++i) {
            tables[c][static_cast<std::size_t>(i)] =
                static_cast<std::uint16_t>((*sources[c])[i] << 8);
        }
    }
    setField(tif, TIFFTAG_COLORMAP, tables[0].data(), tables[1].data(), tables[2].data());
}

void ImageWriter::writeTiffCalibration(const ImageHeader& header, TIFF* tif)
{
    const PixelCalibration& calibration = header.getPixelCalibration();
    setResolution(tif, TIFFTAG_XRESOLUTION, calibration.getPixelWidth());
    setResolution(tif, TIFFTAG_YRESOLUTION, calibration.getPixelHeight());
    const LengthUnit& unit = calibration.getLengthUnit();
    if (unit.getScale() == -2) {
        setField(tif, TIFFTAG_RESOLUTIONUNIT, RESUNIT_CENTIMETER);
    } else {
        setField(tif, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
        setField(tif, TIFFTAG_IMAGEDESCRIPTION, ("unit=" + unit.symbol()).c_str());
    }
}

void ImageWriter::writeTIFF(const Image2& image, TIFF* tif, bool compress)
{
    if (image.bytes() == 0) {
        sampleFormat(image.getValueType());
        raiseFile<FileWriteError>(writeWhere, "Cannot write an image without pixels",
                                  TIFFFileName(tif));
    }
    writeTiffData(image, tif, compress);
}

void ImageWriter::writeTiffData(const Image2& image, TIFF* tif, bool compress)
{
    notifyStarted("");
    const std::string text = description(image);
    const std::size_t lineLength = image.bytesPerLine();
    std::vector<unsigned char> row(lineLength);
    int directories = 0;
    for (int t = 0; t < image.getNumTimepoints(); ++t) {
        for (int k = 0; k < image.getSize3(); ++k) {
            for (int c = 0; c < image.getNumChannels(); ++c) {
                setTags(tif, image, text, compress);
                setOriginTag(tif, origin_);
                const unsigned char* source =
                    image.frame(c, t) + static_cast<std::size_t>(k) * image.bytesPerPlane();
                for (int i = 0; i < image.getSize1(); ++i, source += lineLength) {
                    std::memcpy(row.data(), source, lineLength);
                    writeRow(tif, row.data(), i);
                }
                if (!TIFFWriteDirectory(tif)) {
                    raiseWriteError(tif);
                }
                notifyProgressed(++directories, static_cast<int>(image.numSubFiles()));
            }
        }
    }
    if (isCanceled()) {
        notifyCanceled("");
    } else {
        notifyFinished("");
    }
}
