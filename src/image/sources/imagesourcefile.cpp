#include "image/sources/imagesourcefile.h"

#include "image/values/imageheader.h"

ImageSourceFile::ImageSourceFile() = default;

ImageSourceFile::ImageSourceFile(const std::string& filename)
{
    setFilename(filename);
}

ImageSource* ImageSourceFile::clone() const
{
    return new ImageSourceFile(*this);
}

int ImageSourceFile::getType() const
{
    return 0;
}

void ImageSourceFile::setFilename(const std::string& filename)
{
    setFile(filename, "void ImageSourceFile::setFilename(const string&)");
}

const PixelCalibration& ImageSourceFile::getPixelCalibration() const
{
    return header("const PixelCalibration& ImageSourceFile::getPixelCalibration() const")
        .getPixelCalibration();
}
