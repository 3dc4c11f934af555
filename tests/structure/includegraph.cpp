#include "structure/includegraph.h"

#include <algorithm>
#include <fstream>
#include <functional>

namespace fs = std::filesystem;

namespace {

/// The name that an #include line gives, with the mark in front of it; empty for other lines.
std::string includedName(const std::string& line)
{
    std::size_t at = line.find_first_not_of(" \t");
    if (at == std::string::npos || line[at] != '#') {
        return {};
    }
    at = line.find_first_not_of(" \t", at + 1);
    if (at == std::string::npos || line.compare(at, 7, "include") != 0) {
        return {};
    }
    const std::size_t begin = line.find_first_of("\"<", at);
    const std::size_t end = line.find_first_of("\">", begin + 1);
    return begin == std::string::npos || end == std::string::npos ? std::string()
                                                                  : line.substr(begin, end - begin);
}

bool startsWithOneOf(const std::string& text, const std::set<std::string>& prefixes)
{
    return std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& prefix) {
        return text.compare(0, prefix.size(), prefix) == 0;
    });
}

/// The libraries that a room must have been given. All else in angle brackets is the standard
/// library or the system.
bool isGuardedLibrary(const std::string& name)
{
    static const std::set<std::string> guarded = {"Q",  "tiff", "xtiff", "fftw3",
                                                  "H5", "hdf5", "omp",   "opencv2"};
    return startsWithOneOf(name, guarded);
}

} // namespace

IncludeGraph::IncludeGraph(const fs::path& root)
{
    addFolder(root / "src", "");
    for (const char* folder : {"intake", "findings", "host", "cli", "samples"}) {
        addFolder(root / folder, std::string(folder) + "/");
    }
    resolve();
}

void IncludeGraph::addFolder(const fs::path& folder, const std::string& prefix)
{
    if (!fs::exists(folder)) {
        return;
    }
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const std::string suffix = entry.path().extension().string();
        if (suffix == ".h" || suffix == ".cpp") {
            read(entry.path(), prefix + fs::relative(entry.path(), folder).generic_string());
        }
    }
}

void IncludeGraph::read(const fs::path& path, const std::string& name)
{
    File& file = files_[name];
    std::ifstream stream(path);
    for (std::string line; std::getline(stream, line);) {
        const std::string included = includedName(line);
        if (included.empty()) {
            continue;
        }
        const std::string target = included.substr(1);
        if (included.front() == '<') {
            file.libraries.push_back(target);
        } else if (fs::path(target).extension() != ".moc") {
            file.ours.push_back(target);
        }
    }
}

void IncludeGraph::resolve()
{
    for (auto& [name, file] : files_) {
        std::vector<std::string> found;
        for (const std::string& target : file.ours) {
            const std::string beside = (fs::path(name).parent_path() / target).generic_string();
            if (files_.count(target) != 0) {
                found.push_back(target);
            } else if (files_.count(beside) != 0) {
                found.push_back(beside);
            } else {
                file.unresolved.push_back(target);
            }
        }
        file.ours.swap(found);
    }
}

std::string IncludeGraph::roomOf(const std::string& file)
{
    if (file == "image/values/colormap.h" || file == "image/values/colormap.cpp") {
        return "colormap";
    }
    return fs::path(file).parent_path().generic_string();
}

std::vector<std::string> IncludeGraph::forbiddenIncludes(const RoomTable& table) const
{
    std::vector<std::string> forbidden;
    for (const auto& [name, file] : files_) {
        const std::string room = roomOf(name);
        const auto rule = table.find(room);
        if (rule == table.end()) {
            forbidden.push_back(name + ": the folder is not in the table");
            continue;
        }
        for (const std::string& target : file.ours) {
            const std::string other = roomOf(target);
            if (other != room && rule->second.rooms.count(other) == 0) {
                forbidden.push_back(name + " includes \"" + target + "\"");
            }
        }
        for (const std::string& target : file.libraries) {
            if (isGuardedLibrary(target) && !startsWithOneOf(target, rule->second.libraries)) {
                forbidden.push_back(name + " includes <" + target + ">");
            }
        }
        for (const std::string& target : file.unresolved) {
            forbidden.push_back(name + " includes \"" + target + "\", which is no file");
        }
    }
    return forbidden;
}

std::vector<std::string> IncludeGraph::cycle() const
{
    std::set<std::string> done;
    std::vector<std::string> path;
    const std::function<bool(const std::string&)> closes = [&](const std::string& name) {
        const auto open = std::find(path.begin(), path.end(), name);
        if (open != path.end()) {
            path.erase(path.begin(), open);
            path.push_back(name);
            return true;
        }
        path.push_back(name);
        if (done.insert(name).second) {
            for (const std::string& target : files_.at(name).ours) {
                if (closes(target)) {
                    return true;
                }
            }
        }
        path.pop_back();
        return false;
    };
    for (const auto& [name, file] : files_) {
        if (closes(name)) {
            return path;
        }
    }
    return {};
}
