#include "shape/registration/fusionmean.h"

#include "system/exception.h"

#include <memory>

namespace {

template <class T>
const QuadMesh<T>* meshAt(const ShapeSet<T>& set, int i)
{
    return dynamic_cast<const QuadMesh<T>*>(set[i]);
}

} // namespace

template <class T>
FusionMean<T>::FusionMean(const std::vector<ShapeSet<T>>& sets)
{
    for (const ShapeSet<T>& set : sets) {
        add(set);
    }
}

template <class T>
typename FusionMean<T>::Place& FusionMean<T>::placeOf(int i, const QuadMesh<T>& mesh)
{
    const auto index = static_cast<std::size_t>(i);
    if (index >= places_.size()) {
        places_.resize(index + 1);
    }
    Place& place = places_[index];
    if (place.sum.getSize() == 0) {
        place.sum.setZeros(mesh.getSize() * mesh.getSpace());
        place.height = mesh.getHeight();
        place.width = mesh.getWidth();
    }
    if (place.height != mesh.getHeight() || place.width != mesh.getWidth() ||
        place.sum.getSize() != mesh.getSize() * mesh.getSpace()) {
        raise<SizeError>("void FusionMean<T>::add(const ShapeSet<T>&)",
                         "Incompatible mesh dimensions");
    }
    return place;
}

template <class T>
void FusionMean<T>::add(const ShapeSet<T>& set)
{
    for (int i = 0; i < set.getSize(); ++i) {
        if (const QuadMesh<T>* mesh = meshAt(set, i)) {
            Place& place = placeOf(i, *mesh);
            place.sum += mesh->toVector().template toType<Wide>();
            ++place.count;
        }
    }
}

template <class T>
void FusionMean<T>::take(const ShapeSet<T>& set)
{
    for (int i = 0; i < set.getSize(); ++i) {
        if (const QuadMesh<T>* mesh = meshAt(set, i)) {
            Place& place = placeOf(i, *mesh);
            place.sum -= mesh->toVector().template toType<Wide>();
            --place.count;
        }
    }
}

template <class T>
ShapeSet<T> FusionMean<T>::meanLike(const ShapeSet<T>& model) const
{
    ShapeSet<T> mean;
    mean.setName("mean");
    for (int i = 0; i < model.getSize(); ++i) {
        const auto index = static_cast<std::size_t>(i);
        const QuadMesh<T>* like = meshAt(model, i);
        std::unique_ptr<QuadMesh<T>> shape;
        if (like != nullptr && index < places_.size() && places_[index].count > 0) {
            const Place& place = places_[index];
            shape = std::make_unique<QuadMesh<T>>(like->getSpace(), place.height, place.width, 0, 0,
                                                  like->isOpen());
            shape->setName(like->getName());
            shape->fromVector((place.sum / static_cast<Wide>(place.count)).template toType<T>());
        }
        mean.addShape(shape.release(), model.isReference(i));
    }
    return mean;
}

template class FusionMean<float>;
template class FusionMean<double>;
template class FusionMean<long double>;
