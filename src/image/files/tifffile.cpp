#include "image/files/tifffile.h"

#include "image/files/tiffoutput.h"
#include "image/values/imageheader.h"
#include "system/exception.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <mutex>

namespace {

/// libtiff's own handlers while guards stand in for them.
struct ReplacedHandlers
{
    std::mutex mutex;
    int guards = 0;
    TIFFErrorHandler error = nullptr;
    TIFFErrorHandler warning = nullptr;
};

ReplacedHandlers& replacedHandlers()
{
    static ReplacedHandlers handlers;
    return handlers;
}

} // namespace

thread_local TiffMessages* TiffMessages::innermost_ = nullptr;

TiffMessages::TiffMessages()
    : outer_(innermost_)
{
    ReplacedHandlers& replaced = replacedHandlers();
    const std::lock_guard<std::mutex> lock(replaced.mutex);
    if (replaced.guards++ == 0) {
        replaced.error = TIFFSetErrorHandler(takeError);
        replaced.warning = TIFFSetWarningHandler(takeWarning);
    }
    innermost_ = this;
}

TiffMessages::~TiffMessages()
{
    innermost_ = outer_;
    ReplacedHandlers& replaced = replacedHandlers();
    const std::lock_guard<std::mutex> lock(replaced.mutex);
    if (--replaced.guards == 0) {
        TIFFSetWarningHandler(replaced.warning);
        TIFFSetErrorHandler(replaced.error);
    }
}

std::string TiffMessages::firstError()
{
    return innermost_ == nullptr ? "" : innermost_->firstError_;
}

std::string TiffMessages::withReason(const std::string& what)
{
    const std::string reason = firstError();
    return reason.empty() ? what : what + ": " + reason;
}

void TiffMessages::takeError(const char*, const char* format, va_list arguments)
{
    if (innermost_ == nullptr || !innermost_->firstError_.empty()) {
        return;
    }
    char text[512];
    std::vsnprintf(text, sizeof(text), format, arguments);
    std::string& error = innermost_->firstError_;
    error = text;
    while (!error.empty() && (error.back() == '.' || error.back() == '\n')) {
        error.pop_back();
    }
}

void TiffMessages::takeWarning(const char* module, const char* format, va_list arguments)
{
    if (module != nullptr && std::strcmp(module, "JPEGLib") == 0) {
        takeError(module, format, arguments);
    }
}

TiffFile::TiffFile(const std::string& path, const char* mode)
{
    if (mode[0] == 'w') {
        tif_ = TiffOutput::open(path, mode);
        return;
    }
    TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
    std::error_code unknownSize;
    const std::uintmax_t length = std::filesystem::file_size(path, unknownSize);
    if (!unknownSize) {
        constexpr std::uintmax_t base = std::uintmax_t(1) << 26;
        constexpr std::uintmax_t limit = std::uintmax_t(1) << 48;
        const std::uintmax_t memory = length < limit ? base + 8 * length : 8 * limit;
        TIFFOpenOptionsSetMaxSingleMemAlloc(options, static_cast<tmsize_t>(memory));
    }
    tif_ = TIFFOpenExt(path.c_str(), mode, options);
    TIFFOpenOptionsFree(options);
    if (tif_ != nullptr) {
        decodeToRgb(tif_);
    }
}

TiffFile::~TiffFile()
{
    close();
}

TIFF* TiffFile::require(const TiffFile& file, const char* where, const std::string& path)
{
    if (file.get() == nullptr) {
        raiseFile<FileReadError>(where, TiffMessages::withReason("Cannot open TIFF"), path);
    }
    return file.get();
}

void TiffFile::close()
{
    if (tif_ != nullptr) {
        TIFFClose(tif_);
        tif_ = nullptr;
    }
}

namespace {

int compressionOf(TIFF* tif)
{
    std::uint16_t compression = COMPRESSION_NONE;
    TIFFGetFieldDefaulted(tif, TIFFTAG_COMPRESSION, &compression);
    return compression;
}

[[noreturn]] void refuse(TIFF* tif, const char* where, const std::string& feature)
{
    raiseFile<FileFormatError>(where, "Cannot read TIFF with " + feature, TIFFFileName(tif));
}

/// How many bytes of pixels a byte of the file can stand for at most.
std::uint64_t expansion(int compression)
{
    switch (compression) {
    case COMPRESSION_NONE:
        return 1;
    case COMPRESSION_PACKBITS:
        return 64;
    case COMPRESSION_LZW:
        return 1400;
    case COMPRESSION_DEFLATE:
    case COMPRESSION_ADOBE_DEFLATE:
        return 1040;
    default:
        return 40000;
    }
}

} // namespace

int tiffcheck::dimension(TIFF* tif, std::uint32_t tag, const char* where)
{
    std::uint32_t size = 0;
    TIFFGetField(tif, tag, &size);
    if (size == 0 || size > static_cast<std::uint32_t>(std::numeric_limits<int>::max())) {
        refuse(tif, where, "a bad image size");
    }
    return static_cast<int>(size);
}

void tiffcheck::readableLayout(TIFF* tif, const char* where)
{
    const int compression = compressionOf(tif);
    if (compression == COMPRESSION_OJPEG) {
        refuse(tif, where, "the older JPEG compression");
    }
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    TIFFGetField(tif, TIFFTAG_PHOTOMETRIC, &photometric);
    if (photometric == PHOTOMETRIC_SEPARATED) {
        refuse(tif, where, "CMYK colours");
    }
    if (photometric == PHOTOMETRIC_YCBCR && compression == COMPRESSION_JPEG) {
        return;
    }
    if (photometric == PHOTOMETRIC_YCBCR) {
        refuse(tif, where, "YCbCr colours");
    }
    if (photometric > PHOTOMETRIC_PALETTE) {
        refuse(tif, where, "photometric interpretation " + std::to_string(photometric));
    }
}

