#pragma once

#include <string>

/// A file of the user that is written anew, whole or not at all.
///
/// The writer fills the file `temporaryName()`, closes it, and calls `commit()`, which puts it in the
/// place of the old file. Until then the old file stays as it was. A replacement that ends without
/// `commit()` removes the temporary file.
///
///     FileReplacement replacement(where, filename);
///     std::ofstream stream(replacement.temporaryName());
///     ...
///     stream.close();
///     replacement.commit(stream.good());
///
/// The temporary file lies in the folder of the file and is renamed; the new file keeps the mode,
/// and, where the system lets it, owner and group of the old one. A file that may be written in a
/// folder that may not is written in place, from a temporary file elsewhere: it stays the same file
/// under all its names. A link is followed: the file that it names is replaced. What is there but no
/// plain file (a device, a pipe) is written directly.
///
/// Temporary files of processes that were killed go when the next one writes into the folder.
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

    /// The file will be the only copy of what is in it: `commit` then waits for the disk also where
    /// there is no old file to lose. Else the system brings a new file to the disk in its own time,
    /// so that thousands of small ones do not wait for it one by one.
    void setOnlyCopy() { onlyCopy_ = true; }

    /// Replaces the file. Raises `FileWriteError` if `written` says that writing failed, or if the
    /// data don't reach the disk; the old file then stays. Should a file that is written in place
    /// be lost all the same, the error names the copy of its old content.
    void commit(bool written = true);

    /// Writes a whole file of these bytes. Errors as above.
    static void
    write(const std::string& where, const std::string& filename, const std::string& bytes);

    /// From now on the signals of an interrupted or ended program, INT and TERM, remove the
    /// temporary files before they take their way. For programs, not for libraries in others.
    static void removeAtSignals();

private:
    [[noreturn]] void fail(const std::string& what, int errorNumber) const;
    void createTemporary();
    void keepOwnership() const;
    void replace() const;
    void writeInPlace() const;

    std::string where_;
    std::string filename_;
    std::string target_;
    std::string temporaryName_;
    int lock_ = -1; ///< holds the temporary file as that of a living process
    bool pending_ = false;
    bool replaces_ = false;
    bool inPlace_ = false;
    bool onlyCopy_ = false;
};
