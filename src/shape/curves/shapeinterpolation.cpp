#include "shape/curves/shapeinterpolation.h"

#include "system/exception.h"

template <class T>
ShapeInterpolation<T>::ShapeInterpolation() = default;

template <class T>
void ShapeInterpolation<T>::setSourceShape(const Shape<T>& shape)
{
    source_ = &shape;
}

template <class T>
void ShapeInterpolation<T>::setTargetShape(const Shape<T>& shape)
{
    target_ = &shape;
}

template <class T>
void ShapeInterpolation<T>::apply(T weight, Shape<T>& out) const
{
    const char* where = "void ShapeInterpolation<T>::apply(const T, Shape<T>&)";
    if (source_ == nullptr || target_ == nullptr) {
        raise<ProgramError>(where, "Missing source and/or target shape");
    }
    if (!(weight >= 0 && weight <= 1)) {
        raise<UsageError>(where, "Interpolation step out of [0-1] range");
    }
    out.assign(weight == 1 ? *target_ : *source_);
    out.detach();
    if (weight == 0 || weight == 1) {
        return;
    }
    ConstVertexIterator<T> source = source_->vertexIterator();
    ConstVertexIterator<T> target = target_->vertexIterator();
    VertexIterator<T> walk = out.vertexIterator();
    for (; walk.current() != nullptr && target.current() != nullptr; walk++, source++, target++) {
        *walk.current() += (*target.current() - *source.current()) * weight;
    }
}

template class ShapeInterpolation<int>;
template class ShapeInterpolation<float>;
template class ShapeInterpolation<double>;
template class ShapeInterpolation<long double>;
