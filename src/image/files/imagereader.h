#pragma once

#include "image/files/abstractimageio.h"
#include "image/files/childreader.h"
#include "image/files/hdf5dataset.h"
#include "image/values/imageformat.h"
#include "image/values/valuetype.h"

#include <string>
#include <vector>

namespace H5 {
class H5File;
}

class Image0;
class Image2;
class ImageHeader;
class ImageMosaic;
class ImageSource;
class ImageSourceFile;
class ImageSourceFileMosaic;
class ImageSourceLSMStackPlane;
class ImageSourceTiffStackPlane;
class ImageSourceVoxelMatrixFilePlane;
class ImageSourceVoxelMatrixPlane;
class SpatialCalibration;

/// Reads images from files: TIFF with the description conventions of ImageJ, BigTIFF and HDF5 (into
/// an `Image2`), LSM and the raw IMG format.
///
/// Every operation raises `FileReadError` for a file that can't be opened or whose pixels can't be
/// read, and `FileFormatError` for one that is not of a known format or uses a feature that is not
/// read here; both name the file, and their message holds the reason. Sizes that a file claims are
/// held against its length before memory is taken. A cancelled read leaves the rows read so far in
/// the image and raises nothing: `isCanceled()` tells. libtiff and HDF5 print nothing meanwhile.
class ImageReader : public virtual AbstractImageIO
{
public:
    ImageReader();

    /// The format that the first bytes tell, `Unknown` for none. A TIFF with the info block of the
    /// microscope is `Lsm`; raw images count only with the suffix "img" or "IMG".
    ImageFormat readImageFileFormat(const std::string& path);

    /// Geometry and calibration of a TIFF, LSM or IMG file. Bits must be 8 or 16, samples 1, 3 or 4.
    void read(ImageHeader& header, const std::string& path);

    /// Header and pixels of a TIFF or IMG file. The pixels of an LSM file come through
    /// `ImageSourceLSMStackPlane`; here they are zero.
    void read(Image0& image, const std::string& path);

    /// Header, and the data when `load` is true, of a TIFF, BigTIFF, LSM, HDF5 or IMG file. HDF5 is
    /// read by a child process, since a damaged file can make its library crash.
    void read(Image2& image, const std::string& path, bool load);

    /// Reads from any kind of source.
    void read(Image0& image, const ImageSource& source);
    void read(Image0& image, const ImageSourceFile& source);

    /// Cells without a file stay black.
    void read(Image0& image, const ImageSourceFileMosaic& source);
    void read(Image0& image, const ImageMosaic& mosaic);

    /// With the source's colormap. `FileFormatError` for a page of other size or depth than the
    /// source, which knows those of the first. A cancelled read tells so alone.
    void read(Image0& image, const ImageSourceTiffStackPlane& source);

    /// The header of an LSM file tells the dimensions the other way round, so that a plane that is
    /// not square is refused (`FileFormatError`) and not cropped; an `Image2` takes it.
    void read(Image0& image, const ImageSourceLSMStackPlane& source);

    /// A 16-bit image of the plane; lists it on the standard output too.
    void read(Image0& image, const ImageSourceVoxelMatrixPlane& source);

    /// An 8-bit image of the plane; lists it on the standard output too.
    void read(Image0& image, const ImageSourceVoxelMatrixFilePlane& source);

    /// The whole file of an `ImageSourceFile` or `ImageSourceTiffStackPlane`; raises `UsageError` for
    /// other sources.
    void read(Image2& image, const ImageSource& source);

    /// Names the dataset that HDF5 files are read from, for all readers of the process. Without a
    /// name, the links of the first file's root group are kept as the names, and the first one is read
    /// from that file and from all that follow.
    void setHDF5Key(const std::string& key);

    /// The names given or found; `setHDF5Keys` puts them back, or takes none.
    std::vector<std::string> getHDF5Keys() const { return _keys(); }

    void setHDF5Keys(const std::vector<std::string>& keys) { _keys() = keys; }

    /// The datasets in the root group that can be read, in the order of their names. Takes no name.
    std::vector<HDF5DataSet> readHDF5DataSets(const std::string& path);

protected:
    /// The steps below work on an open handle, at its present directory. They raise the errors of
    /// the class.
    void readTiffHeader(ImageHeader& header, TIFF* tif);
    void readTiffHeader(Image2& image, TIFF* tif);
    void readTiffCalibration(ImageHeader& header, TIFF* tif);
    SpatialCalibration readTiffCalibration(TIFF* tif);
    void readTiffColormap(ImageHeader& header, TIFF* tif);

    /// The number of directories, up to where their chain ends or leads nowhere. Raises
    /// `FileFormatError` above 65535, `FileReadError` without any, or where the chain is broken before
    /// the last page that the description tells of.
    int readTiffNumPlanes(TIFF* tif);
    void readTiffPixels(Image0& image, TIFF* tif);

    /// A page of the file, which must have size and depth of `header`; the image gets its colormap.
    void readTiffPage(Image0& image, const std::string& path, int page, const ImageHeader& header);
    void readTiffData(Image2& image, TIFF* tif);
    void readTiffImage(Image2& image, const std::string& path, bool load);

    void readLSMHeader(ImageHeader& header, TIFF* tif);
    void readLSMHeader(Image2& image, TIFF* tif);
    SpatialCalibration readLSMCalibration(TIFF* tif);
    void readLSMColormap(ImageHeader& header, TIFF* tif);

    /// `frame` is the sample of the directory that holds the channel.
    void readLSMPixels(Image0& image, TIFF* tif, int frame);

    /// The channel `frame` of a directory of the file, as an image of size, depth and colormap of
    /// `header`.
    void readLSMPage(Image0& image,
                     const std::string& path,
                     int directory,
                     int frame,
                     const ImageHeader& header);
    void readLSMData(Image2& image, TIFF* tif);
    void readLSMImage(Image2& image, const std::string& path, bool load);

    void readImgImage(Image2& image, const std::string& path, bool load);

    /// False when the file falls short of its 512 by 512 pixels.
    bool readImgPixels(Image0& image, const std::string& path);
    bool readImgPixels(Image2& image, const std::string& path);

    void readHDF5Header(Image2& image, H5::H5File* file);
    void readHDF5Data(Image2& image, H5::H5File* file);
    void readHDF5Image(Image2& image, const std::string& path, bool load);

private:
    /// Gives the image size, depth and colormap of the header.
    static void initAs(Image0& image, const ImageHeader& header);
    void sendHDF5(const ChildReader::Sender& sender, const std::string& path, bool load);
    void readRows(Image0& image, TIFF* tif, int sample, const char* where);
    void setReadGeometry(Image2& image,
                         TIFF* tif,
                         ValueType type,
                         int planes,
                         int samples,
                         int channels,
                         int timepoints);
    bool readPlane(Image2& image, int channel, int timepoint, int plane, TIFF* tif, int sample);
    void readPosition(SpatialCalibration& calibration, TIFF* tif);
    void readMosaicCell(Image0& image, const std::string& path, int x, int y);

    // No plain class data: each library with this code would set up and destroy the one list.
    static std::vector<std::string>& _keys();
};
