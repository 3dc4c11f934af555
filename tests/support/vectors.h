#pragma once

#include "numerics/matrix.h"
#include "numerics/vector.h"

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

template <class T>
Vector<T> randomVector(int size, std::mt19937& engine)
{
    Vector<T> result(size);
    for (int i = 0; i < size; ++i) {
        result[i] = randomUnit<T>(engine);
    }
    return result;
}

template <class T>
Matrix<T> randomMatrix(int rows, int columns, std::mt19937& engine)
{
    Matrix<T> result(rows, columns);
    for (int i = 0; i < rows; ++i) {
        result[i] = randomVector<T>(columns, engine);
    }
    return result;
}
