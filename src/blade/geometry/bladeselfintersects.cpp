#include "blade/geometry/bladeselfintersects.h"

bool BladeSelfIntersects::process(const Curve<float>& curve) const
{
    return curve.selfIntersects(0, 1);
}
