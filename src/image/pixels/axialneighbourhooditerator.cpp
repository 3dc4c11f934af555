#include "image/pixels/axialneighbourhooditerator.h"

template <int D, int A>
AxialNeighbourhoodIterator<D, A>::AxialNeighbourhoodIterator(const Image2& image)
    : MappedNeighbourhoodIterator<D>(image)
{}

template <int D, int A>
AxialNeighbourhoodIterator<D, A>::~AxialNeighbourhoodIterator() = default;

template <int D, int A>
int AxialNeighbourhoodIterator<D, A>::reach(int axis) const
{
    return axis == A ? this->radius : 0;
}

template class AxialNeighbourhoodIterator<2, 0>;
template class AxialNeighbourhoodIterator<2, 1>;
template class AxialNeighbourhoodIterator<3, 0>;
template class AxialNeighbourhoodIterator<3, 1>;
template class AxialNeighbourhoodIterator<3, 2>;
