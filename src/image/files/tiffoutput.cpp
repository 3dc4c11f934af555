#include "image/files/tiffoutput.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

namespace {

constexpr std::size_t capacity = std::size_t(1) << 20;

TiffOutput& outputOf(thandle_t handle)
{
    return *static_cast<TiffOutput*>(handle);
}

} // namespace

TiffOutput::TiffOutput(int descriptor, const std::string& path)
    : descriptor_(descriptor)
    , path_(path)
{
    gathered_.reserve(capacity);
}

TIFF* TiffOutput::open(const std::string& path, const char* mode)
{
    constexpr int anyone = 0666;
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, anyone);
    if (descriptor < 0) {
        return nullptr;
    }
    auto* const output = new TiffOutput(descriptor, path);
    TIFF* const tif = TIFFClientOpen(path.c_str(), mode, output, read, write, seek, close, size,
                                     nullptr, nullptr);
    if (tif == nullptr) {
        close(output);
    }
    return tif;
}

bool TiffOutput::writeOut(const char* bytes, std::size_t count, toff_t at) const
{
    while (count > 0) {
        const ssize_t written = ::pwrite(descriptor_, bytes, count, static_cast<off_t>(at));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        const std::size_t done = static_cast<std::size_t>(std::max<ssize_t>(written, 0));
        bytes += done;
        at += done;
        count -= done;
    }
    return true;
}

bool TiffOutput::flush()
{
    const bool written = writeOut(gathered_.data(), gathered_.size(), gatheredAt_);
    gathered_.clear();
    return written;
}

tmsize_t TiffOutput::read(thandle_t handle, void* bytes, tmsize_t count)
{
    TiffOutput& output = outputOf(handle);
    if (!output.flush()) {
        return -1;
    }
    const ssize_t length = ::pread(output.descriptor_, bytes, static_cast<std::size_t>(count),
                                   static_cast<off_t>(output.position_));
    output.position_ += static_cast<toff_t>(std::max<ssize_t>(length, 0));
    return length;
}

tmsize_t TiffOutput::write(thandle_t handle, void* bytes, tmsize_t count)
{
    TiffOutput& output = outputOf(handle);
    std::vector<char>& gathered = output.gathered_;
    const char* const first = static_cast<const char*>(bytes);
    const std::size_t length = static_cast<std::size_t>(count);
    const bool follows = output.position_ == output.gatheredAt_ + gathered.size();
    if ((!follows || gathered.size() + length > capacity) && !output.flush()) {
        return -1;
    }
    if (gathered.empty()) {
        output.gatheredAt_ = output.position_;
    }
    if (length > capacity) {
        if (!output.writeOut(first, length, output.position_)) {
            return -1;
        }
    } else {
        gathered.insert(gathered.end(), first, first + length);
    }
    output.position_ += length;
    output.size_ = std::max(output.size_, output.position_);
    return count;
}

toff_t TiffOutput::seek(thandle_t handle, toff_t offset, int whence)
{
    TiffOutput& output = outputOf(handle);
    // Offsets backwards wrap around, as unsigned numbers do.
    const toff_t origin = whence == SEEK_SET   ? 0
                          : whence == SEEK_CUR ? output.position_
                                               : output.size_;
    output.position_ = origin + offset;
    return output.position_;
}

int TiffOutput::close(thandle_t handle)
{
    const std::unique_ptr<TiffOutput> output(&outputOf(handle));
    const bool written = output->flush();
    const int failure = written ? 0 : errno;
    const bool closed = ::close(output->descriptor_) == 0;
    if (!written || !closed) {
        TIFFError(output->path_.c_str(), "%s", std::strerror(written ? errno : failure));
        return -1;
    }
    return 0;
}

toff_t TiffOutput::size(thandle_t handle)
{
    return outputOf(handle).size_;
}
