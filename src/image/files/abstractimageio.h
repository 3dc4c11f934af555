#pragma once

#include "system/progresssubject.h"

/// A handle of libtiff, as its own header declares it; no other header of it is needed to use a reader.
typedef struct tiff TIFF;

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
    /// The table of custom tags, one row; complete where libtiff's own type is known.
    struct FieldTable;

    static bool firstTime;
    static void (*_parentExtender)(TIFF*);
    static const FieldTable xtiffFieldInfo;
};
