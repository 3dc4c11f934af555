#pragma once

#include "shape/vertices/concretevertexiterator.h"

#include <memory>

/// Handle of a walk over the vertices of a shape:
///
///     VertexIterator<float> walk = shape.vertexIterator();
///     for (; walk.current() != nullptr; walk++) {
///         *walk.current() *= 2;
///     }
///
/// A copy walks on by itself from the place reached. The shape must outlive the walk, and its
/// vertices must not be added or removed during it.
template <class T>
class VertexIterator
{
public:
    /// Takes ownership of `iterator`.
    explicit VertexIterator(ConcreteVertexIterator<T>* iterator)
        : iterator_(iterator)
    {}

    VertexIterator(const VertexIterator& other)
        : iterator_(other.iterator_->clone())
    {}

    VertexIterator& operator=(const VertexIterator& other)
    {
        iterator_.reset(other.iterator_->clone());
        return *this;
    }

    /// The vertex reached, null at the end.
    Vector<T>* current() const { return iterator_->current(); }

    /// Where the vertex stands in the shape.
    const Vector<unsigned int>& locator() const { return iterator_->locator(); }

    /// The slot of the vertex in the shape's server, -1 at the end.
    int currentServerIndex() const { return iterator_->currentServerIndex(); }

    void operator++(int) { ++*iterator_; }

    void operator++() { ++*iterator_; }

    /// Goes back to the first vertex.
    void rewind() { iterator_->rewind(); }

private:
    std::unique_ptr<ConcreteVertexIterator<T>> iterator_;
};
