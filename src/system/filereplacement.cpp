#include "system/filereplacement.h"

#include "system/exception.h"
#include "system/fileinfo.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

/// The file itself where `filename` is a link; a link that leads nowhere is replaced by the file.
std::string resolved(const std::string& filename)
{
    std::error_code unresolved;
    const fs::path target = fs::canonical(filename, unresolved);
    return unresolved ? filename : target.string();
}

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
        unlink(temporaryName_.c_str());
    }
}

void FileReplacement::createTemporary()
{
    const std::string stem =
        FileInfo::dirName(target_) + ".crenara-" + std::to_string(getpid()) + "-";
    int descriptor = -1;
    for (int attempt = 0; descriptor < 0; ++attempt) {
        temporaryName_ = stem + std::to_string(attempt) + ".part";
        descriptor = open(temporaryName_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0 && errno != EEXIST) {
            fail("The file can't be written", errno);
        }
    }
    close(descriptor);
    pending_ = true;
}

void FileReplacement::commit(bool written)
{
    if (!written) {
        const bool told = errno == ENOSPC || errno == EDQUOT || errno == EFBIG || errno == EIO;
        fail("The file can't be written to its end", told ? errno : 0);
    }
    if (!pending_) {
        return;
    }
    if (replaces_) {
        bringToDisk();
    }
    if (std::rename(temporaryName_.c_str(), target_.c_str()) != 0) {
        fail("The file can't be replaced", errno);
    }
    pending_ = false;
}

void FileReplacement::bringToDisk() const
{
    const int descriptor = open(temporaryName_.c_str(), O_RDONLY | O_CLOEXEC);
    const bool onDisk = descriptor >= 0 && fsync(descriptor) == 0;
    const int reason = errno;
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (!onDisk) {
        fail("The file can't be written to its end", reason);
    }
}

void FileReplacement::fail(const std::string& what, int errorNumber) const
{
    const std::string reason =
        errorNumber == 0 ? "" : std::string(": ") + std::strerror(errorNumber);
    raiseFile<FileWriteError>(where_, what + reason, filename_);
}
