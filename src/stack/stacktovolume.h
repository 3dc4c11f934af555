#pragma once

template <class T>
class PixelMatrix;
template <class T>
class VoxelMatrix;

class Slice;
class Stack;

/// Loads the image of a slice into a plane, which takes its size and calibration; `T` is `int`,
/// `float`, `double` or `long double`.
///
/// `channel` 0 makes the image 8-bit grey, 1, 2 and 3 take red, green and blue; any other value
/// loads the image and leaves the plane alone.
template <class T>
void loadPlane(const Slice& slice, PixelMatrix<T>& plane, int channel);

/// Loads the images of all slices into a volume with one plane per slice; `T` is `float` or
/// `double`.
///
/// Each plane is loaded by `loadPlane`. The volume gets the height and width of the first
/// slice, but a plane takes the size and calibration of its own slice: photographs of one sample
/// differ in size, and each is worked on alone. Operations on the volume as a whole need slices of
/// one size.
template <class T>
void stackToVolume(const Stack& stack, VoxelMatrix<T>& volume, int channel);

extern template void loadPlane<int>(const Slice&, PixelMatrix<int>&, int);
extern template void loadPlane<float>(const Slice&, PixelMatrix<float>&, int);
extern template void loadPlane<double>(const Slice&, PixelMatrix<double>&, int);
extern template void loadPlane<long double>(const Slice&, PixelMatrix<long double>&, int);
extern template void stackToVolume<float>(const Stack&, VoxelMatrix<float>&, int);
extern template void stackToVolume<double>(const Stack&, VoxelMatrix<double>&, int);
