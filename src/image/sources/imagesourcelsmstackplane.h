#pragma once

#include "image/sources/imagesourceheaderfile.h"

/// One channel of a plane of a microscope file (LSM).
class ImageSourceLSMStackPlane : public ImageSourceHeaderFile
{
public:
    ImageSourceLSMStackPlane();

    ImageSource* clone() const override;
    int getType() const override;

    /// Stores the name and reads the header of the file at once; fails as
    /// `ImageSourceFile::setFilename` does.
    void setLSMStackFilename(const std::string& filename);

    const std::string& getLsmStackFilename() const { return filename(); }

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
    int plane_ = 0;
    int frame_ = 0;
};
