#pragma once

/// Brightness of the background of a photograph against the leaf.
enum BackgroundValue {
    DarkBackground = 0,
    LightBackground = 1,
};
