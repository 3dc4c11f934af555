#pragma once

#include <tiffio.h>

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

/// Writes TIFF files that the writers of the system do not make, for tests of the readers.
class TiffMaker
{
public:
    explicit TiffMaker(const std::string& path, const char* mode = "w")
        : tif_(TIFFOpen(path.c_str(), mode))
    {
        if (tif_ == nullptr) {
            throw std::runtime_error("no TIFF " + path);
        }
    }

    ~TiffMaker() { TIFFClose(tif_); }

    TiffMaker(const TiffMaker&) = delete;
    TiffMaker& operator=(const TiffMaker&) = delete;

    TIFF* get() const { return tif_; }

    /// Tags of a plain page.
    void tags(int width, int height, int bits, int samples, int photometric)
    {
        TIFFSetField(tif_, TIFFTAG_IMAGEWIDTH, width);
        TIFFSetField(tif_, TIFFTAG_IMAGELENGTH, height);
        TIFFSetField(tif_, TIFFTAG_BITSPERSAMPLE, bits);
        TIFFSetField(tif_, TIFFTAG_SAMPLESPERPIXEL, samples);
        TIFFSetField(tif_, TIFFTAG_PHOTOMETRIC, photometric);
        TIFFSetField(tif_, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    }

    /// All rows of all samples, each byte told by its row and position in the row, and the end of
    /// the page.
    void rows(int height, const std::function<unsigned char(int, int)>& byte, int planes = 1)
    {
        std::vector<unsigned char> row(static_cast<std::size_t>(TIFFScanlineSize(tif_)));
        for (int plane = 0; plane < planes; ++plane) {
            for (int i = 0; i < height; ++i) {
                for (std::size_t b = 0; b < row.size(); ++b) {
                    row[b] = byte(i + plane * height, static_cast<int>(b));
                }
                TIFFWriteScanline(tif_, row.data(), static_cast<std::uint32_t>(i),
                                  static_cast<std::uint16_t>(plane));
            }
        }
        TIFFWriteDirectory(tif_);
    }

private:
    TIFF* tif_;
};
