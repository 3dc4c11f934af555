#pragma once

#include "numerics/matrix.h"
#include "numerics/vector.h"

class Stack;

/// Maps from the pixel coordinates of each slice to coordinates in space.
///
/// The registration of a slice is relative to the slice before it, so rotations and shifts
/// accumulate along the stack. The centre of the first image goes to the origin, and y turns
/// upward. The maps are those of the last `computeMaps()`.
template <class T>
class StackReconstruction
{
public:
    /// Binds to a stack, which must outlive this object, and computes the maps.
    void setStack(const Stack& newStack);

    /// Without a stack: `UsageError`. The centre of a slice without an image is its origin.
    void computeMaps();

    /// One row of 6 coefficients (a, b, e, d, f, g) per slice: (x, y) goes to
    /// (a x + b y + e, d x + f y + g).
    const Matrix<T>& getMaps() const { return maps; }

    /// The z of each slice.
    const Vector<T>& getZMap() const { return zMap; }

private:
    const Stack* stack = nullptr;
    Matrix<T> maps;
    Vector<T> zMap;
};

extern template class StackReconstruction<float>;
extern template class StackReconstruction<double>;
extern template class StackReconstruction<long double>;
