// Part of `Shape`: distances and nearest neighbours.

#include "numerics/elementtype.h"
#include "shape/vertices/shape.h"
#include "shape/vertices/shapeset.h"
#include "shape/vertices/vertexdistance.h"
#include "shape/vertices/vertexpointers.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

template <class T>
std::vector<Vector<unsigned int>> vertexLocators(const Shape<T>& shape)
{
    std::vector<Vector<unsigned int>> locators;
    locators.reserve(static_cast<std::size_t>(shape.getSize()));
    for (ConstVertexIterator<T> walk = shape.vertexIterator(); walk.current() != nullptr; walk++) {
        locators.push_back(walk.locator());
    }
    return locators;
}

template <class T>
const Vector<T>* firstNearest(const std::vector<const Vector<T>*>& vertices,
                              const Vector<T>& position)
{
    const Vector<T>* nearest = nullptr;
    T smallest = 0;
    for (const Vector<T>* vertex : vertices) {
        const T distance = squaredDistance(*vertex, position);
        if (nearest == nullptr || distance < smallest) {
            nearest = vertex;
            smallest = distance;
        }
    }
    return nearest;
}

} // namespace

template <class T>
const Vector<T>* Shape<T>::nearestVertex(const Vector<T>& position) const
{
    return firstNearest(vertexPointers(*this), position);
}

template <class T>
Vector<T>* Shape<T>::nearestVertex(const Vector<T>& position)
{
    return const_cast<Vector<T>*>(std::as_const(*this).nearestVertex(position));
}

template <class T>
Vector<T> Shape<T>::squareDistances(const Shape& shape) const
{
    const char* where = "Vector<T> Shape<T>::squareDistances(const Shape<T>&) const";
    if (this == &shape) {
        raise<ValueError>(where, "Argument shape is equal to this");
    }
    if (getSize() != shape.getSize()) {
        raise<SizeError>(where, "The two shapes have distinct sizes");
    }
    const std::vector<const Vector<T>*> vertices = vertexPointers(*this);
    const std::vector<const Vector<T>*> others = vertexPointers(shape);
    Vector<T> distances(static_cast<int>(std::min(vertices.size(), others.size())));
    for (int i = 0; i < distances.getSize(); ++i) {
        const auto place = static_cast<std::size_t>(i);
        distances[i] = squaredDistance(*vertices[place], *others[place]);
    }
    return distances;
}

template <class T>
T Shape<T>::rmsDistance(const Shape& shape) const
{
    return static_cast<T>(std::sqrt(squareDistances(shape).mean()));
}

template <class T>
Vector<T> Shape<T>::squareNearestNeighborDistances() const
{
    const std::vector<const Vector<T>*> vertices = vertexPointers(*this);
    Vector<T> distances(static_cast<int>(vertices.size()));
    distances.fill(vertices.size() == 1 ? T(0) : std::numeric_limits<T>::max());
    for (int i = 0; i < distances.getSize(); ++i) {
        for (int j = 0; j < i; ++j) {
            const T distance = squaredDistance(*vertices[static_cast<std::size_t>(i)],
                                               *vertices[static_cast<std::size_t>(j)]);
            distances[i] = std::min(distances[i], distance);
            distances[j] = std::min(distances[j], distance);
        }
    }
    return distances;
}

template <class T>
Vector<T> Shape<T>::squareNearestNeighborDistances(const Shape& shape) const
{
    if (this == &shape) {
        raise<ValueError>(
            "Vector<T> Shape<T>::squareNearestNeighborDistances(const Shape<T>&) const",
            "Argument s is equal to this");
    }
    const std::vector<const Vector<T>*> others = vertexPointers(shape);
    Vector<T> distances(getSize());
    distances.fill(std::numeric_limits<T>::max());
    int i = 0;
    for (const Vector<T>* vertex : vertexPointers(*this)) {
        const Vector<T>* nearest = firstNearest(others, *vertex);
        if (nearest != nullptr) {
            distances[i] = squaredDistance(*vertex, *nearest);
        }
        ++i;
    }
    return distances;
}

template <class T>
Vector<T> Shape<T>::nearestNeighborDistances([[maybe_unused]] const Shape& shape) const
{
    if constexpr (std::is_integral_v<T>) {
        raiseNotAvailable<T>("Vector<T> Shape<T>::nearestNeighborDistances(const Shape<T>&) const");
    } else {
        Vector<T> distances = squareNearestNeighborDistances(shape);
        for (int i = 0; i < distances.getSize(); ++i) {
            distances[i] = std::sqrt(distances[i]);
        }
        return distances;
    }
}

template <class T>
std::vector<Vector<unsigned int>> Shape<T>::nearestNeighbors() const
{
    using Start = std::conditional_t<std::is_integral_v<T>, T, float>;
    const std::vector<const Vector<T>*> vertices = vertexPointers(*this);
    const std::vector<Vector<unsigned int>> locators = vertexLocators(*this);
    std::vector<Vector<unsigned int>> neighbours(vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        T smallest = static_cast<T>(std::numeric_limits<Start>::max());
        std::size_t nearest = vertices.size();
        for (std::size_t j = 0; j < vertices.size(); ++j) {
            const T distance = squaredDistance(*vertices[i], *vertices[j]);
            if (distance > 0 && distance < smallest) {
                smallest = distance;
                nearest = j;
            }
        }
        if (nearest < vertices.size()) {
            neighbours[i] = locators[nearest];
        }
    }
    return neighbours;
}

template <class T>
std::vector<Vector<unsigned int>> Shape<T>::nearestNeighbors(const Shape& shape) const
{
    const std::vector<const Vector<T>*> others = vertexPointers(shape);
    const std::vector<Vector<unsigned int>> locators = vertexLocators(shape);
    std::vector<Vector<unsigned int>> neighbours;
    for (const Vector<T>* vertex : vertexPointers(*this)) {
        const Vector<T>* nearest = firstNearest(others, *vertex);
        const auto place = std::find(others.begin(), others.end(), nearest) - others.begin();
        neighbours.push_back(nearest == nullptr ? Vector<unsigned int>()
                                                : locators[static_cast<std::size_t>(place)]);
    }
    return neighbours;
}

#define INSTANTIATE_SHAPE_DISTANCES(T)                                                             \
    template Vector<T>* Shape<T>::nearestVertex(const Vector<T>&);                                 \
    template const Vector<T>* Shape<T>::nearestVertex(const Vector<T>&) const;                     \
    template Vector<T> Shape<T>::squareDistances(const Shape<T>&) const;                           \
    template T Shape<T>::rmsDistance(const Shape<T>&) const;                                       \
    template Vector<T> Shape<T>::squareNearestNeighborDistances() const;                           \
    template Vector<T> Shape<T>::squareNearestNeighborDistances(const Shape<T>&) const;            \
    template Vector<T> Shape<T>::nearestNeighborDistances(const Shape<T>&) const;                  \
    template std::vector<Vector<unsigned int>> Shape<T>::nearestNeighbors() const;                 \
    template std::vector<Vector<unsigned int>> Shape<T>::nearestNeighbors(const Shape<T>&) const;

INSTANTIATE_SHAPE_DISTANCES(int)
INSTANTIATE_SHAPE_DISTANCES(float)
INSTANTIATE_SHAPE_DISTANCES(double)
INSTANTIATE_SHAPE_DISTANCES(long double)
