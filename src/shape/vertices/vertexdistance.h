#pragma once

#include "numerics/elementarithmetic.h"
#include "numerics/vector.h"

#include <cmath>
#include <type_traits>

/// Raises the size error of `Vector::sdistance` unless both vertices have the same size.
template <class T>
inline void requireEqualSizes(const Vector<T>& a, const Vector<T>& b)
{
    if (a.getSize() != b.getSize()) {
        a.sdistance(b);
    }
}

/// `Vector::sdistance`, to the last digit, for the loops over vertices: it is compiled into them.
template <class T>
inline T squaredDistance(const Vector<T>& a, const Vector<T>& b)
{
    requireEqualSizes(a, b);
    T sum = 0;
    for (int i = 0; i < a.getSize(); ++i) {
        const T difference = subtracted(a[i], b[i]);
        sum = added(sum, multiplied(difference, difference));
    }
    return sum;
}

/// `Vector::distance` likewise; `TypeError` for `int`.
template <class T>
inline T vertexDistance(const Vector<T>& a, const Vector<T>& b)
{
    if constexpr (std::is_integral_v<T>) {
        return a.distance(b);
    } else {
        return std::sqrt(squaredDistance(a, b));
    }
}
