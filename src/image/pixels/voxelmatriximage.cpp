// Part of `VoxelMatrix`: turning it into an image.

#include "image/pixels/image2.h"
#include "image/pixels/voxelmatrix.h"
#include "image/values/spatialcalibration.h"

#include <type_traits>

namespace {

/// The sample type of an image made of elements of type `T`.
template <class T>
using SampleOf =
    std::conditional_t<std::is_same_v<T, char> || std::is_same_v<T, long double>, double, T>;

} // namespace

template <class T>
Image2 VoxelMatrix<T>::toImage() const
{
    using Sample = SampleOf<T>;
    Image2 image(valueTypeOf<Sample>(), size1, size2, size3, 1, 1, 1);
    SpatialCalibration spatial;
    spatial.setLengthUnit(calibration.getLengthUnit());
    spatial.setSize(calibration.getVoxelSize());
    image.setSpatialCalibration(spatial);
    Vector<Sample> samples = image.asVector<Sample>(0, 0);
    Sample* out = samples.data();
    for (const PixelMatrix<T>& plane : planes) {
        for (int i = 0; i < size1; ++i) {
            const T* row = plane[i].data();
            for (int j = 0; j < size2; ++j) {
                *out++ = static_cast<Sample>(row[j]);
            }
        }
    }
    return image;
}

template Image2 VoxelMatrix<char>::toImage() const;
template Image2 VoxelMatrix<unsigned char>::toImage() const;
template Image2 VoxelMatrix<short>::toImage() const;
template Image2 VoxelMatrix<unsigned short>::toImage() const;
template Image2 VoxelMatrix<int>::toImage() const;
template Image2 VoxelMatrix<unsigned int>::toImage() const;
template Image2 VoxelMatrix<float>::toImage() const;
template Image2 VoxelMatrix<double>::toImage() const;
template Image2 VoxelMatrix<long double>::toImage() const;
