#pragma once

template <class T>
class VoxelMatrix;

class Stack;

/// Loads the images of all slices into a volume with one plane per slice; `T` is `float` or
/// `double`.
///
/// `channel` 0 makes each image 8-bit grey, 1, 2 and 3 take red, green and blue; any other value
/// loads the images and leaves the planes alone. The volume gets the height and width of the first
/// slice, but a plane takes the size and calibration of its own slice: photographs of one sample
/// differ in size, and each is worked on alone. Operations on the volume as a whole need slices of
/// one size.
template <class T>
void stackToVolume(const Stack& stack, VoxelMatrix<T>& volume, int channel);

extern template void stackToVolume<float>(const Stack&, VoxelMatrix<float>&, int);
extern template void stackToVolume<double>(const Stack&, VoxelMatrix<double>&, int);
