#include "stack/slicenotes.h"

#include "stack/slice.h"

#include <algorithm>
#include <vector>

namespace {

std::vector<std::string> linesOf(const std::string& annotation)
{
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < annotation.size();) {
        const std::size_t end = std::min(annotation.find('\n', begin), annotation.size());
        lines.push_back(annotation.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

bool hasKey(const std::string& line, const std::string& key)
{
    return line.compare(0, key.size() + 2, key + ": ") == 0;
}

} // namespace

void SliceNotes::remove(Slice& slice, const std::string& key)
{
    if (!get(slice, key)) {
        return;
    }
    std::string rest;
    for (const std::string& line : linesOf(slice.getAnnotation())) {
        if (!hasKey(line, key)) {
            rest += (rest.empty() ? "" : "\n") + line;
        }
    }
    slice.setAnnotation(rest);
}

void SliceNotes::set(Slice& slice, const std::string& key, const std::string& value)
{
    remove(slice, key);
    const std::string& rest = slice.getAnnotation();
    slice.setAnnotation(key + ": " + value + (rest.empty() ? "" : "\n") + rest);
}

std::optional<std::string> SliceNotes::get(const Slice& slice, const std::string& key)
{
    for (const std::string& line : linesOf(slice.getAnnotation())) {
        if (hasKey(line, key)) {
            return line.substr(key.size() + 2);
        }
    }
    return std::nullopt;
}
