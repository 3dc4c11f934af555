#pragma once

#include "image/imagesource.h"

#include <memory>
#include <string>

class ImageHeader;
class PixelCalibration;

/// One channel of a plane of a microscope file (LSM).
class ImageSourceLSMStackPlane : public ImageSource
{
public:
    ImageSourceLSMStackPlane();
    ImageSourceLSMStackPlane(const ImageSourceLSMStackPlane& other);
    ImageSourceLSMStackPlane& operator=(const ImageSourceLSMStackPlane& other);
    ~ImageSourceLSMStackPlane() override;

    ImageSource* clone() const override;
    int getType() const override;
    bool isDefined() const override;
    int getSize1() const override;
    int getSize2() const override;
    int getDepth() const override;
    const Colormap* getColormap() const override;

    /// Stores the name and reads the header of the file at once; fails as
    /// `ImageSourceFile::setFilename` does.
    void setLSMStackFilename(const std::string& filename);

    const std::string& getLsmStackFilename() const { return filename_; }

    /// The directory of the file, counted from 0; the odd ones hold thumbnails.
    void setPlane(int plane) { plane_ = plane; }

    int getPlane() const { return plane_; }

    /// The sample of the directory, counted from 0: the channel to read.
    void setFrame(int frame) { frame_ = frame; }

    int getFrame() const { return frame_; }

    /// Number of channels of the file, 0 before a file name was set.
    int getChannel() const;

    /// Number of directories of the file, 0 before a file name was set.
    int getNumImages() const;

    /// The operations below raise `UsageError` before a file name was set.
    float getVoxelSizeZ() const;
    int getNewSubFileType() const;
    const PixelCalibration& getPixelCalibration() const;

private:
    const ImageHeader& header(const char* where) const;

    std::unique_ptr<ImageHeader> header_;
    std::string filename_;
    int plane_ = 0;
    int frame_ = 0;
};
