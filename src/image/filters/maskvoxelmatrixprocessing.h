#pragma once

#include "image/filters/voxelmatrixprocessing.h"

/// A three-dimensional operation that can be limited to the elements whose mask is not 0. The mask is
/// borrowed: it must outlive the operation, or be unset before it goes.
template <class T>
class MaskVoxelMatrixProcessing : public virtual VoxelMatrixProcessing<T>
{
public:
    MaskVoxelMatrixProcessing();
    ~MaskVoxelMatrixProcessing() override;

    virtual void setMask(const VoxelMatrix<T>& newMask);

    /// A mask must be set.
    virtual const VoxelMatrix<T>& getMask() const;
    virtual void unsetMask();

    bool hasMask() const { return mask != nullptr; }

private:
    const VoxelMatrix<T>* mask = nullptr;
};

extern template class MaskVoxelMatrixProcessing<char>;
extern template class MaskVoxelMatrixProcessing<unsigned char>;
extern template class MaskVoxelMatrixProcessing<short>;
extern template class MaskVoxelMatrixProcessing<unsigned short>;
extern template class MaskVoxelMatrixProcessing<int>;
extern template class MaskVoxelMatrixProcessing<unsigned int>;
extern template class MaskVoxelMatrixProcessing<float>;
extern template class MaskVoxelMatrixProcessing<double>;
extern template class MaskVoxelMatrixProcessing<long double>;
