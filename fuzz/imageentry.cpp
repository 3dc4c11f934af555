#include "fuzz/entries.h"
#include "image/files/imagereader.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"
#include "image/pixels/voxelmatrix.h"
#include "image/sources/imagesourcelsmstackplane.h"
#include "image/sources/imagesourcetiffstackplane.h"
#include "system/exception.h"

#include <algorithm>

namespace {

/// Whether a way of reading took the file. One way may refuse what another can read.
template <class Reading>
bool succeeds(const Reading& reading)
{
    try {
        reading();
        return true;
    } catch (const FileError& error) {
        require(!error.getFilename().empty() && !error.getWhat().empty(),
                "an error names the file");
        return false;
    } catch (const Exception&) {
        return false;
    }
}

void readHeader(const std::string& path)
{
    ImageHeader header;
    ImageReader().read(header, path);
    require(header.getWidth() > 0 && header.getHeight() > 0, "a header has a size");
}

void readImage0(const std::string& path)
{
    Image0 image;
    ImageReader().read(image, path);
    const unsigned char* const last = image.getPixels()[image.getHeight() - 1];
    static_cast<void>(std::count(last, last + image.bytesPerLine(), 0));
}

void readImage2(const std::string& path)
{
    Image2 image;
    ImageReader().read(image, path, true);
    require(image.bytes() > 0, "an image has pixels");
    const unsigned char* const last =
        image.frame(image.getNumChannels() - 1, image.getNumTimepoints() - 1);
    static_cast<void>(std::count(last, last + image.bytesPerLine(), 0));
}

void readPages(const std::string& path)
{
    ImageSourceTiffStackPlane source;
    source.setTiffStackFilename(path);
    for (int plane = 0; plane < std::min(source.getNumImages(), 4); ++plane) {
        Image0 image;
        source.setPlane(plane);
        ImageReader().read(image, source);
    }
}

void readChannels(const std::string& path)
{
    ImageSourceLSMStackPlane source;
    source.setLSMStackFilename(path);
    for (int frame = 0; frame < std::min(source.getChannel(), 4); ++frame) {
        Image0 image;
        source.setFrame(frame);
        ImageReader().read(image, source);
    }
}

bool readAll(const std::string& path)
{
    ImageFormat format = ImageFormat::Unknown;
    if (!succeeds([&] { format = ImageReader().readImageFileFormat(path); }) ||
        format == ImageFormat::Hdf5) { // has an entry of its own
        return false;
    }
    bool sound = succeeds([&] { readImage2(path); });
    sound = succeeds([&] { readHeader(path); }) || sound;
    sound = succeeds([&] { readImage0(path); }) || sound;
    sound = succeeds([&] { readPages(path); }) || sound;
    sound = succeeds([&] { VoxelMatrix<float> volume(path); }) || sound;
    if (format == ImageFormat::Lsm) {
        sound = succeeds([&] { readChannels(path); }) || sound;
    }
    return sound;
}

} // namespace

const FuzzEntry imageEntry = {"image", "tif", readAll};