void tiffcheck::rowLength(TIFF* tif, std::uint64_t bytesPerLine, const char* where)
{
    if (TIFFScanlineSize64(tif) != bytesPerLine) {
        refuse(tif, where,
               "rows of " + std::to_string(TIFFScanlineSize64(tif)) + " bytes instead of " +
                   std::to_string(bytesPerLine));
    }
}

void tiffcheck::dataFits(TIFF* tif, std::uint64_t bytes, const char* where)
{
    const std::uint64_t length = TIFFGetSizeProc(tif)(TIFFClientdata(tif));
    if (bytes / expansion(compressionOf(tif)) > length) {
        raiseFile<FileFormatError>(where, "The file is too short for the image that it describes",
                                   TIFFFileName(tif));
    }
}

void tiffcheck::dataFits(TIFF* tif, const ImageHeader& header, const char* where)
{
    const std::uint64_t rowBytes =
        std::uint64_t(header.getWidth()) * std::uint64_t(header.getDepth() / 8);
    dataFits(tif, std::uint64_t(header.getHeight()) * rowBytes, where);
}

void decodeToRgb(TIFF* tif)
{
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    TIFFGetField(tif, TIFFTAG_PHOTOMETRIC, &photometric);
    if (compressionOf(tif) == COMPRESSION_JPEG && photometric == PHOTOMETRIC_YCBCR) {
        TIFFSetField(tif, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    }
}

void setTiffDirectory(TIFF* tif, int directory, const char* where)
{
    if (directory < 0 || !TIFFSetDirectory(tif, static_cast<tdir_t>(directory))) {
        raiseFile<FileReadError>(
            where,
            TiffMessages::withReason("Cannot read page " + std::to_string(directory) + " of TIFF"),
            TIFFFileName(tif));
    }
    decodeToRgb(tif);
}

TiffRows::TiffRows(TIFF* tif, int sample, std::size_t bytesPerLine, const char* where)
    : tif_(tif)
    , sample_(static_cast<std::uint16_t>(sample))
    , bytesPerLine_(bytesPerLine)
    , where_(where)
    , isJpeg_(compressionOf(tif) == COMPRESSION_JPEG)
{
    if (!TIFFIsTiled(tif)) {
        return;
    }
    TIFFGetField(tif, TIFFTAG_TILEWIDTH, &tileWidth_);
    TIFFGetField(tif, TIFFTAG_TILELENGTH, &tileHeight_);
    // A tile may reach beyond the image; its pixels are in the file all the same.
    constexpr std::uint32_t longest = 1U << 16;
    const std::uint64_t tileBytes = TIFFTileSize64(tif);
    if (tileWidth_ == 0 || tileHeight_ == 0 || tileWidth_ > longest || tileHeight_ > longest) {
        refuse(tif, where, "a bad tile size");
    }
    tiffcheck::dataFits(tif, tileBytes, where);
    tiffcheck::dataFits(tif, std::uint64_t(tileHeight_) * bytesPerLine, where);
    tile_.resize(tileBytes);
    band_.resize(std::size_t(tileHeight_) * bytesPerLine);
}

/// The decoder makes up what is missing, and tells of it alone.
void TiffRows::requireWholeJpeg(int index) const
{
    if (isJpeg_ && !TiffMessages::firstError().empty()) {
        fail(index);
    }
}

void TiffRows::fail(int index) const
{
    raiseFile<FileReadError>(
        where_, TiffMessages::withReason("Cannot read row " + std::to_string(index) + " of TIFF"),
        TIFFFileName(tif_));
}

void TiffRows::readBand(std::uint32_t first)
{
    std::uint32_t width = 0;
    TIFFGetField(tif_, TIFFTAG_IMAGEWIDTH, &width);
    const std::size_t pixel = bytesPerLine_ / width;
    const std::size_t tileRow = std::size_t(tileWidth_) * pixel;
    if (tileRow * tileHeight_ > tile_.size()) {
        fail(static_cast<int>(first));
    }
    for (std::uint32_t x = 0; x < width; x += tileWidth_) {
        if (TIFFReadTile(tif_, tile_.data(), x, first, 0, sample_) < 0) {
            fail(static_cast<int>(first));
        }
        requireWholeJpeg(static_cast<int>(first));
        const std::size_t offset = x * pixel;
        const std::size_t length = std::min(tileRow, bytesPerLine_ - offset);
        for (std::size_t i = 0; i < tileHeight_; ++i) {
            std::memcpy(band_.data() + i * bytesPerLine_ + offset, tile_.data() + i * tileRow,
                        length);
        }
    }
    bandStart_ = first;
}

void TiffRows::read(unsigned char* row, int index)
{
    const auto line = static_cast<std::uint32_t>(index);
    if (band_.empty()) {
        if (TIFFReadScanline(tif_, row, line, sample_) < 0) {
            fail(index);
        }
        requireWholeJpeg(index);
        return;
    }
    const std::uint32_t first = line - line % tileHeight_;
    if (bandStart_ != first) {
        readBand(first);
    }
    std::memcpy(row, band_.data() + (line - first) * bytesPerLine_, bytesPerLine_);
}
