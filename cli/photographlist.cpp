#include "cli/photographlist.h"

#include "cli/report.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace {

bool isPicture(const std::string& name)
{
    static const std::set<std::string> suffixes = {"jpg",  "jpeg", "png", "tif",
                                                   "tiff", "lsm",  "img", "vm"};
    const std::size_t dot = name.rfind('.');
    if (name.empty() || name.front() == '.' || dot == std::string::npos) {
        return false;
    }
    std::string suffix = name.substr(dot + 1);
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return suffixes.count(suffix) != 0;
}

/// The name is that of another file of the folder, with something behind it.
bool isMadeOf(const std::string& name, const std::set<std::string>& names)
{
    for (std::size_t end = name.find('.'); end != std::string::npos;
         end = name.find_first_of(".-", end + 1)) {
        if (names.count(name.substr(0, end)) != 0) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> picturesIn(const std::string& folder)
{
    std::set<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (isPicture(name) && !fs::is_directory(entry->path())) {
            names.insert(name);
        }
    }
    std::vector<std::string> pictures;
    for (const std::string& name : names) {
        if (!isMadeOf(name, names)) {
            pictures.push_back((fs::path(folder) / name).string());
        }
    }
    return pictures;
}

} // namespace

std::vector<std::string> photographList(const std::vector<std::string>& arguments, Report& report)
{
    std::vector<std::string> photographs;
    for (const std::string& argument : arguments) {
        std::error_code error;
        if (!fs::is_directory(argument, error)) {
            photographs.push_back(argument);
            continue;
        }
        const std::vector<std::string> pictures = picturesIn(argument);
        if (pictures.empty()) {
            report.fault(argument + ": there are no photographs in this folder");
        }
        photographs.insert(photographs.end(), pictures.begin(), pictures.end());
    }
    return photographs;
}
