#include "interface/lmxrawimagecache.h"
#include "interface/lmxslicepixmapcache.h"
#include "stack/slice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <list>
#include <random>

namespace {

/// A random script of inserting, finding and removing, against a list that has the most recently
/// used slice in front.
template <class Cache>
void runAgainstList(Cache& cache, std::size_t room, unsigned seed)
{
    std::mt19937 random(seed);
    std::deque<Slice> slices(2 * room + 3);
    std::list<std::pair<const Slice*, const Image0*>> model;
    const auto known = [&](const Slice& slice) {
        return std::find_if(model.begin(), model.end(),
                            [&](const auto& entry) { return entry.first == &slice; });
    };
    for (int step = 0; step < 2000; ++step) {
        const Slice& slice = slices[random() % slices.size()];
        const auto entry = known(slice);
        switch (random() % 4) {
        case 0:
            cache.remove(slice);
            if (entry != model.end()) {
                model.erase(entry);
            }
            break;
        case 1: {
            auto* image = new Image0;
            if (entry != model.end()) {
                model.erase(entry);
            }
            cache.insert(slice, *image);
            model.emplace_front(&slice, image);
            if (model.size() > room) {
                model.pop_back();
            }
            break;
        }
        default:
            EXPECT_EQ(cache.find(slice), entry == model.end() ? nullptr : entry->second);
            if (entry != model.end()) {
                model.splice(model.begin(), model, entry);
            }
        }
        EXPECT_EQ(static_cast<std::size_t>(cache.size()), model.size());
    }
}

} // namespace

TEST(LMXSliceImageCache, DropsTheLeastRecentlyUsedOfAHundred)
{
    LMXSliceImageCache cache;
    EXPECT_EQ(cache.maxCost(), 100);
    runAgainstList(cache, 100, 1);
}

TEST(LMXRawImageCache, KeepsTheLastImageAlone)
{
    LMXRawImageCache cache;
    runAgainstList(cache, 1, 2);
}

TEST(LMXSlicePixmapCache, FindsWhatWasInsertedUnderTheAddressOfTheSlice)
{
    LMXSlicePixmapCache cache;
    Slice slice;
    EXPECT_EQ(cache.maxCost(), 100);
    char address[32];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(&slice));
    EXPECT_EQ(LMXSlicePixmapCache::generateKey(slice), address);
    EXPECT_EQ(LMXSliceImageCache::generateKey(slice), address);
    EXPECT_EQ(cache.find(slice), nullptr);
    cache.remove(slice);
    EXPECT_EQ(cache.size(), 0);
}
