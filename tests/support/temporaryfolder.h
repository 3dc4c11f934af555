#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// A folder of its own for one test, removed with everything in it.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "crenara-XXXXXX").string();
        if (!mkdtemp(name.data())) {
            throw std::runtime_error("no temporary folder");
        }
        path_ = name;
    }

    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file(const std::string& name) const { return (path_ / name).string(); }

    const std::filesystem::path& path() const { return path_; }

    /// Writes a file and returns its path.
    std::string write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(file(name), std::ios_base::binary) << bytes;
        return file(name);
    }

    std::string read(const std::string& name) const
    {
        std::ifstream stream(file(name), std::ios_base::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    int fileCount() const
    {
        using Iterator = std::filesystem::directory_iterator;
        return static_cast<int>(std::distance(Iterator(path_), Iterator()));
    }

private:
    std::filesystem::path path_;
};
