#pragma once

#include "shape/vertices/shapeset.h"

#include <vector>

/// Several shape sets side by side, not owned.
template <class T>
class ShapeSetGroup
{
public:
    ShapeSetGroup();

    void addShapeSet(ShapeSet<T>* set);

    /// Removes all entries of the set.
    void removeShapeSet(const ShapeSet<T>* set);

    /// An entry; unchecked.
    ShapeSet<T>* operator[](int i) const { return sets_[static_cast<std::size_t>(i)]; }

    int getNumShapeSets() const { return static_cast<int>(sets_.size()); }

    /// A set with, for each entry of the first set, the average of the shapes there in all sets, or
    /// null; a reference where all of them are. The caller owns the shapes. Errors as
    /// `ShapeSet::average`.
    ShapeSet<T> average() const;

private:
    std::vector<ShapeSet<T>*> sets_;
};

extern template class ShapeSetGroup<int>;
extern template class ShapeSetGroup<float>;
extern template class ShapeSetGroup<double>;
extern template class ShapeSetGroup<long double>;
