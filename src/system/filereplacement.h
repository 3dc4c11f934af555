#pragma once

#include <string>

/// A file of the user that is written anew, whole or not at all.
///
/// The writer fills the file `temporaryName()`, which lies in the same folder, closes it, and calls
/// `commit()`, which puts it in the place of the old file. Until then the old file stays as it was.
/// A replacement that ends without `commit()` removes the temporary file.
///
///     FileReplacement replacement(where, filename);
///     std::ofstream stream(replacement.temporaryName());
///     ...
///     stream.close();
///     replacement.commit(stream.good());
///
/// A link is followed: the file that it names is replaced. What is there but no plain file (a
/// device, a pipe) is written directly.
class FileReplacement
{
public:
    /// Creates the temporary file, empty. Raises `FileWriteError`, as the operation `where`, if the
    /// folder or the file that is there can't be written.
    FileReplacement(const std::string& where, const std::string& filename);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    const std::string& temporaryName() const { return temporaryName_; }

    /// Replaces the file. Raises `FileWriteError` if `written` says that writing failed, or if the
    /// data don't reach the disk; the old file then stays. Where there is no old file to lose, the
    /// system brings the data to the disk in its own time, so that thousands of small files do not
    /// wait for it one by one.
    void commit(bool written = true);

private:
    [[noreturn]] void fail(const std::string& what, int errorNumber) const;
    void createTemporary();
    void bringToDisk() const;

    std::string where_;
    std::string filename_;
    std::string target_;
    std::string temporaryName_;
    bool pending_ = false;
    bool replaces_ = false;
};
