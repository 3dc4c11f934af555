#include "blade/geometry/bladesymmetrization.h"

SquareMatrix<float> BladeSymmetrization::computeRotationMatrix(const Vector<float>& a,
                                                               const Vector<float>& b) const
{
    return axisRotation(a, b, alignment);
}

Curve<float> BladeSymmetrization::computeSymetrizeContour(const Curve<float>& curve,
                                                          bool keepFrame) const
{
    Curve<float> result = curve;
    const int size = result.getSize();
    if (size == 0) {
        return result;
    }
    result.detach();
    const int middle = (size - 1) / 2;
    const Vector<float> base = (curve[0] + curve[size - 1]) * 0.5f;
    Vector<float> axis(base.getSize());
    axis.setCanonical(0);
    result.translate(-base);
    SquareMatrix<float> rotation = computeRotationMatrix(result[middle], axis);
    result.multiply(rotation);
    for (int i = 0; i <= middle; ++i) {
        Vector<float> mirrored = result[size - 1 - i];
        mirrored[1] = -mirrored[1];
        result[i] = (result[i] + mirrored) * 0.5f;
        mirrored = result[i];
        mirrored[1] = -mirrored[1];
        if (size - 1 - i != i) {
            result[size - 1 - i] = mirrored;
        }
    }
    if (!keepFrame) {
        rotation[0][1] = -rotation[0][1];
        rotation[1][0] = -rotation[1][0];
        result.multiply(rotation);
        result.translate(base);
    }
    return result;
}
