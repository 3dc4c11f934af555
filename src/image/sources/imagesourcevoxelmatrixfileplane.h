#pragma once

#include "image/sources/imagesourcevoxelmatrixbase.h"

#include <string>

/// A plane of a volume file (`.vm`) of floats. Every read loads the whole file.
class ImageSourceVoxelMatrixFilePlane : public ImageSourceVoxelMatrixBase
{
public:
    ImageSource* clone() const override;
    int getType() const override;

    /// Whether the name is not empty and the plane is not negative.
    bool isDefined() const override;

    /// Stores the name and reads the size from the file; the errors of `VoxelMatrix::loadHeader` go
    /// on, the source then keeps the name.
    void setVoxelMatrixFilename(const std::string& filename);

    const std::string& getVoxelMatrixFilename() const { return filename_; }

private:
    std::string filename_;
};
