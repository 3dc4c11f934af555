#pragma once

#include <tiffio.h>

#include <string>
#include <vector>

/// The file beneath a TIFF that is being written. libtiff hands out each strip by itself, often one
/// row; here they are gathered, since many small writes cost thrice as much as few large ones.
class TiffOutput
{
public:
    /// Creates or empties the file and opens it for libtiff, which closes it with the handle; null
    /// when it can't be. `mode` is that of `TIFFOpen`. What can't be written at the close is told to
    /// libtiff's error handler.
    static TIFF* open(const std::string& path, const char* mode);

private:
    TiffOutput(int descriptor, const std::string& path);
    TiffOutput(const TiffOutput&) = delete;
    TiffOutput& operator=(const TiffOutput&) = delete;

    /// The calls of libtiff; the handle is the object.
    static tmsize_t read(thandle_t handle, void* bytes, tmsize_t count);
    static tmsize_t write(thandle_t handle, void* bytes, tmsize_t count);
    static toff_t seek(thandle_t handle, toff_t offset, int whence);
    static int close(thandle_t handle);
    static toff_t size(thandle_t handle);

    /// False, with `errno` set, when the file takes no more.
    bool flush();
    bool writeOut(const char* bytes, std::size_t count, toff_t at) const;

    int descriptor_;
    std::string path_;
    toff_t position_ = 0;
    toff_t size_ = 0;

    /// Bytes that are not in the file yet, and where they belong.
    std::vector<char> gathered_;
    toff_t gatheredAt_ = 0;
};
