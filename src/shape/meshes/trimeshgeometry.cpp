// Part of `TriMesh`: normals and measures.

#include "numerics/elementtype.h"
#include "shape/curves/edge.h"
#include "shape/meshes/trimesh.h"
#include "shape/vertices/boundingbox.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>

namespace {

/// Six times the signed volume of the tetrahedron from `centre` to a triangle.
template <class T>
T determinant(const Triangle<T>& triangle, const Vector<T>& centre)
{
    const Vector<T> a = triangle[0] - centre;
    return a.scalarProduct((triangle[1] - centre).vectorProduct(triangle[2] - centre));
}

template <class T>
bool isFinite(const Vector<T>& vector)
{
    return std::all_of(vector.data(), vector.data() + vector.getSize(),
                       [](T value) { return std::isfinite(value); });
}

/// Whether the ranges of both curves have a point in common in each of three coordinates.
template <class T>
bool overlap(const Curve<T>& a, const Curve<T>& b)
{
    for (int c = 0; c < 3; ++c) {
        T smallest[2];
        T largest[2];
        const Curve<T>* curves[] = {&a, &b};
        for (int side = 0; side < 2; ++side) {
            const Curve<T>& curve = *curves[side];
            smallest[side] = largest[side] = curve[0][c];
            for (int i = 1; i < curve.getSize(); ++i) {
                smallest[side] = std::min(smallest[side], curve[i][c]);
                largest[side] = std::max(largest[side], curve[i][c]);
            }
        }
        if (largest[0] < smallest[1] || largest[1] < smallest[0]) {
            return false;
        }
    }
    return true;
}

} // namespace

template <class T>
void TriMesh<T>::resetNormals()
{
    normals_ = Vertices<T>(this->getSpace(), this->getSize(), 0, 0);
    for (int i = 0; i < normals_.getSize(); ++i) {
        normals_[i].setZeros();
    }
}

template <class T>
void TriMesh<T>::setNormal(int vertex, const Vector<T>& normal)
{
    if (!hasNormals()) {
        resetNormals();
    }
    normals_[vertex] = normal;
}

template <class T>
void TriMesh<T>::computeNormals()
{
    std::vector<Vector<T>> weighted;
    for (const auto& triangle : triangles_) {
        weighted.push_back(triangle == nullptr ? Vector<T>()
                                               : triangle->normal(true) * triangle->area());
    }
    resetNormals();
    for (int i = 0; i < this->getSize(); ++i) {
        for (const int t : star(i)) {
            normals_[i] += weighted[static_cast<std::size_t>(t)];
        }
        normals_[i].normalize();
        if (!isFinite(normals_[i])) {
            normals_[i].setZeros();
        }
    }
}

template <class T>
void TriMesh<T>::smoothNormals(int iterations)
{
    if (!hasNormals()) {
        raise<UsageError>("void TriMesh<T>::smoothNormals(const int)", "This mesh has no normals");
    }
    for (int pass = 0; pass < iterations; ++pass) {
        Vertices<T> former(normals_);
        former.detach();
        for (int i = 0; i < this->getSize(); ++i) {
            const std::vector<int> others = neighbours(i);
            for (const int j : others) {
                if (j < former.getSize()) {
                    normals_[i] += former[j];
                }
            }
            if (!others.empty()) {
                normals_[i].normalize();
            }
        }
    }
}

template <class T>
T TriMesh<T>::area() const
{
    T sum = 0;
    for (const auto& triangle : triangles_) {
        if (triangle != nullptr) {
            sum += triangle->normal(false).norm();
        }
    }
    return static_cast<T>(sum * 0.5);
}

template <class T>
T TriMesh<T>::volume() const
{
    T sum = 0;
    if (!triangles_.empty()) {
        const Vector<T> centre = this->cog();
        for (const auto& triangle : triangles_) {
            sum += triangle == nullptr ? T(0) : determinant(*triangle, centre);
        }
    }
    return (sum < 0 ? -sum : sum) / 6;
}

template <class T>
T TriMesh<T>::equivalentRadius() const
{
    if (this->getSpace() != 3) {
        raise<SizeError>("T TriMesh<T>::equivalentRadius() const", "Space dimension is not 3");
    }
    return static_cast<T>(std::pow(3 * static_cast<double>(volume()) / (4 * M_PI), 1.0 / 3));
}

template <class T>
Vector<T> TriMesh<T>::centerOfGravity() const
{
    const Vector<T> centre = this->cog();
    Vector<T> sum;
    sum.setZeros(centre.getSize());
    T weights = 0;
    for (const auto& triangle : triangles_) {
        if (triangle != nullptr) {
            const T weight = determinant(*triangle, centre);
            sum += triangle->cog() * weight;
            weights += weight;
        }
    }
    if (weights == 0) {
        raise<MathError>("Vector<T> TriMesh<T>::centerOfGravity() const",
                         "This mesh has no volume");
    }
    return sum / weights;
}

