// Part of `VoxelMatrix`: reading the pages of a TIFF file.

#include "image/files/imagereader.h"
#include "image/files/tifffile.h"
#include "image/pixels/image0.h"
#include "image/pixels/voxelmatrix.h"
#include "image/sources/imagesourcetiffstackplane.h"

#include <cstdint>

namespace {

/// Holds the pages of a TIFF, which may share their pixels, against the length of the file.
void requireVolume(const std::string& path, const Image0& page, int pages)
{
    const char* const where = "void VoxelMatrix<T>::load(const string&)";
    const TiffFile file(path, "r");
    tiffcheck::dataFits(TiffFile::require(file, where, path),
                        std::uint64_t(page.getHeight()) * page.bytesPerLine() *
                            static_cast<std::uint64_t>(pages),
                        where);
}

} // namespace

template <class T>
void VoxelMatrix<T>::readTiff(const std::string& path, bool withElements)
{
    ImageSourceTiffStackPlane source;
    source.setTiffStackFilename(path);
    const PixelCalibration& pixel = source.getPixelCalibration();
    LengthUnit unit;
    unit.setScale(pixel.getLengthUnit().getScale());
    calibration.setLengthUnit(unit);
    calibration.setVoxelHeight(pixel.getPixelWidth());
    calibration.setVoxelWidth(pixel.getPixelHeight());
    calibration.setVoxelDepth(source.getVoxelSizeZ());
    const int pages = source.getNumImages();
    if (!withElements) {
        takeSizes(source.getSize1(), source.getSize2(), pages, false);
        return;
    }
    for (int k = 0; k < pages; ++k) {
        Image0 image;
        source.setPlane(k);
        ImageReader().read(image, source);
        if (k == 0) {
            requireVolume(path, image, pages);
            setSize(image.getHeight(), image.getWidth(), pages);
        }
        if (image.getHeight() != size1 || image.getWidth() != size2) {
            raiseFile<FileFormatError>("void VoxelMatrix<T>::load(const string&)",
                                       "The pages have different sizes", path);
        }
        (*this)[k].convertFromImage(image);
    }
}

template void VoxelMatrix<char>::readTiff(const std::string&, bool);
template void VoxelMatrix<unsigned char>::readTiff(const std::string&, bool);
template void VoxelMatrix<short>::readTiff(const std::string&, bool);
template void VoxelMatrix<unsigned short>::readTiff(const std::string&, bool);
template void VoxelMatrix<int>::readTiff(const std::string&, bool);
template void VoxelMatrix<unsigned int>::readTiff(const std::string&, bool);
template void VoxelMatrix<float>::readTiff(const std::string&, bool);
template void VoxelMatrix<double>::readTiff(const std::string&, bool);
template void VoxelMatrix<long double>::readTiff(const std::string&, bool);
