#include "image/files/lsminfo.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t blockLength = 64;

struct Block
{
    const unsigned char* bytes = nullptr; ///< null without the tag
    std::size_t length = 0;
};

/// libtiff does not know the tag, so it hands out a count and an array of the type that the file says.
Block lsmBlock(TIFF* tif)
{
    const TIFFField* const field = TIFFFindField(tif, LsmInfo::tag, TIFF_ANY);
    if (field == nullptr || !TIFFFieldPassCount(field) ||
        TIFFFieldReadCount(field) != TIFF_VARIABLE2) {
        return {};
    }
    std::uint32_t count = 0;
    const unsigned char* block = nullptr;
    if (!TIFFGetField(tif, LsmInfo::tag, &count, &block) || block == nullptr) {
        return {};
    }
    const int width = std::max(TIFFDataWidth(TIFFFieldDataType(field)), 0);
    return {block, std::size_t(count) * static_cast<std::size_t>(width)};
}

template <class T>
void take(T& value, const unsigned char* block, std::size_t offset)
{
    std::memcpy(&value, block + offset, sizeof(value));
}

} // namespace

LsmInfo::LsmInfo(TIFF* tif)
{
    const auto [block, length] = lsmBlock(tif);
    if (length < sizeof(S32MagicNumber)) {
        return;
    }
    take(S32MagicNumber, block, 0);
    if (length < blockLength) {
        return;
    }
    take(dimensionX, block, 8);
    take(dimensionY, block, 12);
    take(dimensionZ, block, 16);
    take(channels, block, 20);
    take(timepoints, block, 24);
    take(voxelSizeX, block, 40);
    take(voxelSizeY, block, 48);
    take(voxelSizeZ, block, 56);
}

bool LsmInfo::isValid() const
{
    return S32MagicNumber == 0x0300494C || S32MagicNumber == 0x0400494C;
}
