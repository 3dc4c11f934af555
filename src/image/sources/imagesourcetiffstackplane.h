#pragma once

#include "image/sources/imagesourceheaderfile.h"

/// A page of a TIFF file of several pages. Geometry, depth and colormap are those of the first page.
class ImageSourceTiffStackPlane : public ImageSourceHeaderFile
{
public:
    ImageSourceTiffStackPlane();

    ImageSource* clone() const override;
    int getType() const override;

    /// Stores the name and reads the header of the file at once; fails as
    /// `ImageSourceFile::setFilename` does.
    void setTiffStackFilename(const std::string& filename);

    const std::string& getTiffStackFilename() const { return filename(); }

    /// The page, counted from 0.
    void setPlane(int plane) { plane_ = plane; }

    int getPlane() const { return plane_; }

    /// Number of pages of the file, 0 before a file name was set.
    int getNumImages() const;

    /// The operations below raise `UsageError` before a file name was set.
    float getVoxelSizeX() const;
    float getVoxelSizeY() const;
    float getVoxelSizeZ() const;
    const PixelCalibration& getPixelCalibration() const;

private:
    int plane_ = 0;
};
