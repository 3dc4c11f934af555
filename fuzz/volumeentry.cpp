#include "fuzz/entries.h"
#include "image/pixels/voxelmatrix.h"

namespace {

bool readVolume(const std::string& path)
{
    VoxelMatrix<float> header;
    header.loadHeader(path);
    VoxelMatrix<float> volume(path);
    require(volume.getSize3() == header.getSize3(), "the header tells the planes");
    volume.save(path + ".1.vm", true);
    const VoxelMatrix<float> again(path + ".1.vm");
    again.save(path + ".2.vm", true);
    require(bytesOf(path + ".1.vm") == bytesOf(path + ".2.vm"), "a volume comes back as written");
    return true;
}

} // namespace

const FuzzEntry volumeEntry = {"volume", "vm", readVolume};
