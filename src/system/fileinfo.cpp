#include "system/fileinfo.h"

#include "system/exception.h"

#include <algorithm>
#include <filesystem>

FileInfo::FileInfo(const std::string& path)
    : path_(path)
{}

bool FileInfo::isAbsolutePath(const std::string& path)
{
    return std::filesystem::path(path).has_root_directory();
}

bool FileInfo::isRelativePath(const std::string& path)
{
    return !isAbsolutePath(path);
}

bool FileInfo::fileExists(const std::string& path)
{
    std::error_code unreachable;
    return std::filesystem::exists(path, unreachable);
}

std::string FileInfo::dirName(const std::string& path)
{
    return path.substr(0, path.rfind('/') + 1);
}

std::string FileInfo::fileName(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

std::string FileInfo::baseName(const std::string& path)
{
    return std::filesystem::path(fileName(path)).stem().string();
}

std::string FileInfo::suffixName(const std::string& path)
{
    const std::string name = fileName(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

std::string FileInfo::relativePath(const std::string& path, const std::string& base)
{
    const std::string current = "./";
    std::error_code error;
    const std::filesystem::path relative = std::filesystem::relative(
        path.empty() ? current : path, base.empty() ? current : base, error);
    if (error) {
        raiseFile<FileReadError>("string FileInfo::relativePath(const string&, const string&)",
                                 "The path can't be resolved: " + error.message(), path);
    }
    return relative.string();
}

void FileInfo::ensureSuffix(std::string& path, const std::string& suffix)
{
    if (suffixName(path) != suffix) {
        path += "." + suffix;
    }
}

std::vector<std::string> FileInfo::tokenize(const std::string& path)
{
    std::vector<std::string> components;
    std::size_t begin = 0;
    while (begin < path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        if (end > begin) {
            components.push_back(path.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return simplifyPath(components);
}

std::vector<std::string> FileInfo::simplifyPath(const std::vector<std::string>& tokens)
{
    std::vector<std::string> simple;
    for (const std::string& token : tokens) {
        if (token == ".") {
            continue;
        }
        if (token == ".." && !simple.empty() && simple.back() != "..") {
            simple.pop_back();
        } else {
            simple.push_back(token);
        }
    }
    return simple;
}

std::string FileInfo::simplifyPath(const std::string& path)
{
    return detokenize(tokenize(path));
}

std::string FileInfo::detokenize(const std::vector<std::string>& tokens)
{
    const bool fromHere = !tokens.empty() && (tokens.front() == "." || tokens.front() == "..");
    std::string path = fromHere ? "" : "/";
    for (const std::string& token : tokens) {
        path += token + "/";
    }
    return path;
}
