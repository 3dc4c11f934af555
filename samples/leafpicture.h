#pragma once

#include "samples/leafoutline.h"
#include "samples/leafplan.h"

#include <cstdint>
#include <vector>

/// A picture of 8 bits a sample, row by row, samples of a pixel side by side.
struct Picture
{
    int width = 0;
    int height = 0;
    /// 1 (grey) or 3 (red, green, blue).
    int samples = 1;
    std::vector<std::uint8_t> bytes;
};

/// Draws a photograph of the leaf: paper with a shade, the leaf with its veins, a soft edge, noise.
Picture drawLeaf(const LeafPlan& plan, const LeafOutline& leaf, int width, int height);
