#pragma once

#include "shape/curves/curve.h"
#include "support/vectors.h"

#include <cmath>
#include <initializer_list>
#include <random>
#include <vector>

/// A plane curve through the given points.
template <class T>
Curve<T> curveOf(std::initializer_list<std::initializer_list<T>> points, bool open)
{
    const int space = points.size() == 0 ? 2 : static_cast<int>(points.begin()->size());
    Curve<T> curve(space, 0, 0, 0, open);
    for (const auto& point : points) {
        curve.append(vectorOf<T>(point));
    }
    return curve;
}

/// Closed, counter-clockwise with y up, around the origin, beginning at (radius, 0).
template <class T>
Curve<T> regularPolygon(int size, T radius)
{
    Curve<T> polygon(2, size, 0, 0, false);
    for (int i = 0; i < size; ++i) {
        const double angle = 2 * M_PI * i / size;
        polygon[i][0] = static_cast<T>(static_cast<double>(radius) * std::cos(angle));
        polygon[i][1] = static_cast<T>(static_cast<double>(radius) * std::sin(angle));
    }
    return polygon;
}

/// Closed and simple: seen from the origin, the vertices stand in ascending directions, at
/// distances between 0.3 and 1.7 times `radius`.
template <class T>
Curve<T> randomStar(int size, T radius, std::mt19937& engine)
{
    Curve<T> star(2, size, 0, 0, false);
    for (int i = 0; i < size; ++i) {
        const double angle = 2 * M_PI * (i + 0.4 * randomUnit<double>(engine)) / size;
        const double distance =
            static_cast<double>(radius) * (1 + 0.7 * randomUnit<double>(engine));
        star[i][0] = static_cast<T>(distance * std::cos(angle));
        star[i][1] = static_cast<T>(distance * std::sin(angle));
    }
    return star;
}

/// Vertices anywhere in the square from -reach to reach.
template <class T>
Curve<T> randomCurve(int size, T reach, bool open, std::mt19937& engine, int space = 2)
{
    Curve<T> curve(space, size, 0, 0, open);
    for (int i = 0; i < size; ++i) {
        for (int c = 0; c < space; ++c) {
            curve[i][c] = static_cast<T>(static_cast<double>(reach) * randomUnit<double>(engine));
        }
    }
    return curve;
}

/// The coordinates in order, for whole comparisons.
template <class T>
std::vector<T> coordinatesOf(const Shape<T>& shape)
{
    return shape.toVector().toStlVector();
}
