#pragma once

#include "image/values/colormap.h"
#include "image/values/imageformat.h"
#include "image/values/pixelcalibration.h"

#include <memory>

/// Geometry, colormap and calibration of an image, known without its pixels. A value class: copies
/// have a colormap of their own.
class ImageHeader
{
public:
    ImageHeader() = default;
    ImageHeader(const ImageHeader& other);

    /// Takes over every field; a colormap that the source does not have goes.
    ImageHeader& operator=(const ImageHeader& other);

    void swap(ImageHeader& other);

    /// Format, height, width, planes and depth become 0, the calibration undefined, the colormap goes.
    void clear();

    void setImageFormat(ImageFormat format) { format_ = format; }

    ImageFormat getImageFormat() const { return format_; }

    void setHeight(int height) { height_ = height; }

    int getHeight() const { return height_; }

    void setWidth(int width) { width_ = width; }

    int getWidth() const { return width_; }

    /// Number of planes in the file.
    void setPlanes(int planes) { planes_ = planes; }

    int getPlanes() const { return planes_; }

    /// Bits a pixel: 8, 16, 24 or 32.
    void setDepth(int depth) { depth_ = depth; }

    int getDepth() const { return depth_; }

    /// Does nothing unless the depth is 8; else the header keeps a copy.
    void setColormap(const Colormap& colormap);

    /// Null when there is none.
    const Colormap* getColormap() const { return colormap_.get(); }

    Colormap* getColormap() { return colormap_.get(); }

    bool hasColormap() const { return colormap_ != nullptr; }

    void deleteColormap() { colormap_.reset(); }

    void setPixelCalibration(const PixelCalibration& calibration) { calibration_ = calibration; }

    const PixelCalibration& getPixelCalibration() const { return calibration_; }

    /// Number of channels in the file.
    void setChannels(int channels) { channels_ = channels; }

    int getChannels() const { return channels_; }

    /// The TIFF field NewSubfileType.
    void setNewSubFileType(int type) { newSubFileType_ = type; }

    int getNewSubFileType() const { return newSubFileType_; }

    /// Voxel sizes from the file's own records, 1 where it has none; in the unit of the calibration.
    void setVoxelSizeX(float size) { voxelSizeX_ = size; }

    float getVoxelSizeX() const { return voxelSizeX_; }

    void setVoxelSizeY(float size) { voxelSizeY_ = size; }

    float getVoxelSizeY() const { return voxelSizeY_; }

    void setVoxelSizeZ(float size) { voxelSizeZ_ = size; }

    float getVoxelSizeZ() const { return voxelSizeZ_; }

    /// Compares width, height, planes, depth, calibration and format, not the colormap.
    bool operator==(const ImageHeader& other) const;

    bool operator!=(const ImageHeader& other) const { return !(*this == other); }

private:
    ImageFormat format_ = ImageFormat::None;
    int height_ = 0;
    int width_ = 0;
    int planes_ = 0;
    int depth_ = 0;
    std::unique_ptr<Colormap> colormap_;
    PixelCalibration calibration_;
    int channels_ = 0;
    int newSubFileType_ = 0;
    float voxelSizeX_ = 1.0F;
    float voxelSizeY_ = 1.0F;
    float voxelSizeZ_ = 1.0F;
};
