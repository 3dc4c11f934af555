#pragma once

#include <memory>
#include <string>

class Colormap;
class Image0;
class ImageHeader;

/// A file of an `ImageMosaic`, with name and path kept apart.
class ImageMosaicItem
{
public:
    ImageMosaicItem();
    ImageMosaicItem(const ImageMosaicItem& other);
    ImageMosaicItem& operator=(const ImageMosaicItem& other);
    ~ImageMosaicItem();

    /// Stores both and reads the header of path + "/" + name, or of name when the path is empty. The
    /// errors of `ImageReader::read` go on with this operation added to their trail.
    void setFilename(const std::string& name, const std::string& path);

    const std::string& getFilename() const { return filename_; }

    const std::string& getPathname() const { return pathname_; }

    /// Path and name with nothing between them: what `load` reads.
    std::string completeFileName() const { return pathname_ + filename_; }

    /// Width, height and depth are 0 before a file was set.
    int getWidth() const;
    int getHeight() const;
    int getDepth() const;

    /// Null when the file has none.
    const Colormap* getColormap() const;

    void load(Image0& image) const;

private:
    std::string filename_;
    std::string pathname_;
    std::unique_ptr<ImageHeader> header_;
};
