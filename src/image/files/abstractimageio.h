#pragma once

#include "system/progresssubject.h"

#include <tiffio.h>

/// Base of the image readers and writers: makes the position tag known to libtiff and reports
/// progress. Used on one thread at a time.
class AbstractImageIO : public virtual ProgressSubject
{
public:
    /// The tag with the position of an image in space, three floats.
    static constexpr unsigned int ImagePosition3D = 65535;

protected:
    /// The first object of the family installs `registerCustomTiffTags` as libtiff's tag extender;
    /// it stays for the life of the process.
    AbstractImageIO();

    /// Adds the custom tag to a handle, then calls the extender that stood there before.
    static void registerCustomTiffTags(TIFF* tif);

private:
    static bool firstTime;
    static TIFFExtendProc _parentExtender;
    static const TIFFFieldInfo xtiffFieldInfo[1];
};
