#pragma once

#include "numerics/squarematrix.h"

/// How the axis of a leaf is turned onto the first coordinate axis.
enum class AxisAlignment {
    /// The sine of the turn is never negative. An axis below the first one, as a photograph with
    /// the tip up and the leaf tilted gives, ends at twice its tilt.
    PositiveSine,
    /// The turn goes whichever way is needed: each axis ends on the first one.
    SignedSine,
};

/// The matrix of the turn in the first two coordinates by the angle between `a` and `b`, the
/// identity in the others: rows (c, s), (-s, c) with c and s the cosine and sine. The identity where
/// one of the two has no length. `SizeError` for vectors of different sizes.
SquareMatrix<float>
axisRotation(const Vector<float>& a, const Vector<float>& b, AxisAlignment alignment);
