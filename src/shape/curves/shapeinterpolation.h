#pragma once

#include "shape/vertices/shape.h"

/// Blends two shapes of equal size, vertex by vertex.
template <class T>
class ShapeInterpolation
{
public:
    ShapeInterpolation();

    /// The shapes must live until the last `apply`.
    void setSourceShape(const Shape<T>& shape);
    void setTargetShape(const Shape<T>& shape);

    /// Makes `out` a detached shape that lies `weight` of the way from the source (0) to the target
    /// (1). Raises `ProgramError` while a shape is missing, `UsageError` for a weight beyond 0 and
    /// 1, and the standard bad cast error where `out` can't be assigned the shape.
    void apply(T weight, Shape<T>& out) const;

private:
    const Shape<T>* source_ = nullptr;
    const Shape<T>* target_ = nullptr;
};

extern template class ShapeInterpolation<int>;
extern template class ShapeInterpolation<float>;
extern template class ShapeInterpolation<double>;
extern template class ShapeInterpolation<long double>;
