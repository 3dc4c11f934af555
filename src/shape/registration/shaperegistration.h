#pragma once

#include "shape/registration/shapetransform.h"

/// A transform that is fitted to two shapes of corresponding vertices.
template <class T>
class ShapeRegistration : public ShapeTransform<T>
{
public:
    /// Fits the transform that brings `source` to `target`; the vertices at equal places of the two
    /// walks correspond.
    virtual void fit(const Shape<T>& source, const Shape<T>& target) = 0;
};
