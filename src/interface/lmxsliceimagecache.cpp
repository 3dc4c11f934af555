#include "interface/lmxsliceimagecache.h"

#include "stack/slice.h"

LMXSliceImageCache::LMXSliceImageCache()
    : QCache<QString, Image0>(100)
{}

LMXSliceImageCache::~LMXSliceImageCache() = default;

QString LMXSliceImageCache::generateKey(const Slice& slice)
{
    return QString::asprintf("%p", static_cast<const void*>(&slice));
}

Image0* LMXSliceImageCache::find(const Slice& slice) const
{
    return object(generateKey(slice));
}

void LMXSliceImageCache::insert(const Slice& slice, Image0& image)
{
    QCache<QString, Image0>::insert(generateKey(slice), &image, 1);
}

void LMXSliceImageCache::remove(const Slice& slice)
{
    QCache<QString, Image0>::remove(generateKey(slice));
}
