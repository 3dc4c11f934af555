#pragma once

#include "image/sources/imagesourcevoxelmatrixbase.h"

template <class T>
class VoxelMatrix;

/// A plane of a volume in memory. The volume is held elsewhere, must outlive the source, and is
/// shared by copies.
class ImageSourceVoxelMatrixPlane : public ImageSourceVoxelMatrixBase
{
public:
    ImageSource* clone() const override;
    int getType() const override;

    /// Whether a volume is set and the plane is not negative.
    bool isDefined() const override;

    /// Keeps the address and copies the size.
    void setVoxelMatrix(VoxelMatrix<float>& matrix);

    /// Raises `UsageError` before a volume was set.
    VoxelMatrix<float>& getVoxelMatrix() const;

private:
    VoxelMatrix<float>* matrix_ = nullptr;
};
