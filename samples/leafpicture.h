#pragma once

#include "samples/canvas.h"
#include "samples/cloudfield.h"
#include "samples/colour.h"
#include "samples/leafoutline.h"
#include "samples/leafplan.h"

#include <cstdint>
#include <vector>

class RandomGenerator;

/// A picture of 8 bits a sample, row by row, samples of a pixel side by side.
struct Picture
{
    int width = 0;
    int height = 0;
    /// 1 (grey) or 3 (red, green, blue).
    int samples = 1;
    std::vector<std::uint8_t> bytes;
};

/// The colours of one leaf and of the paper that it is photographed on.
struct LeafPalette
{
    Colour paper;
    Colour blade;
    Colour vein;
    Colour stalk;
};

/// What one leaf looks like on a picture of `width` by `height` pixels, `factor` times as large as
/// its outline tells.
class LeafPainter
{
public:
    LeafPainter(const LeafPlan& plan,
                const LeafOutline& leaf,
                int width,
                int height,
                double factor,
                RandomGenerator& random);

    /// The share of each pixel that the leaf covers, and how dark its shadow is there, 0 to 1.
    const Plane& coverage() const { return coverage_; }

    const Plane& shadow() const { return shadow_; }

    const LeafPalette& palette() const { return palette_; }

    const CloudField& clouds() const { return clouds_; }

    /// The colour of the leaf under an even light.
    Colour colourAt(int column, int row) const;

private:
    void drawMasks(const LeafOutline& leaf, RandomGenerator& random);

    LeafPlan plan_;
    LeafFrame frame_;
    double factor_ = 1.0;
    Plane coverage_;
    Plane shadow_;
    Plane veins_;
    Plane spots_;
    LeafPalette palette_;
    CloudField clouds_;
};

/// What a camera makes of one or three planes: a soft edge and noise.
Picture exposed(std::vector<Plane> planes, RandomGenerator& random);

/// Draws a photograph of the leaf, `factor` times as large as its outline tells: paper with a shade,
/// the leaf with its veins, a soft edge, noise.
Picture
drawLeaf(const LeafPlan& plan, const LeafOutline& leaf, int width, int height, double factor = 1.0);
