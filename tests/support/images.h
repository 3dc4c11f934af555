#pragma once

#include "image/pixels/image0.h"
#include "image/pixels/voxelmatrix.h"
#include "image/values/lengthunit.h"
#include "image/values/spatialcalibration.h"
#include "support/vectors.h"

#include <algorithm>
#include <random>
#include <vector>

inline LengthUnit unitOf(int scale)
{
    LengthUnit unit;
    unit.setScale(scale);
    return unit;
}

inline SpatialCalibration calibrationOf(int scale, float size1, float size2, float size3)
{
    SpatialCalibration calibration;
    calibration.setLengthUnit(unitOf(scale));
    calibration.setSize(size1, size2, size3);
    return calibration;
}

/// Pixel (i, j) is `pixel(i, j)`; the calls go row by row.
template <class T, class Pixel>
PixelMatrix<T> imageFrom(int rows, int columns, Pixel pixel)
{
    return PixelMatrix<T>(matrixFrom<T>(rows, columns, pixel));
}

/// Voxel (i, j, k) is `voxel(i, j, k)`; the calls go plane by plane.
template <class T, class Voxel>
VoxelMatrix<T> volumeFrom(int rows, int columns, int planes, Voxel voxel)
{
    VoxelMatrix<T> volume(rows, columns, planes);
    for (int k = 0; k < planes; ++k) {
        volume[k] = imageFrom<T>(rows, columns, [&](int i, int j) { return voxel(i, j, k); });
    }
    return volume;
}

/// An image of random bytes.
inline Image0 randomImage0(int width, int height, int depth, unsigned int seed)
{
    Image0 image(width, height, depth);
    std::mt19937 random(seed);
    std::generate_n(image.getData(), image.dataLength(),
                    [&random] { return static_cast<unsigned char>(random()); });
    return image;
}

inline std::vector<int> bytesOf(const Image0& image)
{
    return {image.getData(), image.getData() + image.dataLength()};
}
