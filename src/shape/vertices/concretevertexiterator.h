#pragma once

#include "numerics/vector.h"

/// A walk over the vertices of one shape; the base class walks over nothing.
///
/// Shapes derive their own walks. Code holds one through `VertexIterator` or `ConstVertexIterator`.
template <class T>
class ConcreteVertexIterator
{
public:
    ConcreteVertexIterator();
    virtual ~ConcreteVertexIterator();

    /// A copy on the heap, at the same place; the caller owns it.
    virtual ConcreteVertexIterator* clone() const;

    /// The vertex reached, null at the end.
    virtual Vector<T>* current();
    virtual const Vector<T>* current() const;

    /// Where the vertex stands in the shape; `Shape::operator[]` takes it.
    virtual const Vector<unsigned int>& locator() const;

    /// The slot of the vertex in the shape's server, -1 at the end.
    virtual int currentServerIndex() const;

    virtual void operator++(int);
    virtual void operator++();

    /// Goes back to the first vertex.
    virtual void rewind();

protected:
    Vector<T>* current_ = nullptr;
    Vector<unsigned int> locator_;
};

extern template class ConcreteVertexIterator<int>;
extern template class ConcreteVertexIterator<float>;
extern template class ConcreteVertexIterator<double>;
extern template class ConcreteVertexIterator<long double>;
