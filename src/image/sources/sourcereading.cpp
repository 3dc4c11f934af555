// Part of `ImageReader`: reading from image sources and mosaics.

#include "image/files/imagereader.h"
#include "image/pixels/image0.h"
#include "image/pixels/voxelmatrix.h"
#include "image/sources/imagemosaic.h"
#include "image/sources/imagesourcekinds.h"
#include "system/exception.h"

namespace {

/// Size, depth and colormap of a source or a mosaic.
template <class Source>
ImageHeader headerOf(const Source& source, int width, int height)
{
    ImageHeader header;
    header.setWidth(width);
    header.setHeight(height);
    header.setDepth(source.getDepth());
    if (source.getColormap() != nullptr) {
        header.setColormap(*source.getColormap());
    }
    return header;
}

ImageHeader headerOf(const ImageSource& source)
{
    return headerOf(source, source.getSize2(), source.getSize1());
}

template <class Volume>
const PixelMatrix<float>& planeOf(const Volume& volume, int plane, const char* where)
{
    if (plane < 0 || plane >= volume.getSize3()) {
        raise<RangeError>(where, "The volume has no plane " + std::to_string(plane));
    }
    return volume[plane];
}

} // namespace

void ImageReader::read(Image0& image, const ImageSource& source)
{
    withKind(source, "void ImageReader::read(Image0&, const ImageSource&)",
             [&](const auto& kind) { read(image, kind); });
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

void ImageReader::read(Image0& image, const ImageSourceFileMosaic& source)
{
    notifyStarted("");
    initAs(image, headerOf(source));
    image.clear();
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
    initAs(image, headerOf(mosaic, mosaic.getWidth(), mosaic.getHeight()));
    image.clear();
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

void ImageReader::read(Image0& image, const ImageSourceTiffStackPlane& source)
{
    readTiffPage(image, source.getTiffStackFilename(), source.getPlane(), headerOf(source));
}

void ImageReader::read(Image0& image, const ImageSourceLSMStackPlane& source)
{
    readLSMPage(image, source.getLsmStackFilename(), source.getPlane(), source.getFrame(),
                headerOf(source));
}

void ImageReader::read(Image2& image, const ImageSource& source)
{
    const char* const where = "void ImageReader::read(Image2&, const ImageSource&)";
    withKind(source, where,
             Kinds{[&](const ImageSourceFile& file) { read(image, file.getFilename(), true); },
                   [&](const ImageSourceTiffStackPlane& page) {
                       read(image, page.getTiffStackFilename(), true);
                   },
                   [&](const ImageSource&) {
                       raise<UsageError>(where, "This kind of image source can't be read whole");
                   }});
}
