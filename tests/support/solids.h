#pragma once

#include "shape/meshes/quadmesh.h"
#include "shape/meshes/trimesh.h"

#include <cmath>

/// Closed surfaces in space, outward normals, made from quad meshes.
namespace solids {

/// The triangles of the mesh without those that a pole or a cap has collapsed.
template <class T>
TriMesh<T> trianglesOf(const QuadMesh<T>& mesh)
{
    TriMesh<T> triangles = mesh.toTriMesh(false);
    for (int t = 0; t < triangles.getNumTriangles(); ++t) {
        const Triangle<T>& triangle = *triangles.triangle(t);
        if (triangle[0] == triangle[1] || triangle[1] == triangle[2] ||
            triangle[2] == triangle[0]) {
            triangles.removeTriangle(t);
        }
    }
    return triangles;
}

/// A closed grid of `height` levels; `place(i, j, vertex)` sets the coordinates in double precision.
template <class T, class Place>
QuadMesh<T> grid(int height, int width, Place place)
{
    QuadMesh<T> mesh(3, height, width, 0, 0, false);
    for (int i = 0; i < height; ++i) {
        for (int j = 0; j < width; ++j) {
            double vertex[3];
            place(i, j, vertex);
            for (int c = 0; c < 3; ++c) {
                mesh[i][j][c] = static_cast<T>(vertex[c]);
            }
        }
    }
    return mesh;
}

/// From -1 to 1 in each coordinate: two squares, closed by the middles of their faces.
template <class T>
QuadMesh<T> cube()
{
    return grid<T>(4, 4, [](int i, int j, double* v) {
        const bool face = i == 0 || i == 3;
        v[0] = face ? 0 : j == 0 || j == 3 ? -1 : 1;
        v[1] = face ? 0 : j < 2 ? -1 : 1;
        v[2] = i < 2 ? -1 : 1;
    });
}

/// Of radius 1, with `bands` bands between the poles.
template <class T>
QuadMesh<T> sphere(int bands, int width)
{
    return grid<T>(bands + 1, width, [=](int i, int j, double* v) {
        // A pole is one place for all columns, without a sign of zero.
        const bool pole = i == 0 || i == bands;
        v[0] = pole ? 0 : std::sin(M_PI * i / bands) * std::cos(2 * M_PI * j / width);
        v[1] = pole ? 0 : std::sin(M_PI * i / bands) * std::sin(2 * M_PI * j / width);
        v[2] = -std::cos(M_PI * i / bands);
    });
}

/// A ring of radius 3 and thickness 1 around the third axis; the last level is the first again.
template <class T>
QuadMesh<T> torus(int rows, int width)
{
    return grid<T>(rows + 1, width, [=](int i, int j, double* v) {
        const double u = -2 * M_PI * (i % rows) / rows;
        const double w = 2 * M_PI * j / width;
        v[0] = (3 + std::cos(w)) * std::cos(u);
        v[1] = (3 + std::cos(w)) * std::sin(u);
        v[2] = std::sin(w);
    });
}

} // namespace solids
