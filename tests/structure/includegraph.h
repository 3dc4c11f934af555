#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

/// What one room may include besides itself. A room is a folder that holds files: `system`,
/// `image/values`, `host/view`.
struct RoomRule
{
    std::set<std::string> rooms;
    /// Prefixes of the names in angle brackets that stand for libraries other than the standard one.
    std::set<std::string> libraries;
};

using RoomTable = std::map<std::string, RoomRule>;

/// The #include lines of a source tree. Files are named from the root of the project, with "src/"
/// left out: `shape/curves/curve.h`, `host/main.cpp`.
class IncludeGraph
{
public:
    /// Reads all headers and sources below `root`/src and in the folders of the programs beside it.
    explicit IncludeGraph(const std::filesystem::path& root);

    int fileCount() const { return static_cast<int>(files_.size()); }

    /// A line for each #include that the table does not allow, or that leads to no file.
    std::vector<std::string> forbiddenIncludes(const RoomTable& table) const;

    /// The files along a cycle, the first one repeated at the end; empty if there is none.
    std::vector<std::string> cycle() const;

    /// The room of a file: its folder, but for the one class that two halls share.
    static std::string roomOf(const std::string& file);

private:
    struct File
    {
        std::vector<std::string> ours;
        std::vector<std::string> libraries;
        std::vector<std::string> unresolved;
    };

    void addFolder(const std::filesystem::path& folder, const std::string& prefix);
    void read(const std::filesystem::path& path, const std::string& name);
    void resolve();

    std::map<std::string, File> files_;
};
