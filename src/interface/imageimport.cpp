#include "interface/imageimport.h"

#include "image/files/imagewriter.h"
#include "image/files/photographreader.h"
#include "image/pixels/image2.h"
#include "image/sources/imagesourcefile.h"
#include "interface/conversion.h"
#include "interface/foreignimage.h"
#include "interface/photographimport.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <fstream>

namespace {

bool isReadable(const std::string& path)
{
    return std::ifstream(path, std::ios::binary).good();
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

ImageImport::Kind kindOfTiff(const std::string& path)
{
    const std::vector<TiffPage> pages = PhotographReader().readPages(path);
    if (!ForeignImage::isShownAsItIs(path, pages)) {
        return ImageImport::Kind::Convertible;
    }
    return pages.size() > 1 && ForeignImage::areAlike(pages) ? ImageImport::Kind::Pages
                                                             : ImageImport::Kind::Image;
}

} // namespace

PixelCalibration ImageImport::statedCalibration(const std::string& path)
{
    if (isReadable(path) && ImageReader().readImageFileFormat(path) == ImageFormat::Tiff) {
        return PhotographReader().readPages(path).front().calibration;
    }
    return ImageSourceFile(path).getPixelCalibration();
}

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
        return PhotographImport::isTiff(path) ? kindOfTiff(path) : Kind::Photograph;
    case ImageFormat::Img:
        return Kind::Image;
    case ImageFormat::BigTiff:
    case ImageFormat::Lsm:
    case ImageFormat::Hdf5:
        return Kind::Convertible;
    default:
        return PhotographImport::isTiff(path) ? Kind::Image : Kind::Photograph;
    }
}

std::string
ImageImport::convert(const std::string& path, const std::string& folder, std::string& note)
{
    note.clear();
    std::string told;
    const Image2 image = ForeignImage::read(path, told);
    Conversion conversion(path, folder);
    while (conversion.isMade() && !holds(conversion.path(), image)) {
        conversion.next();
    }
    note = told.empty() ? conversion.note() : path + ": " + told + " in " + conversion.path();
    if (!conversion.isMade()) {
        ImageWriter writer;
        writer.setOrigin(conversion.origin());
        writer.write(image, conversion.path(), false, false);
    }
    return conversion.path();
}
