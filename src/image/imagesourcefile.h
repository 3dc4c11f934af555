#pragma once

#include "image/imagesource.h"

#include <memory>
#include <string>

class ImageHeader;
class PixelCalibration;

/// An image file of its own, the usual source of a slice.
class ImageSourceFile : public ImageSource
{
public:
    ImageSourceFile();

    /// Calls `setFilename`.
    explicit ImageSourceFile(const std::string& filename);

    ImageSourceFile(const ImageSourceFile& other);
    ImageSourceFile& operator=(const ImageSourceFile& other);
    ~ImageSourceFile() override;

    ImageSource* clone() const override;
    int getType() const override;
    bool isDefined() const override;
    int getSize1() const override;
    int getSize2() const override;
    int getDepth() const override;
    const Colormap* getColormap() const override;

    /// Stores the name and reads the header of the file at once. When that raises an error, the
    /// source keeps the name and an incomplete header, and the error goes on with this operation
    /// added to its trail.
    void setFilename(const std::string& filename);

    const std::string& getFilename() const { return filename_; }

    /// Raises `UsageError` before a file name was set.
    const PixelCalibration& getPixelCalibration() const;

private:
    std::string filename_;
    std::unique_ptr<ImageHeader> header_;
};
