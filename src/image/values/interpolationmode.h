#pragma once

/// How values between pixels are found when an image changes its size.
enum class InterpolationMode {
    Nearest = 0,
    Bilinear = 1,
};
