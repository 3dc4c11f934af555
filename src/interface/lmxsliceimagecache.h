#pragma once

#include "image/pixels/image0.h"

#include <QCache>
#include <QString>

class Slice;

/// Decoded images of slices, the least recently used one going first. The key is the address of the
/// slice: a caller that changes a slice's image or destroys the slice removes the entry.
class LMXSliceImageCache : public QCache<QString, Image0>
{
public:
    /// Room for 100 images.
    LMXSliceImageCache();
    virtual ~LMXSliceImageCache();

    static QString generateKey(const Slice& slice);

    /// The slice's image or null.
    Image0* find(const Slice& slice) const;

    /// Takes ownership of the image, which must come from `new`.
    virtual void insert(const Slice& slice, Image0& image);

    void remove(const Slice& slice);
};
