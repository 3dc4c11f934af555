// Part of `ShapeSet`: what it does with its quad meshes.

#include "shape/meshes/quadmesh.h"
#include "shape/vertices/shapeset.h"

#include <memory>

template <class T>
ShapeSet<T> ShapeSet<T>::computeMean(const std::vector<ShapeSet*>& sets)
{
    ShapeSet mean;
    mean.setName("mean");
    for (int i = 0; !sets.empty() && i < sets.front()->getSize(); ++i) {
        std::vector<QuadMesh<T>*> meshes;
        for (const ShapeSet* set : sets) {
            auto* mesh = i < set->getSize() ? dynamic_cast<QuadMesh<T>*>((*set)[i]) : nullptr;
            if (mesh != nullptr) {
                meshes.push_back(mesh);
            }
        }
        std::unique_ptr<QuadMesh<T>> shape;
        if (!meshes.empty()) {
            shape = std::make_unique<QuadMesh<T>>(QuadMesh<T>::mean(meshes));
            const Shape<T>* first = (*sets.front())[i];
            shape->setName(first == nullptr ? "" : first->getName());
        }
        mean.addShape(shape.release(), sets.front()->isReference(i));
    }
    return mean;
}

template <class T>
Vector<int> ShapeSet<T>::matchSurfaces(const ShapeSet& other)
{
    Vector<int> shifts(getSize());
    shifts.setZeros();
    int i = 0;
    for (const auto& [shape, counterpart] : pairs(other)) {
        auto* mesh = dynamic_cast<QuadMesh<T>*>(shape);
        const auto* target = dynamic_cast<const QuadMesh<T>*>(counterpart);
        if (mesh != nullptr && target != nullptr && mesh->isClosed()) {
            shifts[i] = static_cast<int>(mesh->match(*target));
        }
        ++i;
    }
    return shifts;
}

template <class T>
std::vector<Matrix<T>> ShapeSet<T>::sdistance(const ShapeSet& other) const
{
    std::vector<Matrix<T>> distances;
    for (const auto& [shape, counterpart] : pairs(other)) {
        const auto* mesh = dynamic_cast<const QuadMesh<T>*>(shape);
        auto* target = dynamic_cast<QuadMesh<T>*>(counterpart);
        if (mesh != nullptr && target != nullptr) {
            distances.push_back(QuadMesh<T>::varianceMap(*mesh, {target}));
        }
    }
    return distances;
}

#define INSTANTIATE_SHAPE_SET_MESHES(T)                                                            \
    template ShapeSet<T> ShapeSet<T>::computeMean(const std::vector<ShapeSet<T>*>&);               \
    template Vector<int> ShapeSet<T>::matchSurfaces(const ShapeSet<T>&);                           \
    template std::vector<Matrix<T>> ShapeSet<T>::sdistance(const ShapeSet<T>&) const;

INSTANTIATE_SHAPE_SET_MESHES(int)
INSTANTIATE_SHAPE_SET_MESHES(float)
INSTANTIATE_SHAPE_SET_MESHES(double)
INSTANTIATE_SHAPE_SET_MESHES(long double)
