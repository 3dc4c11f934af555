#pragma once

#include <cstddef>

/// Zeroed memory for pixels, to be given back with `std::free`; never null. Raises `std::bad_alloc`.
///
/// A large block asks the system for large pages: the first touch of small ones costs several times
/// the copy that fills them.
unsigned char* allocatePixelMemory(std::size_t bytes);
