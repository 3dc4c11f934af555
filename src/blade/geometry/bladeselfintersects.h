#pragma once

#include "shape/curves/curve.h"

/// Tells whether an outline crosses itself.
class BladeSelfIntersects
{
public:
    /// Any two edges of the curve that are not neighbours cross or touch. Quadratic in the
    /// vertices.
    bool process(const Curve<float>& curve) const;
};
