#pragma once

#include "numerics/vector.h"

#include <vector>

/// How the shapes of two sets of a `Fusion` correspond. Plain data without rules of its own.
template <class T>
struct ShapeSetCorrespondence
{
    /// Positions of the two sets in the fusion.
    unsigned int firstShapeSet = 0;
    unsigned int secondShapeSet = 0;

    /// For each shape of the first set the places of the corresponding vertices, in the order of
    /// its vertices; empty where vertices at equal places correspond.
    std::vector<std::vector<Vector<unsigned int>>> mapping;

    /// For each shape the weights of its vertices; empty where all weigh the same.
    std::vector<Vector<T>> weights;
};
