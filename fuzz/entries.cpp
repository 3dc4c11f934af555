#include "fuzz/entries.h"

#include "system/exception.h"

#include <fstream>
#include <iterator>

void require(bool kept, const char* promise)
{
    if (!kept) {
        throw Broken(promise);
    }
}

std::string bytesOf(const std::string& path)
{
    std::ifstream stream(path, std::ios_base::binary);
    require(stream.is_open(), "the file is there");
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool readBytes(const FuzzEntry& entry, const std::string& folder, const std::string& bytes)
{
    const std::string path = folder + "/input." + entry.suffix;
    std::ofstream(path, std::ios_base::binary) << bytes;
    try {
        return entry.read(path);
    } catch (const Exception&) {
        return false;
    }
}
