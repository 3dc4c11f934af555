#include "shape/meshes/triangle.h"

#include "numerics/elementtype.h"
#include "shape/curves/edge.h"
#include "shape/vertices/segment.h"

#include <cmath>
#include <utility>

namespace {

/// The coordinates of the plane in which a triangle with this normal is seen best.
template <class T>
std::pair<int, int> projectionAxes(const Vector<T>& normal)
{
    const int axis = normal.closestAxis();
    return {axis < 1 ? 1 : 0, axis < 2 ? 2 : 1};
}

/// Whole numbers have no tolerance: they are 0 or not.
template <class T>
bool isNegligible(T value)
{
    if constexpr (std::is_integral_v<T>) {
        return value == 0;
    } else {
        return std::abs(value) < Vector<T>::epsilon();
    }
}

/// Place of the minimum over [0, 1] of a parabola with the slope `2 x` at 0 and the curvature
/// `2 y`.
template <class T>
T clampedMinimum(T x, T y)
{
    if (x >= 0) {
        return 0;
    }
    return -x >= y ? T(1) : -x / y;
}

/// The squared distance from a point to V0 + s e0 + t e1, as a function of s and t.
template <class T>
struct SquaredDistance
{
    T a, b, c, g, h;

    /// The minimum over the side beyond which `s` and `t` lie.
    int minimise(T& s, T& t) const
    {
        const T det = a * c - b * b;
        s = b * h - c * g;
        t = b * g - a * h;
        if (s + t <= det) {
            if (s < 0) {
                return t < 0 ? beyondFirst(s, t) : beyondLeft(s, t);
            }
            if (t < 0) {
                return beyondBottom(s, t);
            }
            s /= det;
            t /= det;
            return 0;
        }
        if (s < 0) {
            return beyondThird(s, t);
        }
        return t < 0 ? beyondSecond(s, t) : beyondDiagonal(s, t);
    }

private:
    int beyondBottom(T& s, T& t) const
    {
        t = 0;
        s = clampedMinimum(g, a);
        return 5;
    }

    int beyondLeft(T& s, T& t) const
    {
        s = 0;
        t = clampedMinimum(h, c);
        return 3;
    }

    int beyondFirst(T& s, T& t) const
    {
        if (g < 0) {
            beyondBottom(s, t);
        } else {
            beyondLeft(s, t);
        }
        return 4;
    }

    int beyondThird(T& s, T& t) const
    {
        const T n = (c + h) - (b + g);
        if (n > 0) {
            s = alongDiagonal(n);
            t = 1 - s;
        } else {
            s = 0;
            t = c + h <= 0 ? T(1) : clampedMinimum(h, c);
        }
        return 2;
    }

    int beyondSecond(T& s, T& t) const
    {
        const T n = (a + g) - (b + h);
        if (n > 0) {
            t = alongDiagonal(n);
            s = 1 - t;
        } else {
            t = 0;
            s = a + g <= 0 ? T(1) : clampedMinimum(g, a);
        }
        return 6;
    }

    int beyondDiagonal(T& s, T& t) const
    {
        const T n = (c + h) - (b + g);
        s = n <= 0 ? T(0) : alongDiagonal(n);
        t = 1 - s;
        return 1;
    }

    T alongDiagonal(T n) const
    {
        const T m = a - 2 * b + c;
        return n >= m ? T(1) : n / m;
    }
};

/// The nearest point on the sides, for a triangle without an inside.
template <class T>
void closestOnSides(const Curve<T>& triangle, const Vector<T>& position, Vector<T>& q)
{
    Vector<T> candidate;
    for (int i = 0; i < 3; ++i) {
        const Vector<T>& from = triangle[i];
        const Vector<T>& to = triangle[(i + 1) % 3];
        pointOnSegment(from, to, placeOnLine(from, to, position), candidate);
        if (i == 0 || position.sdistance(candidate) < position.sdistance(q)) {
            q = candidate;
        }
    }
}

} // namespace

template <class T>
Triangle<T>::Triangle() = default;

