#include "image/values/imageheader.h"

#include <utility>

ImageHeader::ImageHeader(const ImageHeader& other)
    : format_(other.format_)
    , height_(other.height_)
    , width_(other.width_)
    , planes_(other.planes_)
    , depth_(other.depth_)
    , colormap_(other.colormap_ ? std::make_unique<Colormap>(*other.colormap_) : nullptr)
    , calibration_(other.calibration_)
    , channels_(other.channels_)
    , newSubFileType_(other.newSubFileType_)
    , voxelSizeX_(other.voxelSizeX_)
    , voxelSizeY_(other.voxelSizeY_)
    , voxelSizeZ_(other.voxelSizeZ_)
{}

ImageHeader& ImageHeader::operator=(const ImageHeader& other)
{
    ImageHeader copy(other);
    swap(copy);
    return *this;
}

void ImageHeader::swap(ImageHeader& other)
{
    std::swap(format_, other.format_);
    std::swap(height_, other.height_);
    std::swap(width_, other.width_);
    std::swap(planes_, other.planes_);
    std::swap(depth_, other.depth_);
    std::swap(colormap_, other.colormap_);
    std::swap(calibration_, other.calibration_);
    std::swap(channels_, other.channels_);
    std::swap(newSubFileType_, other.newSubFileType_);
    std::swap(voxelSizeX_, other.voxelSizeX_);
    std::swap(voxelSizeY_, other.voxelSizeY_);
    std::swap(voxelSizeZ_, other.voxelSizeZ_);
}

void ImageHeader::clear()
{
    format_ = ImageFormat::None;
    height_ = 0;
    width_ = 0;
    planes_ = 0;
    depth_ = 0;
    calibration_.clear();
    deleteColormap();
}

void ImageHeader::setColormap(const Colormap& colormap)
{
    if (depth_ == 8) {
        colormap_ = std::make_unique<Colormap>(colormap);
    }
}

bool ImageHeader::operator==(const ImageHeader& other) const
{
    return width_ == other.width_ && height_ == other.height_ && planes_ == other.planes_ &&
           depth_ == other.depth_ && calibration_ == other.calibration_ && format_ == other.format_;
}
