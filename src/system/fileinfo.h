#pragma once

#include <string>
#include <vector>

/// The parts of a path, with "/" between components. Each operation has a form on a given path and
/// one on the path that the object holds. All work on the text alone, but for `fileExists` and
/// `relativePath`, which look at the file system.
class FileInfo
{
public:
    FileInfo() = default;
    explicit FileInfo(const std::string& path);

    static bool isAbsolutePath(const std::string& path);
    static bool isRelativePath(const std::string& path);
    static bool fileExists(const std::string& path);

    /// Everything before the file name, the last "/" included; empty if there is none.
    static std::string dirName(const std::string& path);

    /// The last component; empty if the path ends in "/".
    static std::string fileName(const std::string& path);

    /// The file name without its last suffix: `b.c` for `a/b.c.txt`.
    static std::string baseName(const std::string& path);

    /// What follows the last dot of the file name; empty if there is no dot.
    static std::string suffixName(const std::string& path);

    /// The way from the folder `base` to `path`, links resolved; an empty text stands for the
    /// current folder on either side. Raises `FileReadError` where the file system can't be asked.
    static std::string relativePath(const std::string& path, const std::string& base);

    bool isAbsolutePath() const { return isAbsolutePath(path_); }

    bool isRelativePath() const { return isRelativePath(path_); }

    bool fileExists() const { return fileExists(path_); }

    std::string dirName() const { return dirName(path_); }

    std::string fileName() const { return fileName(path_); }

    std::string baseName() const { return baseName(path_); }

    std::string suffixName() const { return suffixName(path_); }

    std::string relativePath(const std::string& base) const { return relativePath(path_, base); }

    /// Appends a dot and `suffix` (given without dot) unless the path has this suffix.
    static void ensureSuffix(std::string& path, const std::string& suffix);

    /// The components of the path, simplified, without empty ones.
    static std::vector<std::string> tokenize(const std::string& path);

    /// Without ".", and without each ".." that follows a component, which goes with it.
    static std::vector<std::string> simplifyPath(const std::vector<std::string>& tokens);

    /// `/a/c/` for `a/./b/../c`: always ends in "/", and begins with it unless the first component
    /// that stays is "..".
    static std::string simplifyPath(const std::string& path);

    /// Each component followed by "/", with a "/" in front unless the first is "." or "..".
    static std::string detokenize(const std::vector<std::string>& tokens);

private:
    std::string path_;
};
