#include "image/files/tiffdescription.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

/// The number that begins there, behind blanks and a plus as streams take them.
template <class T>
bool parse(const std::string& text, std::size_t position, T& value)
{
    position = std::min(text.find_first_not_of(" \t", position), text.size());
    position += position + 1 < text.size() && text[position] == '+' && text[position + 1] != '-';
    const char* const end = text.data() + text.size();
    return std::from_chars(text.data() + position, end, value).ec == std::errc();
}

} // namespace

TiffDescription::TiffDescription(TIFF* tif)
{
    const char* text = nullptr;
    if (TIFFGetField(tif, TIFFTAG_IMAGEDESCRIPTION, &text) && text != nullptr) {
        text_ = text;
    }
}

std::optional<int> TiffDescription::integerAfter(const std::string& key) const
{
    const std::size_t position = text_.find(key);
    if (position == std::string::npos) {
        return std::nullopt;
    }
    int value = 0;
    return parse(text_, position + key.size(), value) ? value : -1;
}

std::optional<float> TiffDescription::numberAfter(const std::string& key) const
{
    const std::size_t position = text_.find(key);
    float value = 0.0F;
    if (position == std::string::npos || !parse(text_, position + key.size(), value) ||
        !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}
