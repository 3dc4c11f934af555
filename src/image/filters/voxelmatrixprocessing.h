#pragma once

#include "image/pixels/voxelmatrix.h"
#include "system/progresssubject.h"

/// An operation on a three-dimensional image, applied in place. A class that is an operation on
/// both kinds of images has one set of monitors.
template <class T>
class VoxelMatrixProcessing : public virtual ProgressSubject
{
public:
    VoxelMatrixProcessing();
    ~VoxelMatrixProcessing() override;

    virtual void apply(VoxelMatrix<T>& matrix) = 0;
};

extern template class VoxelMatrixProcessing<char>;
extern template class VoxelMatrixProcessing<unsigned char>;
extern template class VoxelMatrixProcessing<short>;
extern template class VoxelMatrixProcessing<unsigned short>;
extern template class VoxelMatrixProcessing<int>;
extern template class VoxelMatrixProcessing<unsigned int>;
extern template class VoxelMatrixProcessing<float>;
extern template class VoxelMatrixProcessing<double>;
extern template class VoxelMatrixProcessing<long double>;
