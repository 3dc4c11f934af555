#include "shape/registration/shapetransform.h"

template <class T>
ShapeTransform<T>::ShapeTransform() = default;

template <class T>
ShapeTransform<T>::~ShapeTransform() = default;

template <class T>
void ShapeTransform<T>::apply(Shape<T>& shape)
{
    for (VertexIterator<T> walk = shape.vertexIterator(); walk.current() != nullptr; walk++) {
        apply(*walk.current());
    }
    if (shape.hasExtensions()) {
        apply(shape.getExtensions());
    }
}

template <class T>
void ShapeTransform<T>::apply(ShapeSet<T>& set)
{
    this->notifyStarted("");
    for (int i = 0; i < set.getSize(); ++i) {
        if (set[i] != nullptr) {
            apply(*set[i]);
        }
        this->notifyProgressed(i, set.getSize());
    }
    this->notifyFinished("");
}

template <class T>
void ShapeTransform<T>::apply(ShapeSetGroup<T>& group)
{
    for (int i = 0; i < group.getNumShapeSets(); ++i) {
        apply(*group[i]);
    }
}

template <class T>
bool ShapeTransform<T>::isValidAt(const Vector<T>&) const
{
    return true;
}

template <class T>
int ShapeTransform<T>::jacobianErrors(const Shape<T>& shape)
{
    int errors = 0;
    for (ConstVertexIterator<T> walk = shape.vertexIterator(); walk.current() != nullptr; walk++) {
        errors += isValidAt(*walk.current()) ? 0 : 1;
    }
    return shape.hasExtensions() ? errors + jacobianErrors(shape.getExtensions()) : errors;
}

template <class T>
int ShapeTransform<T>::jacobianErrors(const ShapeSet<T>& set)
{
    int errors = 0;
    this->notifyStarted("");
    for (int i = 0; i < set.getSize(); ++i) {
        if (set[i] != nullptr) {
            errors += jacobianErrors(static_cast<const Shape<T>&>(*set[i]));
        }
        this->notifyProgressed(i, set.getSize());
    }
    this->notifyFinished("");
    return errors;
}

template class ShapeTransform<float>;
template class ShapeTransform<double>;
template class ShapeTransform<long double>;
