#include "fuzz/entries.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/pixels/voxelmatrix.h"
#include "stack/stack.h"
#include "stack/stackreader.h"
#include "stack/stackwriter.h"
#include "system/exception.h"
#include "system/fileinfo.h"

namespace {

/// The images that the seeds name.
void supplyImages(const std::string& folder)
{
    if (!FileInfo::fileExists(folder + "leaf.tif")) {
        Image0 image;
        image.init(12, 9, 8);
        image.clear();
        ImageWriter().write(image, folder + "leaf.tif", true);
        VoxelMatrix<float>(4, 5, 3).save(folder + "volume.vm", true);
    }
}

void write(const Stack& stack, const std::string& path)
{
    try {
        require(StackWriter().write(stack, path), "the stack can be written");
    } catch (const Exception& error) {
        throw Broken("a stack that was read is refused by the writer: " + error.getWhat());
    }
}

bool readStack(const std::string& path)
{
    supplyImages(FileInfo::dirName(path));
    Stack stack;
    StackReader reader;
    if (!reader.read(stack, path)) {
        require(reader.getNumFatalErrors() > 0 && !reader.getLog().empty(), "a refusal is told");
        return false;
    }
    write(stack, path + ".1");
    Stack again;
    require(reader.read(again, path + ".1"), "a stack that was written is read");
    write(again, path + ".2");
    require(bytesOf(path + ".1") == bytesOf(path + ".2"), "a stack comes back as written");
    return true;
}

} // namespace

const FuzzEntry stackEntry = {"stack", "sdf", readStack};
