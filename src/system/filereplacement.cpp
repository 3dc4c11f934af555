#include "system/filereplacement.h"

#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/temporaryfiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

/// The file itself where `filename` is a link; a link that leads nowhere is replaced by the file.
std::string resolved(const std::string& filename)
{
    std::error_code unresolved;
    const fs::path target = fs::canonical(filename, unresolved);
    return unresolved ? filename : target.string();
}

/// Waits until the file, or the entries of a folder, are on the disk.
bool bringToDisk(const std::string& path)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool onDisk = descriptor >= 0 && fsync(descriptor) == 0;
    const int reason = errno;
    if (descriptor >= 0) {
        close(descriptor);
    }
    errno = reason;
    return onDisk;
}

/// Copies the bytes of one open file over those of another and waits for the disk.
bool copyOver(int from, int to)
{
    char buffer[1 << 16];
    off_t length = 0;
    for (;;) {
        const ssize_t count = pread(from, buffer, sizeof buffer, length);
        if (count < 0) {
            return false;
        }
        if (count == 0) {
            return ftruncate(to, length) == 0 && fsync(to) == 0;
        }
        for (ssize_t done = 0; done < count;) {
            const ssize_t written =
                pwrite(to, buffer + done, static_cast<std::size_t>(count - done), length + done);
            if (written < 0) {
                return false;
            }
            done += written;
        }
        length += count;
    }
}

/// Takes the room that `to` lacks for the content of `from`, before a byte of it is lost.
bool reserve(int from, int to)
{
    struct stat source = {};
    struct stat target = {};
    if (fstat(from, &source) != 0 || fstat(to, &target) != 0) {
        return false;
    }
    if (source.st_size <= target.st_size) {
        return true;
    }
    const int error = posix_fallocate(to, target.st_size, source.st_size - target.st_size);
    if (error != 0) {
        errno = ftruncate(to, target.st_size) == 0 ? error : errno;
    }
    return error == 0;
}

/// A descriptor that is closed at the end.
struct Descriptor
{
    Descriptor(const std::string& path, int flags)
        : number(open(path.c_str(), flags | O_CLOEXEC))
    {}

    ~Descriptor()
    {
        if (number >= 0) {
            close(number);
        }
    }

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const int number;
};

/// A copy of the old content of a file that is written in place, which goes with this object unless
/// it is kept.
class SafetyCopy
{
public:
    explicit SafetyCopy(int file)
    {
        std::error_code none;
        lock_ = TemporaryFiles::create(fs::temp_directory_path(none).string() + "/", 0600, name_);
        const Descriptor copy(name_, O_WRONLY);
        whole_ = lock_ >= 0 && copy.number >= 0 && copyOver(file, copy.number);
    }

    ~SafetyCopy()
    {
        if (lock_ >= 0) {
            TemporaryFiles::release(name_, lock_, !kept_);
        }
    }

    SafetyCopy(const SafetyCopy&) = delete;
    SafetyCopy& operator=(const SafetyCopy&) = delete;

    bool restore(int file) const
    {
        const Descriptor copy(name_, O_RDONLY);
        return whole_ && copy.number >= 0 && copyOver(copy.number, file);
    }

    /// Leaves the copy under a name that no other run removes, and gives that; empty without one.
    std::string keep()
    {
        const std::string name = name_ + ".saved";
        kept_ = whole_ && std::rename(name_.c_str(), name.c_str()) == 0;
        return kept_ ? name : "";
    }

private:
    std::string name_;
    int lock_ = -1;
    bool whole_ = false;
    bool kept_ = false;
};

} // namespace

FileReplacement::FileReplacement(const std::string& where, const std::string& filename)
    : where_(where)
    , filename_(filename)
    , target_(resolved(filename))
{
    std::error_code unknown;
    const fs::file_status status = fs::status(target_, unknown);
    if (fs::is_directory(status)) {
        fail("The file can't be written", EISDIR);
    }
    replaces_ = fs::exists(status);
    if (replaces_ && access(target_.c_str(), W_OK) != 0) {
        fail("The file can't be written", errno);
    }
    if (replaces_ && !fs::is_regular_file(status)) {
        temporaryName_ = target_;
    } else {
        createTemporary();
    }
}

