#include "blade/geometry/axisrotation.h"

#include <algorithm>
#include <cmath>

SquareMatrix<float>
axisRotation(const Vector<float>& a, const Vector<float>& b, AxisAlignment alignment)
{
    SquareMatrix<float> rotation;
    rotation.setIdentity(a.getSize());
    const float norms = a.norm() * b.norm();
    if (!(norms > 0.0f)) {
        return rotation;
    }
    // Rounding may lead a little beyond 1, where the sine has no value.
    const float cosine = std::clamp(a.scalarProduct(b) / norms, -1.0f, 1.0f);
    float sine = std::sqrt(1.0f - cosine * cosine);
    if (alignment == AxisAlignment::SignedSine && b[0] * a[1] - b[1] * a[0] < 0.0f) {
        sine = -sine;
    }
    rotation[0][0] = rotation[1][1] = cosine;
    rotation[0][1] = sine;
    rotation[1][0] = -sine;
    return rotation;
}
