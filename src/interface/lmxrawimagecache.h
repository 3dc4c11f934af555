#pragma once

#include "interface/lmxsliceimagecache.h"

/// Keeps the one decoded image that was used last.
class LMXRawImageCache : public LMXSliceImageCache
{
public:
    LMXRawImageCache();
};