FileReplacement::~FileReplacement()
{
    if (pending_) {
        TemporaryFiles::release(temporaryName_, lock_, true);
    }
}

void FileReplacement::createTemporary()
{
    const unsigned mode = replaces_ ? 0600 : 0666;
    lock_ = TemporaryFiles::create(FileInfo::dirName(target_), mode, temporaryName_);
    if (lock_ < 0 && replaces_ && (errno == EACCES || errno == EPERM)) {
        const int reason = errno;
        std::error_code none;
        const std::string elsewhere = fs::temp_directory_path(none).string() + "/";
        inPlace_ = true;
        lock_ = TemporaryFiles::create(elsewhere, mode, temporaryName_);
        errno = reason;
    }
    if (lock_ < 0) {
        fail("The file can't be written", errno);
    }
    pending_ = true;
}

void FileReplacement::commit(bool written)
{
    if (!written) {
        const bool told =
            errno == ENOSPC || errno == EDQUOT || errno == EFBIG || errno == EIO || errno == EPIPE;
        fail("The file can't be written to its end", told ? errno : 0);
    }
    if (!pending_) {
        return;
    }
    if (inPlace_) {
        writeInPlace();
    } else {
        replace();
    }
    TemporaryFiles::release(temporaryName_, lock_, inPlace_);
    pending_ = false;
}

void FileReplacement::replace() const
{
    const bool waits = replaces_ || onlyCopy_;
    if (waits && !bringToDisk(temporaryName_)) {
        fail("The file can't be written to its end", errno);
    }
    keepOwnership();
    if (std::rename(temporaryName_.c_str(), target_.c_str()) != 0) {
        fail("The file can't be replaced", errno);
    }
    if (waits) {
        const std::string folder = FileInfo::dirName(target_);
        bringToDisk(folder.empty() ? "." : folder); // not all file systems have that
    }
}

/// Gives the temporary file owner, group and mode of the old one. Where the group can't be kept, no
/// other one gets its rights.
void FileReplacement::keepOwnership() const
{
    struct stat own = {};
    struct stat old = {};
    if (!replaces_ || stat(target_.c_str(), &old) != 0 || fstat(lock_, &own) != 0) {
        return;
    }
    mode_t mode = old.st_mode & 07777;
    const bool sameOwner = own.st_uid == old.st_uid && own.st_gid == old.st_gid;
    if (!sameOwner && fchown(lock_, old.st_uid, old.st_gid) != 0 &&
        fchown(lock_, static_cast<uid_t>(-1), old.st_gid) != 0) {
        mode &= 0707 | (mode & 07) << 3;
    }
    if (fchmod(lock_, mode) != 0) {
        fail("The file can't be replaced", errno);
    }
}

void FileReplacement::writeInPlace() const
{
    const Descriptor from(temporaryName_, O_RDONLY);
    const bool readable = access(target_.c_str(), R_OK) == 0;
    const Descriptor to(target_, readable ? O_RDWR : O_WRONLY);
    if (from.number < 0 || to.number < 0 || !reserve(from.number, to.number)) {
        fail("The file can't be written", errno);
    }
    SafetyCopy copy(to.number);
    if (copyOver(from.number, to.number)) {
        return;
    }
    const int reason = errno;
    const std::string kept = copy.restore(to.number) ? "" : copy.keep();
    fail(kept.empty() ? "The file can't be written to its end"
                      : "The file can't be written to its end, what it held is in " + kept,
         reason);
}

void FileReplacement::write(const std::string& where,
                            const std::string& filename,
                            const std::string& bytes)
{
    FileReplacement replacement(where, filename);
    std::ofstream stream(replacement.temporaryName(), std::ios_base::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    replacement.commit(stream.good());
}

void FileReplacement::removeAtSignals()
{
    TemporaryFiles::removeAtSignals();
}

void FileReplacement::fail(const std::string& what, int errorNumber) const
{
    const std::string reason =
        errorNumber == 0 ? "" : std::string(": ") + std::strerror(errorNumber);
    raiseFile<FileWriteError>(where_, what + reason, filename_);
}
