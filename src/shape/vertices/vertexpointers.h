#pragma once

#include "shape/vertices/shape.h"

#include <vector>

/// The vertices of a shape in the order of its walk, for the loops that go over them many times.
template <class T>
std::vector<const Vector<T>*> vertexPointers(const Shape<T>& shape)
{
    std::vector<const Vector<T>*> vertices;
    vertices.reserve(static_cast<std::size_t>(shape.getSize()));
    for (ConstVertexIterator<T> walk = shape.vertexIterator(); walk.current() != nullptr; walk++) {
        vertices.push_back(walk.current());
    }
    return vertices;
}
