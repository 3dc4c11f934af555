#pragma once

#include <QCache>
#include <QPixmap>
#include <QString>

class Slice;

/// Pixmaps of slices for the host's views, by the rules of `LMXSliceImageCache`.
class LMXSlicePixmapCache : public QCache<QString, QPixmap>
{
public:
    /// Room for 100 pixmaps.
    LMXSlicePixmapCache();
    virtual ~LMXSlicePixmapCache();

    static QString generateKey(const Slice& slice);

    /// The slice's pixmap or null.
    QPixmap* find(const Slice& slice) const;

    /// Takes ownership of the pixmap, which must come from `new`.
    virtual void insert(const Slice& slice, QPixmap& pixmap);

    void remove(const Slice& slice);
};
