#pragma once

#include "image/sources/imagesourceheaderfile.h"

/// An image file of its own, the usual source of a slice.
class ImageSourceFile : public ImageSourceHeaderFile
{
public:
    ImageSourceFile();

    /// Calls `setFilename`.
    explicit ImageSourceFile(const std::string& filename);

    ImageSource* clone() const override;
    int getType() const override;

    /// Stores the name and reads the header of the file at once. When that raises an error, the
    /// source keeps the name and an incomplete header, and the error goes on with this operation
    /// added to its trail.
    void setFilename(const std::string& filename);

    const std::string& getFilename() const { return filename(); }

    /// Raises `UsageError` before a file name was set.
    const PixelCalibration& getPixelCalibration() const;
};
