#pragma once

#include "numerics/matrix.h"
#include "numerics/vector.h"

#include <cmath>
#include <initializer_list>
#include <random>
#include <vector>

template <class T>
Vector<T> vectorOf(std::initializer_list<T> elements)
{
    return Vector<T>(std::vector<T>(elements));
}

template <class T>
Matrix<T> matrixOf(std::initializer_list<std::initializer_list<T>> rows)
{
    Matrix<T> result(static_cast<int>(rows.size()),
                     rows.size() == 0 ? 0 : static_cast<int>(rows.begin()->size()));
    int i = 0;
    for (const auto& row : rows) {
        result.setRow(i++, vectorOf<T>(row));
    }
    return result;
}

/// A number in [-1, 1), the same on every machine.
template <class T>
T randomUnit(std::mt19937& engine)
{
    return static_cast<T>((static_cast<double>(engine()) - 2147483648.0) / 2147483648.0);
}

/// A number from `first` to `last`, the same on every machine.
inline int randomInt(int first, int last, std::mt19937& random)
{
    return first + static_cast<int>(random() % static_cast<unsigned int>(last - first + 1));
}

/// Element i is `element(i)`.
template <class T, class Element>
Vector<T> vectorFrom(int size, Element element)
{
    Vector<T> result(size);
    for (int i = 0; i < size; ++i) {
        result[i] = static_cast<T>(element(i));
    }
    return result;
}

/// Element (i, j) is `element(i, j)`; the calls go row by row.
template <class T, class Element>
Matrix<T> matrixFrom(int rows, int columns, Element element)
{
    Matrix<T> result(rows, columns);
    for (int i = 0; i < rows; ++i) {
        result[i] = vectorFrom<T>(columns, [&](int j) { return element(i, j); });
    }
    return result;
}

template <class T>
Vector<T> randomVector(int size, std::mt19937& engine)
{
    return vectorFrom<T>(size, [&](int) { return randomUnit<T>(engine); });
}

template <class T>
Matrix<T> randomMatrix(int rows, int columns, std::mt19937& engine)
{
    return matrixFrom<T>(rows, columns, [&](int, int) { return randomUnit<T>(engine); });
}

template <class T>
Matrix<T> identityMatrix(int size)
{
    return matrixFrom<T>(size, size, [](int i, int j) { return i == j ? 1 : 0; });
}

/// The Frobenius norm.
template <class T>
T normOf(const Matrix<T>& matrix)
{
    return std::sqrt(matrix.snorm());
}
