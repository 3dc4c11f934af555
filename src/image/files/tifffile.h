#pragma once

#include <tiffio.h>

#include <cstdint>
#include <string>
#include <vector>

class ImageHeader;

/// Catches what libtiff has to say for as long as it lives: the first error is kept, warnings are
/// dropped but for those of the JPEG decoder, which tells so of pixels that it had to make up. Nothing
/// is printed. Guards may be nested, and the innermost one of the thread listens.
/// Several threads may hold guards at once: libtiff's process-wide handlers come back when the last
/// one of all threads has gone.
class TiffMessages
{
public:
    TiffMessages();
    ~TiffMessages();
    TiffMessages(const TiffMessages&) = delete;
    TiffMessages& operator=(const TiffMessages&) = delete;

    /// The first error that the innermost guard caught; empty without one.
    static std::string firstError();

    /// `what`, followed by ": " and the first error if there is one.
    static std::string withReason(const std::string& what);

private:
    static void takeError(const char* module, const char* format, va_list arguments);
    static void takeWarning(const char* module, const char* format, va_list arguments);

    static thread_local TiffMessages* innermost_;
    TiffMessages* outer_;
    std::string firstError_;
};

/// An open TIFF file, closed at the end of its life; libtiff is silent meanwhile. Files that are
/// read may make libtiff take memory in proportion to their length only.
class TiffFile
{
public:
    /// `mode` is that of `TIFFOpen`. The handle is null when the file can't be opened.
    TiffFile(const std::string& path, const char* mode);
    ~TiffFile();
    TiffFile(const TiffFile&) = delete;
    TiffFile& operator=(const TiffFile&) = delete;

    /// Opens for reading or raises `FileReadError` with the reason.
    static TIFF* require(const TiffFile& file, const char* where, const std::string& path);

    TIFF* get() const { return tif_; }

    /// Closes the file before the end; what libtiff then fails to write is among its errors.
    void close();

private:
    TiffMessages messages_;
    TIFF* tif_ = nullptr;
};

/// What every reader of pixels holds against a directory before it trusts it. All raise
/// `FileFormatError`, as the operation `where`, about the file of the handle.
namespace tiffcheck {

/// A size tag as a positive `int`.
int dimension(TIFF* tif, std::uint32_t tag, const char* where);

/// Refuses colours other than grey, RGB and palette by name, since their samples taken for those would
/// be other colours without a word. YCbCr under JPEG compression has been made RGB by the decoder; the
/// older JPEG compression is refused.
void readableLayout(TIFF* tif, const char* where);

/// Refuses rows of another length than the target's.
void rowLength(TIFF* tif, std::uint64_t bytesPerLine, const char* where);

/// Refuses `bytes` of pixels that a file of this length and compression can't hold.
void dataFits(TIFF* tif, std::uint64_t bytes, const char* where);

/// The same for an image of this size and depth.
void dataFits(TIFF* tif, const ImageHeader& header, const char* where);

} // namespace tiffcheck

/// Lets the JPEG decoder turn YCbCr of the present directory into RGB.
void decodeToRgb(TIFF* tif);

/// Makes a directory of the file the present one, its colours decoded. Raises `FileReadError`.
void setTiffDirectory(TIFF* tif, int directory, const char* where);

/// The rows of the present directory, from strips or tiles, of one sample where these lie apart.
/// Lives as long as the directory stays the present one, whose layout must have been checked.
class TiffRows
{
public:
    /// Rows are `bytesPerLine` long. Raises `FileFormatError` for tiles of an absurd size.
    TiffRows(TIFF* tif, int sample, std::size_t bytesPerLine, const char* where);

    /// Reads a row. Raises `FileReadError` with the reason.
    void read(unsigned char* row, int index);

private:
    void readBand(std::uint32_t first);
    void requireWholeJpeg(int index) const;
    [[noreturn]] void fail(int index) const;

    TIFF* tif_;
    std::uint16_t sample_;
    std::size_t bytesPerLine_;
    const char* where_;
    TiffMessages messages_;
    bool isJpeg_;

    /// The rows of the tiles that were read last, which begin at row `bandStart_`; none in strips.
    std::vector<unsigned char> band_;
    std::vector<unsigned char> tile_;
    std::uint32_t tileWidth_ = 0;
    std::uint32_t tileHeight_ = 0;
    std::int64_t bandStart_ = -1;
};
