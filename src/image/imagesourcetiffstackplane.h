#pragma once

#include "image/imagesource.h"

#include <memory>
#include <string>

class ImageHeader;
class PixelCalibration;

/// A page of a TIFF file of several pages. Geometry, depth and colormap are those of the first page.
class ImageSourceTiffStackPlane : public ImageSource
{
public:
    ImageSourceTiffStackPlane();
    ImageSourceTiffStackPlane(const ImageSourceTiffStackPlane& other);
    ImageSourceTiffStackPlane& operator=(const ImageSourceTiffStackPlane& other);
    ~ImageSourceTiffStackPlane() override;

    ImageSource* clone() const override;
    int getType() const override;
    bool isDefined() const override;
    int getSize1() const override;
    int getSize2() const override;
    int getDepth() const override;
    const Colormap* getColormap() const override;

    /// Stores the name and reads the header of the file at once; fails as
    /// `ImageSourceFile::setFilename` does.
    void setTiffStackFilename(const std::string& filename);

    const std::string& getTiffStackFilename() const { return filename_; }

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
    const ImageHeader& header(const char* where) const;

    std::unique_ptr<ImageHeader> header_;
    std::string filename_;
    int plane_ = 0;
};