template <class T>
T TriMesh<T>::closestPoint([[maybe_unused]] const Vector<T>& position,
                           [[maybe_unused]] Vector<T>& q) const
{
    if constexpr (std::is_integral_v<T>) {
        raise<TypeError>("closestPoint(const Vectori&,Vectori&) const",
                         "Method not available for type 'int'");
    } else {
        if (this->getSize() == 0) {
            raise<SizeError>("T TriMesh<T>::closestPoint(const Vector<T>&,Vector<T>&) const",
                             "This mesh has no vertices");
        }
        q = (*this)[0];
        T best = position.sdistance(q);
        Vector<T> candidate;
        for (const auto& triangle : triangles_) {
            if (triangle != nullptr) {
                triangle->closestPoint(position, candidate);
                const T distance = position.sdistance(candidate);
                if (distance < best) {
                    best = distance;
                    q = candidate;
                }
            }
        }
        return std::sqrt(best);
    }
}

/// Whether the ray decides about `position`; `inside` becomes what it tells. It decides nothing
/// where it meets a border.
template <class T>
bool TriMesh<T>::crosses(const Edge<T>& ray, const Vector<T>& position, bool& inside) const
{
    inside = false;
    Vector<T> q;
    for (const auto& triangle : triangles_) {
        if (triangle == nullptr || !overlap<T>(*triangle, ray)) {
            continue;
        }
        const Vector<T> normal = triangle->normal(false);
        if (triangle->contains(position, normal)) {
            inside = true;
            return true;
        }
        const int meeting = triangle->intersects(ray, q, normal);
        if (meeting == 2) {
            return false;
        }
        inside = inside != (meeting == 1);
    }
    return true;
}

template <class T>
bool TriMesh<T>::contains([[maybe_unused]] const Vector<T>& position) const
{
    if constexpr (std::is_integral_v<T>) {
        raiseNotAvailable<T>("bool TriMesh<T>::contains(const Vector<T>&) const");
    } else {
        if (triangles_.empty()) {
            return false;
        }
        if (this->getSpace() != 3 || position.getSize() != 3) {
            raise<SizeError>("bool TriMesh<T>::contains(const Vector<T>&) const",
                             "Space dimension is not 3");
        }
        const BoundingBox<T> box = this->boundingBox();
        if (!box.contains(position)) {
            return false;
        }
        constexpr int attempts = 10000;
        bool inside = false;
        Edge<T> ray(3);
        ray[0] = position;
        for (int k = 0; k < attempts; ++k) {
            const double offsets[] = {1.1 + k, 2.1 * k + 1.11, 3.1 * k + 1.111};
            for (int c = 0; c < 3; ++c) {
                ray[1][c] = static_cast<T>(static_cast<double>(box.getVertex1()[c]) - offsets[c]);
            }
            if (crosses(ray, position, inside)) {
                break;
            }
        }
        return inside;
    }
}

template <class T>
TriMesh<T> TriMesh<T>::cube()
{
    constexpr int corners[][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                  {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    constexpr int faces[][3] = {{0, 3, 1}, {1, 3, 2}, {4, 5, 7}, {5, 6, 7}, {0, 5, 4}, {0, 1, 5},
                                {1, 6, 5}, {1, 2, 6}, {2, 7, 6}, {2, 3, 7}, {3, 4, 7}, {3, 0, 4}};
    TriMesh mesh(3, 8, 0, 0);
    for (int i = 0; i < 8; ++i) {
        for (int c = 0; c < 3; ++c) {
            mesh[i][c] = static_cast<T>(corners[i][c]);
        }
    }
    for (const auto& face : faces) {
        mesh.addTriangle(face[0], face[1], face[2]);
    }
    if constexpr (!std::is_integral_v<T>) {
        mesh.computeNormals();
    }
    return mesh;
}

#define INSTANTIATE_TRI_MESH_GEOMETRY(T)                                                           \
    template void TriMesh<T>::resetNormals();                                                      \
    template void TriMesh<T>::setNormal(int, const Vector<T>&);                                    \
    template void TriMesh<T>::computeNormals();                                                    \
    template void TriMesh<T>::smoothNormals(int);                                                  \
    template T TriMesh<T>::area() const;                                                           \
    template T TriMesh<T>::volume() const;                                                         \
    template T TriMesh<T>::equivalentRadius() const;                                               \
    template Vector<T> TriMesh<T>::centerOfGravity() const;                                        \
    template T TriMesh<T>::closestPoint(const Vector<T>&, Vector<T>&) const;                       \
    template bool TriMesh<T>::crosses(const Edge<T>&, const Vector<T>&, bool&) const;              \
    template bool TriMesh<T>::contains(const Vector<T>&) const;                                    \
    template TriMesh<T> TriMesh<T>::cube();

INSTANTIATE_TRI_MESH_GEOMETRY(int)
INSTANTIATE_TRI_MESH_GEOMETRY(float)
INSTANTIATE_TRI_MESH_GEOMETRY(double)
INSTANTIATE_TRI_MESH_GEOMETRY(long double)
