#include "image/files/tifforigin.h"

#include "image/files/tifffile.h"

std::string tiffOrigin(const std::string& path)
{
    const TiffFile file(path, "r");
    const char* text = nullptr;
    const bool stated = file.get() && TIFFGetField(file.get(), TIFFTAG_DOCUMENTNAME, &text);
    return stated && text ? text : "";
}
