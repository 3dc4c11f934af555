#pragma once

#include "blade/geometry/axisrotation.h"
#include "shape/curves/curve.h"

/// Makes a leaf outline symmetric about its axis. The outline is open and runs from the one petiole
/// junction over the apex, its middle vertex, to the other junction.
class BladeSymmetrization
{
public:
    void setAlignment(AxisAlignment value) { alignment = value; }

    /// See `axisRotation`.
    SquareMatrix<float> computeRotationMatrix(const Vector<float>& a, const Vector<float>& b) const;

    /// A new curve in which each vertex of the first half is the mean of itself and the mirror image
    /// of its partner, counted from the other end, and the partner is the mirror image of that. With
    /// an odd number of vertices the middle one ends on the axis. The result lies where the input
    /// lies; with `keepFrame` the middle of the junctions is in the origin and the axis along the
    /// first coordinate axis. A curve without vertices gives another one.
    Curve<float> computeSymetrizeContour(const Curve<float>& curve, bool keepFrame) const;

private:
    AxisAlignment alignment = AxisAlignment::PositiveSine;
};
