#include "image/files/imagereader.h"

#include "image/files/lsminfo.h"
#include "image/files/tifffile.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"
#include "system/fileinfo.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>

namespace {

constexpr int imgSize = 512;
constexpr int imgHeaderLength = 12;

using Magic = std::array<char, 8>;

/// The first bytes of a file, zeros behind its end.
Magic firstBytes(std::ifstream& stream)
{
    Magic magic{};
    stream.read(magic.data(), static_cast<std::streamsize>(magic.size()));
    return magic;
}

bool startsWith(const Magic& magic, const std::string& text)
{
    return std::string(magic.data(), magic.size()).compare(0, text.size(), text) == 0;
}

bool hasTiffMark(const Magic& magic, char mark)
{
    return (startsWith(magic, "II") && magic[2] == mark) ||
           (startsWith(magic, "MM") && magic[3] == mark);
}

bool isImg(const Magic& magic, const std::string& path)
{
    const std::string suffix = FileInfo::suffixName(path);
    return startsWith(magic, "0000") && (suffix == "img" || suffix == "IMG");
}

ImageFormat tiffOrLsm(const std::string& path)
{
    const TiffFile file(path, "r");
    return file.get() != nullptr && LsmInfo::isIn(file.get()) ? ImageFormat::Lsm
                                                              : ImageFormat::Tiff;
}

bool readImg(unsigned char* pixels, const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    stream.seekg(imgHeaderLength);
    stream.read(reinterpret_cast<char*>(pixels), imgSize * imgSize);
    return stream.good();
}

/// The steps tell by false that a file falls short; the whole operation has no other way than this.
[[noreturn]] void raiseShortImg(const std::string& path)
{
    raiseFile<FileReadError>("bool ImageReader::readImgPixels(...)",
                             "The file is shorter than its 512 by 512 pixels", path);
}

} // namespace

std::vector<std::string>& ImageReader::_keys()
{
    static std::vector<std::string> keys;
    return keys;
}

ImageReader::ImageReader() = default;

ImageFormat ImageReader::readImageFileFormat(const std::string& path)
{
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        raiseFile<FileReadError>(
            "void ImageReader::readImageFileFormat(const string&)",
            std::string("Cannot open file for reading: ") + std::strerror(errno), path);
    }
    const Magic magic = firstBytes(stream);
    if (startsWith(magic, "0000")) {
        return isImg(magic, path) ? ImageFormat::Img : ImageFormat::Unknown;
    }
    if (hasTiffMark(magic, '*')) {
        return tiffOrLsm(path);
    }
    if (hasTiffMark(magic, '+')) {
        return ImageFormat::BigTiff;
    }
    if (startsWith(magic, "\x89HDF\r\n\x1a\n")) {
        return ImageFormat::Hdf5;
    }
    return startsWith(magic, "ZISRAWFI") ? ImageFormat::Czi : ImageFormat::Unknown;
}

void ImageReader::read(ImageHeader& header, const std::string& path)
{
    const char* const where = "void ImageReader::readHeader(ImageHeader&,const string&) const";
    header.clear();
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        raiseFile<FileReadError>(where, "Cannot open file for reading", path);
    }
    const Magic magic = firstBytes(stream);
    stream.close();
    if (isImg(magic, path)) {
        header.setImageFormat(ImageFormat::Img);
        header.setHeight(imgSize);
        header.setWidth(imgSize);
        header.setPlanes(1);
        header.setDepth(8);
    } else if (hasTiffMark(magic, '*')) {
        const TiffFile file(path, "r");
        TIFF* const tif = TiffFile::require(file, where, path);
        if (LsmInfo::isIn(tif)) {
            header.setImageFormat(ImageFormat::Lsm);
            readLSMHeader(header, tif);
        } else {
            header.setImageFormat(ImageFormat::Tiff);
            readTiffHeader(header, tif);
        }
    } else {
        header.setImageFormat(ImageFormat::Unknown);
        raiseFile<FileFormatError>(where, "Unrecognized image file format", path);
    }
}

void ImageReader::read(Image0& image, const std::string& path)
{
    try {
        ImageHeader header;
        read(header, path);
        if (header.getImageFormat() == ImageFormat::Img) {
            image.setHeader(header);
            if (!readImgPixels(image, path)) {
                raiseShortImg(path);
            }
            return;
        }
        const char* const where = "void Image::readTiffPixels(Image&, TIFF*)";
        const TiffFile file(path, "r");
        TIFF* const tif = TiffFile::require(file, where, path);
        tiffcheck::dataFits(tif, header, where);
        image.setHeader(header);
        if (header.getImageFormat() == ImageFormat::Tiff) {
            readTiffPixels(image, tif);
        } else {
            image.clear();
        }
    } catch (Exception& exception) {
        exception.addWhere("void ImageReader::read(...)");
        throw;
    }
}

void ImageReader::read(Image2& image, const std::string& path, bool load)
{
    try {
        notifyStarted("");
        switch (readImageFileFormat(path)) {
        case ImageFormat::Img:
            readImgImage(image, path, load);
            break;
        case ImageFormat::Tiff:
        case ImageFormat::BigTiff:
            readTiffImage(image, path, load);
            break;
        case ImageFormat::Lsm:
            readLSMImage(image, path, load);
            break;
        case ImageFormat::Hdf5:
            readHDF5Image(image, path, load);
            break;
        default:
            raiseFile<FileFormatError>("void ImageReader::read(Image2&,const string&,const bool)",
                                       "Unsupported image file format", path);
        }
        image.initMapper();
        notifyFinished("");
    } catch (Exception& exception) {
        exception.addWhere("void ImageReader::read(...)");
        throw;
    }
}

void ImageReader::initAs(Image0& image, const ImageHeader& header)
{
    image.init(header.getWidth(), header.getHeight(), header.getDepth());
    image.setGrayscale(0);
    if (header.hasColormap()) {
        image.setColormap(*header.getColormap());
    }
}

void ImageReader::setHDF5Key(const std::string& key)
{
    _keys().clear();
    _keys().push_back(key);
}

void ImageReader::readImgImage(Image2& image, const std::string& path, bool load)
{
    image.setGeometry(ValueType::UnsignedChar, imgSize, imgSize, 1, 1, 1, 1);
    if (load) {
        image.allocateData();
        if (!readImgPixels(image, path)) {
            raiseShortImg(path);
        }
    }
}

bool ImageReader::readImgPixels(Image0& image, const std::string& path)
{
    return readImg(image.getData(), path);
}

bool ImageReader::readImgPixels(Image2& image, const std::string& path)
{
    return readImg(image.frame(0, 0), path);
}
