#pragma once

#include <tiffio.h>

#include <cstdint>

/// The block of numbers that a microscope of the LSM family puts into its TIFF files.
struct LsmInfo
{
    static constexpr std::uint32_t tag = 34412;

    std::uint32_t S32MagicNumber = 0;
    std::uint32_t dimensionX = 0;
    std::uint32_t dimensionY = 0;
    std::uint32_t dimensionZ = 0;
    std::uint32_t channels = 0;
    std::uint32_t timepoints = 0;
    double voxelSizeX = 0.0; ///< in metres, as the next two
    double voxelSizeY = 0.0;
    double voxelSizeZ = 0.0;

    /// Reads the block of the present directory; all fields stay 0 when there is none, all but the magic
    /// number when it is short.
    explicit LsmInfo(TIFF* tif);

    /// Whether the magic number is one of the two known.
    bool isValid() const;

    /// Whether the present directory has a block with a known magic number.
    static bool isIn(TIFF* tif) { return LsmInfo(tif).isValid(); }
};
