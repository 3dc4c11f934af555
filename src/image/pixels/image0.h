#pragma once

#include "image/values/imagechannel.h"
#include "image/values/imagecolorcontent.h"
#include "image/values/imageheader.h"
#include "numerics/vector.h"

#include <cstddef>
#include <string>

template <class T>
class BoundingBox;
template <class T>
class PixelMatrix;

/// One plane of 8, 16, 24 or 32 bits a pixel, with an optional colormap: the exchange format of the
/// readers and writers, and the source of a `PixelMatrix`.
///
/// Pixels lie row after row from the top, without padding. The samples of a 24-bit or 32-bit pixel
/// lie as red, green, blue and, for 32 bits, a fourth byte; a 16-bit sample has the byte order of
/// the machine. Copies are deep.
class Image0
{
public:
    Image0();

    /// Calls `init`.
    Image0(int width, int height, int depth);

    /// Calls `readFile`.
    Image0(const std::string& name, const std::string& directory);

    Image0(const Image0& other);
    Image0& operator=(const Image0& other);
    virtual ~Image0();

    /// Forgets the blocks without freeing them and clears the header.
    void reset();

    /// Frees the blocks and clears the header.
    void destroy();

    /// Makes room for an image of this geometry; the pixels are not set. With the present geometry
    /// nothing happens and the pixels keep their values. Raises `DepthError` for a depth other than
    /// 8, 16, 24 and 32 and `SizeError` for a negative size, the image then being empty.
    void init(int width, int height, int depth);

    /// Allocates block and row pointers for the header's geometry; earlier blocks are freed.
    void allocatePixels();

    /// Takes the header. One of another geometry makes room for that geometry, as `init` does; one of
    /// depth 0 destroys the pixels. Headers that compare equal are taken too: their colormaps may
    /// differ.
    void setHeader(const ImageHeader& header);

    const ImageHeader& getHeader() const { return header_; }

    int getWidth() const { return header_.getWidth(); }

    int getHeight() const { return header_.getHeight(); }

    int getDepth() const { return header_.getDepth(); }

    /// Height, then width.
    Vector<int> getSize() const;

    /// Corners (0, 0) and (width - 1, height - 1).
    BoundingBox<int> boundingBox() const;

    /// The block of `dataLength()` bytes; null before there are pixels.
    unsigned char* getData() { return data_; }

    const unsigned char* getData() const { return data_; }

    /// `getHeight()` pointers to the rows.
    unsigned char** getPixels() { return rows_; }

    const unsigned char* const* getPixels() const { return rows_; }

    /// 1, 2, 3 or 4; 0 for a depth that is none.
    int bytesPerPixel() const;
    std::size_t bytesPerLine() const;
    std::size_t dataLength() const;

    /// Zeroes the pixels.
    void clear();
    void swap(Image0& other);

    /// Whether the pixels are indices into a colormap: depth 8 with a colormap.
    bool isIndexed() const;

    /// Does nothing unless the depth is 8.
    void setColormap(const Colormap& colormap);

    /// Null when there is none.
    const Colormap* getColormap() const { return header_.getColormap(); }

    /// On an 8-bit image: a grey colormap of `cells` entries, none for `cells` below 1.
    void setGrayscale(int cells);

    /// The content of one colour.
    static ImageColorContent
    colorContent(unsigned char red, unsigned char green, unsigned char blue);

    /// The content that all pixels, or all colours of the colormap, have in common.
    ImageColorContent colorContent() const;

    /// The four tests ask the colormap of an indexed image, and all pixels of a 24-bit or 32-bit one;
    /// an 8-bit or 16-bit image without a colormap is grey and nothing else.
    bool isGrayscale() const;
    bool isRedOnly() const;
    bool isGreenOnly() const;
    bool isBlueOnly() const;

    /// Makes an 8-bit image of grey values: the colormap becomes grey, the samples of a colour are
    /// averaged in integers, and 16-bit samples are scaled so that the largest becomes 255, unless
    /// all are below 256.
    void make8bitsGrayscale();

    /// Makes a 24-bit image of an 8-bit one, through its colormap if it has one. Raises `DepthError`
    /// for 16 and 32 bits.
    void make24bits();

    /// Gives each pixel of a 24-bit image a fourth sample of 0; other depths stay as they are.
    void make32bits();

    /// One sample of each pixel as a new 8-bit image. Of an image with a colormap the sample is the
    /// entry of that table; a plain 8-bit image gives a copy. A sample that is not there is 0.
    Image0 channel(ImageChannel channel) const;

    /// Writes the matrix into one sample of each pixel of a 24-bit or 32-bit image; other depths stay
    /// as they are. Raises `SizeError` when the sizes differ.
    void setChannel(ImageChannel channel, const PixelMatrix<unsigned char>& matrix);

    /// Copies the rows of `source` to column `x` and row `y`. Raises `DepthError` when the depths
    /// differ, `ColormapError` when this image is indexed and the source's colormap is not the same,
    /// `SizeError` when the source does not fit.
    void paste(const Image0& source, int x, int y);

    /// Reads directory + name: the directory needs its trailing separator.
    void readFile(const std::string& name, const std::string& directory);

    /// Writes a TIFF to directory + "/" + name, or to name when the directory is empty.
    void writeFile(const std::string& name, const std::string& directory, bool overwrite) const;

    /// Lists geometry and calibration, and the pixels when asked for, on the standard output.
    void print(const std::string& title, bool showData) const;

private:
    template <class Test>
    bool allPixels(Test test) const;
    void replacePixels(Image0& other);

    ImageHeader header_;
    unsigned char* data_ = nullptr;
    unsigned char** rows_ = nullptr;
};