template <class T>
Triangle<T>::Triangle(int space)
    : Curve<T>(space, 3, 0, 0, false)
{}

template <class T>
Triangle<T>::Triangle(const Vertices<T>& shape, int i, int j, int k)
{
    // The view shares the server without ever changing the shape; the server is not const-aware.
    this->setServer(const_cast<VertexServer<T>&>(*shape.getServer()));
    this->indices_ = {shape.getIndex(i), shape.getIndex(j), shape.getIndex(k)};
}

template <class T>
Triangle<T>::Triangle(const Triangle& other) = default;

template <class T>
Triangle<T>::~Triangle() = default;

template <class T>
Triangle<T>& Triangle<T>::operator=(const Triangle& other)
{
    this->assign(other);
    return *this;
}

template <class T>
Triangle<T>* Triangle<T>::clone() const
{
    return new Triangle(*this);
}

template <class T>
T Triangle<T>::area() const
{
    return static_cast<T>(0.5 * normal(false).norm());
}

template <class T>
Vector<T> Triangle<T>::normal(bool unit) const
{
    const Vector<T>& a = (*this)[0];
    Vector<T> result = ((*this)[1] - a).vectorProduct((*this)[2] - a);
    if (unit) {
        result.normalize();
    }
    return result;
}

template <class T>
int Triangle<T>::projectionContains(const Vector<T>& position, int c1, int c2) const
{
    Triangle part(position.getSize());
    part[0] = position;
    int sum = 0;
    bool onBorder = false;
    for (int i = 0; i < 3; ++i) {
        part[1] = (*this)[i];
        part[2] = (*this)[(i + 1) % 3];
        const int sign = part.projectedAreaSign(c1, c2);
        onBorder = onBorder || sign == 0;
        sum += sign;
    }
    if (onBorder) {
        return 2;
    }
    return sum == 3 || sum == -3 ? 1 : 0;
}

template <class T>
bool Triangle<T>::contains(const Vector<T>& position, const Vector<T>& normal) const
{
    const T height = ((*this)[0] - position).scalarProduct(normal);
    if (!isNegligible(height)) {
        return false;
    }
    const auto [c1, c2] = projectionAxes(normal);
    return projectionContains(position, c1, c2) != 0;
}

template <class T>
bool Triangle<T>::contains(const Vector<T>& position) const
{
    return contains(position, normal(false));
}

template <class T>
int Triangle<T>::intersects(const Edge<T>& edge, Vector<T>& q, const Vector<T>& normal) const
{
    const auto [c1, c2] = projectionAxes(normal);
    switch (edge.intersects(normal, (*this)[0].scalarProduct(normal), q)) {
    case 0:
        return 0;
    case 1:
        return projectionContains(q, c1, c2);
    default:
        return Curve<T>::intersects(edge, c1, c2) ? 2 : 0;
    }
}

template <class T>
int Triangle<T>::intersects(const Edge<T>& edge, Vector<T>& q) const
{
    return intersects(edge, q, normal(false));
}

template <class T>
int Triangle<T>::closestPoint([[maybe_unused]] const Vector<T>& position,
                              [[maybe_unused]] Vector<T>& q) const
{
    if constexpr (std::is_integral_v<T>) {
        raiseNotAvailable<T>("int Triangle<T>::closestPoint(...) const");
    } else {
        const Vector<T>& corner = (*this)[0];
        const Vector<T> e0 = (*this)[1] - corner;
        const Vector<T> e1 = (*this)[2] - corner;
        const Vector<T> w = corner - position;
        const SquaredDistance<T> distance = {e0.snorm(), e0.scalarProduct(e1), e1.snorm(),
                                             e0.scalarProduct(w), e1.scalarProduct(w)};
        T s;
        T t;
        const int region = distance.minimise(s, t);
        if (region == 0 && !(std::isfinite(s) && std::isfinite(t))) {
            closestOnSides(*this, position, q);
        } else {
            q = corner + e0 * s + e1 * t;
        }
        return region;
    }
}

template class Triangle<int>;
template class Triangle<float>;
template class Triangle<double>;
template class Triangle<long double>;
