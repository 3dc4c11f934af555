#include "image/files/abstractimageio.h"

#include <tiffio.h>

bool AbstractImageIO::firstTime = true;
TIFFExtendProc AbstractImageIO::_parentExtender = nullptr;

namespace {

// libtiff takes the name as a non-const text.
char positionTagName[] = "ImagePosition3D";

} // namespace

struct AbstractImageIO::FieldTable
{
    TIFFFieldInfo rows[1];
};

const AbstractImageIO::FieldTable AbstractImageIO::xtiffFieldInfo = {
    {{ImagePosition3D, 3, 3, TIFF_FLOAT, FIELD_CUSTOM, 1, 0, positionTagName}}};

AbstractImageIO::AbstractImageIO()
{
    if (firstTime) {
        _parentExtender = TIFFSetTagExtender(registerCustomTiffTags);
        firstTime = false;
    }
}

void AbstractImageIO::registerCustomTiffTags(TIFF* tif)
{
    TIFFMergeFieldInfo(tif, xtiffFieldInfo.rows, 1);
    if (_parentExtender != nullptr) {
        _parentExtender(tif);
    }
}
