#pragma once

/// Numbers the samples of an `Image2` element. Images of more than four samples use the numbers
/// above 3 as well.
enum class ColorChannel : int {
    Red = 0,
    Green = 1,
    Blue = 2,
    Fourth = 3,
};
