#include "image/files/headerloading.h"

#include "image/files/imagereader.h"
#include "image/values/imageheader.h"
#include "system/exception.h"

std::unique_ptr<ImageHeader> copyOf(const std::unique_ptr<ImageHeader>& header)
{
    return header ? std::make_unique<ImageHeader>(*header) : nullptr;
}

void loadHeader(std::unique_ptr<ImageHeader>& header, const std::string& path, const char* where)
{
    header = std::make_unique<ImageHeader>();
    try {
        ImageReader().read(*header, path);
    } catch (Exception& exception) {
        exception.addWhere(where);
        throw;
    }
}
