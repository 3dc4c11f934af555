#include "image/values/pixelmemory.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <new>

unsigned char* allocatePixelMemory(std::size_t bytes)
{
    void* const memory = std::calloc(bytes == 0 ? 1 : bytes, 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    constexpr std::uintptr_t largePage = std::uintptr_t(1) << 21;
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t begin = (first + largePage - 1) / largePage * largePage;
    const std::uintptr_t end = (first + bytes) / largePage * largePage;
    if (begin < end) {
        // A wish alone: a system without such pages gives small ones.
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
    }
    return static_cast<unsigned char*>(memory);
}
