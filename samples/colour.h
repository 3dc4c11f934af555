#pragma once

#include <array>
#include <cstddef>

/// Red, green and blue, 0 to 255 each.
using Colour = std::array<double, 3>;

/// `a` at a share of 0, `b` at a share of 1.
inline Colour mixed(const Colour& a, const Colour& b, double share)
{
    Colour colour;
    for (std::size_t c = 0; c < colour.size(); ++c) {
        colour[c] = a[c] + (b[c] - a[c]) * share;
    }
    return colour;
}

inline Colour scaled(const Colour& a, double factor)
{
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}
