#include "shape/registration/shapesetgroup.h"

#include <algorithm>

template <class T>
ShapeSetGroup<T>::ShapeSetGroup() = default;

template <class T>
void ShapeSetGroup<T>::addShapeSet(ShapeSet<T>* set)
{
    sets_.push_back(set);
}

template <class T>
void ShapeSetGroup<T>::removeShapeSet(const ShapeSet<T>* set)
{
    sets_.erase(std::remove(sets_.begin(), sets_.end(), set), sets_.end());
}

template <class T>
ShapeSet<T> ShapeSetGroup<T>::average() const
{
    ShapeSet<T> result;
    for (int i = 0; !sets_.empty() && i < sets_.front()->getSize(); ++i) {
        ShapeSet<T> shapes;
        for (const ShapeSet<T>* set : sets_) {
            if (i < set->getSize()) {
                shapes.addShape((*set)[i], set->isReference(i));
            }
        }
        try {
            result.addShape(shapes.average(), shapes.onlyReference());
        } catch (...) {
            result.clear();
            throw;
        }
    }
    return result;
}

template class ShapeSetGroup<int>;
template class ShapeSetGroup<float>;
template class ShapeSetGroup<double>;
template class ShapeSetGroup<long double>;
