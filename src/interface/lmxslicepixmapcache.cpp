#include "interface/lmxslicepixmapcache.h"

#include "interface/lmxsliceimagecache.h"

LMXSlicePixmapCache::LMXSlicePixmapCache()
    : QCache<QString, QPixmap>(100)
{}

LMXSlicePixmapCache::~LMXSlicePixmapCache() = default;

QString LMXSlicePixmapCache::generateKey(const Slice& slice)
{
    return LMXSliceImageCache::generateKey(slice);
}

QPixmap* LMXSlicePixmapCache::find(const Slice& slice) const
{
    return object(generateKey(slice));
}

void LMXSlicePixmapCache::insert(const Slice& slice, QPixmap& pixmap)
{
    QCache<QString, QPixmap>::insert(generateKey(slice), &pixmap, 1);
}

void LMXSlicePixmapCache::remove(const Slice& slice)
{
    QCache<QString, QPixmap>::remove(generateKey(slice));
}
