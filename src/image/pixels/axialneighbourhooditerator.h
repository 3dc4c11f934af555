#pragma once

#include "image/pixels/mappedneighbourhooditerator.h"

/// Walks the line of elements along axis `A` around an element of an image of `D` dimensions.
template <int D, int A>
class AxialNeighbourhoodIterator : public MappedNeighbourhoodIterator<D>
{
    static_assert(A >= 0 && A < D, "no such axis");

public:
    explicit AxialNeighbourhoodIterator(const Image2& image);
    ~AxialNeighbourhoodIterator() override;

protected:
    int reach(int axis) const override;
};

extern template class AxialNeighbourhoodIterator<2, 0>;
extern template class AxialNeighbourhoodIterator<2, 1>;
extern template class AxialNeighbourhoodIterator<3, 0>;
extern template class AxialNeighbourhoodIterator<3, 1>;
extern template class AxialNeighbourhoodIterator<3, 2>;
