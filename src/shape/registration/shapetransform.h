#pragma once

#include "shape/registration/shapesetgroup.h"
#include "system/progresssubject.h"

/// A motion of points that moves whole shapes, sets and groups of sets in place.
///
/// Vertices are moved where they are stored, so shapes that share them move too; a vertex that two
/// shapes of a set share moves twice.
template <class T>
class ShapeTransform : public ProgressSubject
{
public:
    ShapeTransform();
    ~ShapeTransform() override;

    /// Moves one point.
    virtual void apply(Vector<T>& x) const = 0;

    /// Moves every vertex, those of the extensions too.
    virtual void apply(Shape<T>& shape);

    /// Moves every shape; reports progress after each entry.
    virtual void apply(ShapeSet<T>& set);
    virtual void apply(ShapeSetGroup<T>& group);

    /// Whether the transform keeps the orientation of space around this point, that is, does not
    /// fold it.
    virtual bool isValidAt(const Vector<T>& x) const;

    /// Number of vertices at which the transform is not valid, those of the extensions too. The
    /// form for sets reports progress as `apply`.
    int jacobianErrors(const Shape<T>& shape);
    int jacobianErrors(const ShapeSet<T>& set);
};

extern template class ShapeTransform<float>;
extern template class ShapeTransform<double>;
extern template class ShapeTransform<long double>;
