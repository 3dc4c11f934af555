#pragma once

/// w + xi + yj + zk. A quaternion of unit length describes a rotation in space
/// (`SquareMatrix(const Quaternion&, bool)`).
template <class T>
struct Quaternion
{
    T w = 1;
    T x = 0;
    T y = 0;
    T z = 0;
};
