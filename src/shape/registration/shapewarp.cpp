#include "shape/registration/shapewarp.h"

#include "system/exception.h"

template <class T>
ShapeWarp<T>::ShapeWarp() = default;

template <class T>
ShapeWarp<T>::~ShapeWarp() = default;

template <class T>
typename ShapeWarp<T>::Displacements
ShapeWarp<T>::displacements(const Shape<T>& source, const Shape<T>& target, const char* where)
{
    if (source.getSpace() != target.getSpace()) {
        raise<SizeError>(where, "Source and target differ in dimension");
    }
    Displacements result;
    ConstVertexIterator<T> from = source.vertexIterator();
    ConstVertexIterator<T> to = target.vertexIterator();
    for (; from.current() != nullptr && to.current() != nullptr; from++, to++) {
        result.points.push_back(*from.current());
        result.steps.push_back(*to.current() - *from.current());
    }
    if (from.current() != nullptr || to.current() != nullptr) {
        raise<SizeError>(where, "Source and target differ in size");
    }
    if (result.points.empty()) {
        raise<SizeError>(where, "There are no vertices");
    }
    return result;
}

template <class T>
void ShapeWarp<T>::requirePoint(const Vector<T>& x, int space, const char* where)
{
    if (space == 0) {
        raise<ProgramError>(where, "The warp has not been fitted");
    }
    if (x.getSize() != space) {
        raise<SizeError>(where, "Dimension mismatch");
    }
}

template class ShapeWarp<float>;
template class ShapeWarp<double>;
template class ShapeWarp<long double>;
