#include "fuzz/entries.h"
#include "image/files/imagereader.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"

#include <algorithm>
#include <filesystem>

namespace {

constexpr std::size_t headerLength = 12;
constexpr std::size_t pixels = std::size_t(512) * 512;

/// The file as it is, which is nearly always too short.
void readShort(const std::string& path)
{
    try {
        Image2 image(path);
        require(std::filesystem::file_size(path) >= headerLength + pixels, "a short file is told");
    } catch (const Exception&) {
        // Told.
    }
}

/// Fills the file up: seeds of a quarter of a megabyte would make each step slow.
bool readImg(const std::string& path)
{
    readShort(path);
    std::filesystem::resize_file(path, headerLength + pixels);
    const Image2 image(path);
    Image0 plane;
    ImageReader().read(plane, path);
    const std::string bytes = bytesOf(path);
    const auto same = [&bytes](const unsigned char* read) {
        return std::equal(
            read, read + pixels, bytes.begin() + headerLength,
            [](unsigned char a, char b) { return a == static_cast<unsigned char>(b); });
    };
    require(same(image.frame(0, 0)) && same(plane.getData()), "the pixels are those of the file");
    return true;
}

} // namespace

const FuzzEntry imgEntry = {"img", "img", readImg};
