#include "interface/lmxrawimagecache.h"

LMXRawImageCache::LMXRawImageCache()
{
    setMaxCost(1);
}
