#include "fuzz/entries.h"
#include "image/files/imagereader.h"
#include "image/pixels/image2.h"

#include <algorithm>

namespace {

bool readHdf5(const std::string& path)
{
    Image2 header;
    ImageReader().read(header, path, false);
    require(header.getSize1() > 0 && header.getSize2() > 0 && header.getSize3() > 0,
            "a header has a size");
    const Image2 image(path);
    require(image.isSimilar(header), "the header tells the size");
    const unsigned char* const last = image.frame(0, 0);
    static_cast<void>(std::count(last, last + image.bytes(), 0));
    return true;
}

} // namespace

const FuzzEntry hdf5Entry = {"hdf5", "h5", readHdf5};
