#include "image/files/imagereader.h"

#include "image/files/lsminfo.h"
#include "image/files/tifffile.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"
#include "image/pixels/voxelmatrix.h"
#include "image/sources/imagemosaic.h"
#include "image/sources/imagesourcefile.h"
#include "image/sources/imagesourcefilemosaic.h"
#include "image/sources/imagesourcelsmstackplane.h"
#include "image/sources/imagesourcetiffstackplane.h"
#include "image/sources/imagesourcevoxelmatrixfileplane.h"
#include "image/sources/imagesourcevoxelmatrixplane.h"
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

void ImageReader::read(Image0& image, const ImageSource& source)
{
    if (const auto* file = dynamic_cast<const ImageSourceFile*>(&source)) {
        read(image, *file);
    } else if (const auto* mosaic = dynamic_cast<const ImageSourceFileMosaic*>(&source)) {
        read(image, *mosaic);
    } else if (const auto* page = dynamic_cast<const ImageSourceTiffStackPlane*>(&source)) {
        read(image, *page);
    } else if (const auto* lsm = dynamic_cast<const ImageSourceLSMStackPlane*>(&source)) {
        read(image, *lsm);
    } else if (const auto* plane = dynamic_cast<const ImageSourceVoxelMatrixPlane*>(&source)) {
        read(image, *plane);
    } else if (const auto* filePlane =
                   dynamic_cast<const ImageSourceVoxelMatrixFilePlane*>(&source)) {
        read(image, *filePlane);
    } else {
        raise<UsageError>("void ImageReader::read(Image0&, const ImageSource&)",
                          "Unknown kind of image source");
    }
}

void ImageReader::read(Image0& image, const ImageSourceFile& source)
{
    read(image, source.getFilename());
}

void ImageReader::readMosaicCell(Image0& image, const std::string& path, int x, int y)
{
    Image0 cell;
    read(cell, path);
    image.paste(cell, x, y);
}

namespace {

/// Gives the image the size of a grid of files, black, with the grid's colormap.
template <class Grid>
void initMosaic(Image0& image, const Grid& grid, int width, int height)
{
    image.init(width, height, grid.getDepth());
    image.setGrayscale(0);
    if (grid.getColormap() != nullptr) {
        image.setColormap(*grid.getColormap());
    }
    image.clear();
}

} // namespace

void ImageReader::read(Image0& image, const ImageSourceFileMosaic& source)
{
    notifyStarted("");
    initMosaic(image, source, source.getSize2(), source.getSize1());
    for (int row = 0, y = 0; row < source.getRows(); y += source.rowHeights()[row++]) {
        for (int col = 0, x = 0; col < source.getCols(); x += source.colWidths()[col++]) {
            const std::string path = source.getFilename(row, col);
            if (!path.empty()) {
                readMosaicCell(image, path, x, y);
            }
        }
    }
    notifyFinished("");
}

void ImageReader::read(Image0& image, const ImageMosaic& mosaic)
{
    notifyStarted("");
    if (mosaic.getRows() == 1 && mosaic.getCols() == 1) {
        read(image, mosaic.getItemPathname(0, 0) + mosaic.getItemFilename(0, 0));
        notifyFinished("");
        return;
    }
    initMosaic(image, mosaic, mosaic.getWidth(), mosaic.getHeight());
    for (int row = 0, y = 0; row < mosaic.getRows(); y += mosaic.rowHeights()[row++]) {
        for (int col = 0, x = 0; col < mosaic.getCols(); x += mosaic.colWidths()[col++]) {
            const std::string name = mosaic.getItemFilename(row, col);
            if (!name.empty()) {
                readMosaicCell(image, mosaic.getItemPathname(row, col) + name, x, y);
            }
        }
    }
    notifyFinished("");
}

namespace {

template <class Volume>
const PixelMatrix<float>& planeOf(const Volume& volume, int plane, const char* where)
{
    if (plane < 0 || plane >= volume.getSize3()) {
        raise<RangeError>(where, "The volume has no plane " + std::to_string(plane));
    }
    return volume[plane];
}

} // namespace

void ImageReader::read(Image0& image, const ImageSourceVoxelMatrixPlane& source)
{
    notifyStarted("");
    planeOf(source.getVoxelMatrix(), source.getPlane(),
            "void ImageReader::read(Image0&, const ImageSourceVoxelMatrixPlane&)")
        .convertToImage(image, 16);
    image.print("image read from voxel matrix:", true);
    notifyFinished("");
}

void ImageReader::read(Image0& image, const ImageSourceVoxelMatrixFilePlane& source)
{
    const VoxelMatrix<float> volume(source.getVoxelMatrixFilename());
    planeOf(volume, source.getPlane(),
            "void ImageReader::read(Image0&, const ImageSourceVoxelMatrixFilePlane&)")
        .convertToImage(image, 8);
    image.print("image read from voxel matrix file:", true);
}

void ImageReader::read(Image2& image, const ImageSource& source)
{
    if (const auto* file = dynamic_cast<const ImageSourceFile*>(&source)) {
        read(image, file->getFilename(), true);
    } else if (const auto* page = dynamic_cast<const ImageSourceTiffStackPlane*>(&source)) {
        read(image, page->getTiffStackFilename(), true);
    } else {
        raise<UsageError>("void ImageReader::read(Image2&, const ImageSource&)",
                          "This kind of image source can't be read whole");
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
