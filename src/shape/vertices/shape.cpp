#include "shape/vertices/shape.h"

#include "numerics/matrix.h"
#include "shape/vertices/boundingbox.h"
#include "shape/vertices/shapeset.h"
#include "system/exception.h"

#include <algorithm>

namespace {

template <class T>
void requireCompatible(const Shape<T>& a, const Shape<T>& b)
{
    if (a.getShapeType() != b.getShapeType() || a.getSpace() != b.getSpace() ||
        a.getSize() != b.getSize()) {
        raise<UsageError>("void Shape<T>::operator+=(const Shape&)",
                          "Shapes are not compatible for addition");
    }
}

} // namespace

template <class T>
Shape<T>::Shape() = default;

template <class T>
Shape<T>::Shape(int space, int size, int capacity, int growth)
    : VertexClient<T>(space, size, capacity, growth)
{}

template <class T>
Shape<T>::Shape(const Shape& other)
    : VertexClient<T>(other)
{}

template <class T>
Shape<T>::~Shape() = default;

template <class T>
Shape<T>& Shape<T>::operator=(const Shape& other)
{
    this->assign(other);
    return *this;
}

template <class T>
int Shape<T>::getSpace() const
{
    return this->server_ == nullptr ? 0 : this->server_->getSpace();
}

template <class T>
void Shape<T>::operator+=(const Shape& shape)
{
    requireCompatible(*this, shape);
    ConstVertexIterator<T> other = shape.vertexIterator();
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++, other++) {
        *walk.current() += *other.current();
    }
}

template <class T>
void Shape<T>::operator-=(const Shape& shape)
{
    requireCompatible(*this, shape);
    ConstVertexIterator<T> other = shape.vertexIterator();
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++, other++) {
        *walk.current() -= *other.current();
    }
}

template <class T>
void Shape<T>::print(const std::string& title, std::ostream& stream) const
{
    stream << title << "\n";
    VertexClient<T>::print("Shape: " + name_, stream);
}

template <class T>
VertexIterator<T> Shape<T>::vertexIterator()
{
    return VertexIterator<T>(new ConcreteVertexIterator<T>());
}

template <class T>
ConstVertexIterator<T> Shape<T>::vertexIterator() const
{
    return ConstVertexIterator<T>(new ConcreteVertexIterator<T>());
}

template <class T>
std::unique_ptr<ConcreteEdgeIterator<T>> Shape<T>::edgeIterator()
{
    return std::make_unique<ConcreteEdgeIterator<T>>();
}

template <class T>
std::unique_ptr<ConcreteEdgeIterator<T>> Shape<T>::edgeIterator() const
{
    return std::make_unique<ConcreteEdgeIterator<T>>();
}

template <class T>
bool Shape<T>::hasExtensions() const
{
    return extensions_ != nullptr && extensions_->getSize() > 0;
}

template <class T>
ShapeSet<T>& Shape<T>::getExtensions()
{
    if (extensions_ == nullptr) {
        extensions_ = std::make_unique<ShapeSet<T>>();
    }
    return *extensions_;
}

template <class T>
const ShapeSet<T>& Shape<T>::getExtensions() const
{
    return const_cast<Shape*>(this)->getExtensions();
}

template <class T>
void Shape<T>::operator*=(T factor)
{
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() *= factor;
    }
}

template <class T>
void Shape<T>::operator/=(T divisor)
{
    if (std::is_integral_v<T> && divisor == 0) {
        raise<MathError>("void Shape<T>::operator/=(const T)", "Division by zero");
    }
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() /= divisor;
    }
    for (int i = 0; hasExtensions() && i < extensions_->getSize(); ++i) {
        if ((*extensions_)[i] != nullptr) {
            *(*extensions_)[i] /= divisor;
        }
    }
}

template <class T>
void Shape<T>::translate(const Vector<T>& offset)
{
    // The offset may be a vertex of this shape.
    const Vector<T> step(offset);
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() += step;
    }
}

template <class T>
void Shape<T>::scale(const Vector<T>& factors)
{
    if (factors.getSize() != getSpace()) {
        raise<SizeError>("void Shape<T>::scale(const Vector<T>&)", "Incorrect number of scales");
    }
    const Vector<T> constantFactors(factors);
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() *= constantFactors;
    }
}

template <class T>
void Shape<T>::scale(const T& factor)
{
    Vector<T> factors(getSpace());
    factors.fill(factor);
    scale(factors);
}

template <class T>
void Shape<T>::center()
{
    translate(-cog());
}

template <class T>
void Shape<T>::multiply(const Matrix<T>& matrix)
{
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() = matrix * *walk.current();
    }
}

template <class T>
Vector<T> Shape<T>::cog() const
{
    ConstVertexIterator<T> walk = vertexIterator();
    if (walk.current() == nullptr) {
        raise<SizeError>("Vector<T> Shape<T>::cog() const", "This shape contains no vertex");
    }
    Vector<T> centre(getSpace());
    centre.setZeros();
    for (; walk.current() != nullptr; walk++) {
        centre += *walk.current();
    }
    centre /= static_cast<T>(getSize());
    return centre;
}

template <class T>
Vector<T> Shape<T>::toVector() const
{
    Vector<T> coordinates(getSize() * getSpace());
    coordinates.setZeros();
    int position = 0;
    for (ConstVertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        coordinates.paste(position, *walk.current());
        position += getSpace();
    }
    return coordinates;
}

template <class T>
void Shape<T>::fromVector(const Vector<T>& coordinates)
{
    if (coordinates.getSize() != getSize() * getSpace()) {
        raise<UsageError>("void Shape<T>::fromVector(const Vector<T>&)",
                          "Size mismatch between this shape and the argument vector");
    }
    int position = 0;
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        Vector<T>& vertex = *walk.current();
        vertex.setSize(getSpace());
        std::copy_n(coordinates.data() + position, getSpace(), vertex.data());
        position += getSpace();
    }
}

template <class T>
void Shape<T>::stats(T& mean, T& max) const
{
    T sum = 0;
    T largest = 0;
    for (ConstVertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        const T norm = walk.current()->norm();
        sum += norm;
        largest = std::max(largest, norm);
    }
    mean = getSize() > 0 ? sum / static_cast<T>(getSize()) : T(0);
    max = largest;
}

template <class T>
BoundingBox<T> Shape<T>::boundingBox() const
{
    ConstVertexIterator<T> walk = vertexIterator();
    if (walk.current() == nullptr) {
        Vector<T> zero(getSpace());
        zero.setZeros();
        return BoundingBox<T>(zero, zero);
    }
    Vector<T> smallest(*walk.current());
    Vector<T> largest(*walk.current());
    for (walk++; walk.current() != nullptr; walk++) {
        const Vector<T>& vertex = *walk.current();
        for (int i = 0; i < std::min(smallest.getSize(), vertex.getSize()); ++i) {
            smallest[i] = std::min(smallest[i], vertex[i]);
            largest[i] = std::max(largest[i], vertex[i]);
        }
    }
    return BoundingBox<T>(smallest, largest);
}

template class Shape<int>;
template class Shape<float>;
template class Shape<double>;
template class Shape<long double>;
