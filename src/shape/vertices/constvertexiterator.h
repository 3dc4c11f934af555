#pragma once

#include "shape/vertices/concretevertexiterator.h"

#include <memory>

/// The walk of `VertexIterator` over a shape that it may not change.
template <class T>
class ConstVertexIterator
{
public:
    /// Takes ownership of `iterator`.
    explicit ConstVertexIterator(ConcreteVertexIterator<T>* iterator)
        : iterator_(iterator)
    {}

    ConstVertexIterator(const ConstVertexIterator& other)
        : iterator_(other.iterator_->clone())
    {}

    ConstVertexIterator& operator=(const ConstVertexIterator& other)
    {
        iterator_.reset(other.iterator_->clone());
        return *this;
    }

    /// The vertex reached, null at the end.
    const Vector<T>* current() const { return iterator_->current(); }

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
