#include "stack/stacktovolume.h"

#include "image/pixels/image0.h"
#include "image/pixels/voxelmatrix.h"
#include "stack/stack.h"
#include "stack/stackslice.h"

template <class T>
void loadPlane(const Slice& slice, PixelMatrix<T>& plane, int channel)
{
    Image0 image;
    slice.load(image);
    if (channel == 0) {
        image.make8bitsGrayscale();
        plane.convertFromImage(image);
    } else if (channel >= 1 && channel <= 3) {
        plane.convertFromImage(image, static_cast<ImageChannel>(channel - 1));
    }
}

template <class T>
void stackToVolume(const Stack& stack, VoxelMatrix<T>& volume, int channel)
{
    const int slices = stack.getNumSlices();
    const int rows = slices > 0 ? stack.getFirstSlice().height() : 0;
    const int columns = slices > 0 ? stack.getFirstSlice().width() : 0;
    volume.setSize(rows, columns, slices);
    for (int i = 0; i < slices; ++i) {
        loadPlane(stack.getSlice(i), volume[i], channel);
    }
}

template void loadPlane<int>(const Slice&, PixelMatrix<int>&, int);
template void loadPlane<float>(const Slice&, PixelMatrix<float>&, int);
template void loadPlane<double>(const Slice&, PixelMatrix<double>&, int);
template void loadPlane<long double>(const Slice&, PixelMatrix<long double>&, int);
template void stackToVolume<float>(const Stack&, VoxelMatrix<float>&, int);
template void stackToVolume<double>(const Stack&, VoxelMatrix<double>&, int);
