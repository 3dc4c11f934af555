// Part of `BoundingBox`: the box as a mesh.

#include "shape/meshes/quadmesh.h"
#include "shape/vertices/boundingbox.h"

template <class T>
QuadMesh<T> BoundingBox<T>::asQuadMesh() const
{
    const int space = vertex1_.getSize();
    if (space == 0) {
        return QuadMesh<T>();
    }
    const Vertices<T> corners = asVertices();
    const int width = 1 << (space - 1);
    QuadMesh<T> mesh(space, 2, width, 0, 0, space < 3);
    for (int i = 0; i < width; ++i) {
        const int grayCode = i ^ (i >> 1);
        mesh[0][i] = corners[grayCode];
        mesh[1][i] = corners[width + grayCode];
    }
    return mesh;
}

template QuadMesh<int> BoundingBox<int>::asQuadMesh() const;
template QuadMesh<float> BoundingBox<float>::asQuadMesh() const;
template QuadMesh<double> BoundingBox<double>::asQuadMesh() const;
template QuadMesh<long double> BoundingBox<long double>::asQuadMesh() const;
