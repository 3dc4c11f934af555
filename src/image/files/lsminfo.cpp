#include "image/files/lsminfo.h"

#include <cstring>

namespace {

constexpr std::uint32_t blockLength = 64;

/// The bytes of the block; null when they are not there. libtiff does not know the tag, so it hands
/// out a count and an array of the type that the file says.
const unsigned char* lsmBlock(TIFF* tif)
{
    const TIFFField* const field = TIFFFindField(tif, LsmInfo::tag, TIFF_ANY);
    if (field == nullptr || !TIFFFieldPassCount(field) ||
        TIFFFieldReadCount(field) != TIFF_VARIABLE2) {
        return nullptr;
    }
    std::uint32_t count = 0;
    const unsigned char* block = nullptr;
    if (!TIFFGetField(tif, LsmInfo::tag, &count, &block) || block == nullptr) {
        return nullptr;
    }
    const int width = TIFFDataWidth(TIFFFieldDataType(field));
    return width > 0 && count >= blockLength / static_cast<std::uint32_t>(width) ? block : nullptr;
}

template <class T>
void take(T& value, const unsigned char* block, std::size_t offset)
{
    std::memcpy(&value, block + offset, sizeof(value));
}

} // namespace

LsmInfo::LsmInfo(TIFF* tif)
{
    const unsigned char* const block = lsmBlock(tif);
    if (block == nullptr) {
        return;
    }
    take(S32MagicNumber, block, 0);
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
