// Part of `Vertices`: searches and directions.

#include "shape/vertices/segment.h"
#include "shape/vertices/vertices.h"
#include "system/exception.h"

#include <cmath>

template <class T>
int Vertices<T>::findMax(int c) const
{
    int position = 0;
    for (int i = 1; i < getSize(); ++i) {
        if ((*this)[i][c] > (*this)[position][c]) {
            position = i;
        }
    }
    return position;
}

template <class T>
int Vertices<T>::findMin(int c) const
{
    int position = 0;
    for (int i = 1; i < getSize(); ++i) {
        if ((*this)[i][c] < (*this)[position][c]) {
            position = i;
        }
    }
    return position;
}

template <class T>
int Vertices<T>::closestPosition(const Vector<T>& vertex, T& distance) const
{
    int position = 0;
    for (int i = 0; i < getSize(); ++i) {
        const T candidate = squaredDistance(vertex, (*this)[i]);
        if (i == 0 || candidate < distance) {
            distance = candidate;
            position = i;
        }
    }
    return position;
}

template <class T>
void Vertices<T>::closestPoints(const Vertices& shape, int& i, int& j) const
{
    T smallest = 0;
    for (int k = 0; k < getSize() && shape.getSize() > 0; ++k) {
        T distance = 0;
        const int position = shape.closestPosition((*this)[k], distance);
        if (k == 0 || distance < smallest) {
            smallest = distance;
            i = k;
            j = position;
        }
    }
}

template <class T>
Vector<int> Vertices<T>::closestPointMap(const Vertices& shape) const
{
    Vector<int> map(getSize());
    for (int i = 0; i < getSize(); ++i) {
        T distance = 0;
        map[i] = shape.closestPosition((*this)[i], distance);
    }
    return map;
}

template <class T>
int Vertices<T>::findMatch(const Vertices& shape) const
{
    const int size = getSize();
    if (size != shape.getSize()) {
        raise<SizeError>("int Vertices<T>::findMatch(const Vertices&) const", "Size mismatch");
    }
    int best = 0;
    Widened<T> largest = 0;
    for (int k = 0; k < size; ++k) {
        Widened<T> score = 0;
        for (int i = 0; i < size; ++i) {
            score += widenedProduct((*this)[i], shape[i >= k ? i - k : i - k + size]);
        }
        if (k == 0 || score > largest) {
            largest = score;
            best = k;
        }
    }
    return best;
}

template <class T>
void Vertices<T>::match(const Vertices& shape)
{
    setOrigin(findMatch(shape));
}

template <class T>
Vector<T> Vertices<T>::meanDirection([[maybe_unused]] const Vector<T>& centre,
                                     [[maybe_unused]] bool weighted) const
{
    if (this->getSpace() != 2) {
        raise<ProgramError>("Vector<T> Vertices<T>::meanDirectionVector(...) const",
                            "Space dimension is not 2");
    }
    if constexpr (std::is_integral_v<T>) {
        return Vector<T>();
    } else {
        T sines = 0;
        T cosines = 0;
        T weights = 0;
        for (int i = 0; i < getSize(); ++i) {
            const Vector<T> offset = (*this)[i] - centre;
            const T distance = offset.norm();
            if (distance == 0) {
                continue;
            }
            const T angle = std::atan2(offset[1] / distance, offset[0] / distance);
            const T weight = weighted ? distance : T(1);
            sines += weight * std::sin(2 * angle);
            cosines += weight * std::cos(2 * angle);
            weights += weight;
        }
        const T x = weights == 0 ? T(0) : cosines / weights;
        const T y = weights == 0 ? T(0) : sines / weights;
        const T angle = T(0.5) * std::atan2(y, x);
        const T length = std::sqrt(x * x + y * y);
        Vector<T> direction(2);
        direction[0] = length * std::cos(angle);
        direction[1] = length * std::sin(angle);
        return direction;
    }
}

template <class T>
Vector<T> Vertices<T>::meanDirection(bool weighted) const
{
    return meanDirection(this->cog(), weighted);
}

#define INSTANTIATE_VERTICES_SEARCH(T)                                                             \
    template int Vertices<T>::findMax(int) const;                                                  \
    template int Vertices<T>::findMin(int) const;                                                  \
    template int Vertices<T>::closestPosition(const Vector<T>&, T&) const;                         \
    template void Vertices<T>::closestPoints(const Vertices<T>&, int&, int&) const;                \
    template Vector<int> Vertices<T>::closestPointMap(const Vertices<T>&) const;                   \
    template int Vertices<T>::findMatch(const Vertices<T>&) const;                                 \
    template void Vertices<T>::match(const Vertices<T>&);                                          \
    template Vector<T> Vertices<T>::meanDirection(const Vector<T>&, bool) const;                   \
    template Vector<T> Vertices<T>::meanDirection(bool) const;

INSTANTIATE_VERTICES_SEARCH(int)
INSTANTIATE_VERTICES_SEARCH(float)
INSTANTIATE_VERTICES_SEARCH(double)
INSTANTIATE_VERTICES_SEARCH(long double)
