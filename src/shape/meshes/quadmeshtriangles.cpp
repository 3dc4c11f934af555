// Part of `QuadMesh`: its triangles.

#include "shape/meshes/quadmesh.h"
#include "shape/meshes/trimesh.h"
#include "system/exception.h"

template <class T>
TriMesh<T> QuadMesh<T>::toTriMesh(bool) const
{
    if constexpr (std::is_integral_v<T>) {
        raise<TypeError>("TriMesh<int> QuadMesh<int>::toTriMesh(const bool) const",
                         "Method undefined for type 'int'");
    } else {
        const int height = this->getHeight();
        const int width = getWidth();
        if (height > 0 && this->getSpace() != 3) {
            raise<SizeError>("TriMesh<T> QuadMesh<T>::toTriMesh(const bool) const",
                             "Space dimension is not 3");
        }
        TriMesh<T> mesh(3, height * width, 0, 0);
        for (int i = 0; i < height; ++i) {
            for (int j = 0; j < width; ++j) {
                mesh[i * width + j] = (*this)[i][j];
            }
        }
        for (int i = 0; i + 1 < height; ++i) {
            const int first = i * width;
            const int last = first + width - 1;
            for (int a = first; a < last; ++a) {
                const int b = a + width;
                mesh.addTriangle(a, a + 1, b);
                mesh.addTriangle(b, a + 1, b + 1);
            }
            if (this->isClosed() && width > 0) {
                mesh.addTriangle(last, first, last + width);
                mesh.addTriangle(last + width, first, first + width);
            }
        }
        return mesh;
    }
}

template TriMesh<int> QuadMesh<int>::toTriMesh(bool) const;
template TriMesh<float> QuadMesh<float>::toTriMesh(bool) const;
template TriMesh<double> QuadMesh<double>::toTriMesh(bool) const;
template TriMesh<long double> QuadMesh<long double>::toTriMesh(bool) const;
