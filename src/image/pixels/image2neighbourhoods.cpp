// Part of `Image2`: the iterators over the elements around an element.

#include "image/pixels/axialneighbourhooditerator.h"
#include "image/pixels/image2.h"
#include "system/exception.h"

namespace {

using Owned = std::unique_ptr<AbstractNeighbourhoodIterator>;

template <int D>
Owned axialIterator(const Image2& image, int axis)
{
    if (axis == 0) {
        return std::make_unique<AxialNeighbourhoodIterator<D, 0>>(image);
    }
    if (axis == 1) {
        return std::make_unique<AxialNeighbourhoodIterator<D, 1>>(image);
    }
    if constexpr (D == 3) {
        if (axis == 2) {
            return std::make_unique<AxialNeighbourhoodIterator<3, 2>>(image);
        }
    }
    raise<ValueError>("AbstractNeighbourhoodIterator* Image2::newAxialNeighbourhoodIterator(const "
                      "int, const int)",
                      "The image has no axis " + std::to_string(axis));
}

} // namespace

std::unique_ptr<AbstractNeighbourhoodIterator> Image2::newMappedNeighbourhoodIterator() const
{
    if (dimension() == 3) {
        return std::make_unique<MappedNeighbourhoodIterator<3>>(*this);
    }
    return std::make_unique<MappedNeighbourhoodIterator<2>>(*this);
}

std::unique_ptr<AbstractNeighbourhoodIterator>
Image2::newAxialNeighbourhoodIterator(int axis, int radius) const
{
    Owned iterator =
        dimension() == 3 ? axialIterator<3>(*this, axis) : axialIterator<2>(*this, axis);
    iterator->setRadius(radius);
    return iterator;
}

std::vector<std::unique_ptr<AbstractNeighbourhoodIterator>>
Image2::newAxialNeighbourhoodIterators(int radius) const
{
    std::vector<Owned> iterators;
    for (int axis = 0; axis < dimension(); ++axis) {
        iterators.push_back(newAxialNeighbourhoodIterator(axis, radius));
    }
    return iterators;
}
