#pragma once

/// What the colours of an image, or of all images of a stack, come to.
enum class ImageColorContent {
    Gray = 0,    ///< red, green and blue are equal everywhere
    Red = 1,     ///< green and blue are zero everywhere
    Green = 2,   ///< red and blue are zero everywhere
    Blue = 3,    ///< red and green are zero everywhere
    Mixed = 4,   ///< anything else
    Unknown = 5, ///< there is no image to ask
};
