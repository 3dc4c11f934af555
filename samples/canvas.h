#pragma once

#include "samples/polyline.h"

#include <vector>

/// One channel of a picture, row by row.
struct Plane
{
    int width = 0;
    int height = 0;
    std::vector<float> values;

    Plane(int columns, int rows, float value = 0.0F);

    float& at(int x, int y) { return values[index(x, y)]; }

    float at(int x, int y) const { return values[index(x, y)]; }

private:
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

/// Adds to each pixel the share of it that a closed line encloses, by four lines of samples a
/// pixel, exact along each line. Parts enclosed twice count once. Pixel (x, y) reaches from x to
/// x + 1; what lies outside of the plane is left out.
void addCoverage(Plane& plane, const Polyline& loop);

/// Gaussian blur; what lies outside counts as the nearest pixel.
void blur(Plane& plane, double sigma);
