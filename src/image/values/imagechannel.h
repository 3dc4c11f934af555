#pragma once

/// Picks a sample of an `Image0` pixel; the number is the byte offset in a 24-bit or 32-bit pixel.
enum class ImageChannel {
    Red = 0,
    Green = 1,
    Blue = 2,
    Fourth = 3,
};
