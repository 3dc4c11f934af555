#pragma once

#include "image/sources/imagesource.h"

#include <memory>
#include <string>

class ImageHeader;
class PixelCalibration;

/// Base of the sources that read the header of a file as soon as they are given its name.
class ImageSourceHeaderFile : public ImageSource
{
public:
    ~ImageSourceHeaderFile() override;

    /// Whether a file name was set.
    bool isDefined() const override;
    int getSize1() const override;
    int getSize2() const override;
    int getDepth() const override;
    const Colormap* getColormap() const override;

protected:
    ImageSourceHeaderFile();
    ImageSourceHeaderFile(const ImageSourceHeaderFile& other);
    ImageSourceHeaderFile& operator=(const ImageSourceHeaderFile& other);

    /// Stores the name and reads the header. An error goes on with the operation `where` added to its
    /// trail; the source then holds the name and an incomplete header.
    void setFile(const std::string& filename, const char* where);

    const std::string& filename() const { return filename_; }

    /// Null before a file name was set.
    const ImageHeader* header() const { return header_.get(); }

    /// The header, or a `UsageError` raised as the operation `where`.
    const ImageHeader& header(const char* where) const;

private:
    std::unique_ptr<ImageHeader> header_;
    std::string filename_;
};
