#include "image/pixels/mappedneighbourhooditerator.h"

#include "image/pixels/image2.h"
#include "system/exception.h"

#include <algorithm>

template <int D>
MappedNeighbourhoodIterator<D>::MappedNeighbourhoodIterator(const Image2& image)
{
    const int sizes[] = {image.getSize1(), image.getSize2(), image.getSize3()};
    std::copy_n(sizes, D, size_.begin());
    int step = 1;
    for (int n = 0; n < D; ++n) {
        const std::size_t axis = static_cast<std::size_t>(scanOrder[n]);
        step_[axis] = step;
        step *= size_[axis];
    }
    first_ = last_ = position_ = {};
}

template <int D>
MappedNeighbourhoodIterator<D>::~MappedNeighbourhoodIterator() = default;

template <int D>
int MappedNeighbourhoodIterator<D>::reach(int) const
{
    return this->radius;
}

template <int D>
void MappedNeighbourhoodIterator<D>::setCentre(int centre)
{
    int elements = 1;
    for (int size : size_) {
        elements *= size;
    }
    if (centre < 0 || centre >= elements) {
        raise<RangeError>("void MappedNeighbourhoodIterator<D>::setCentre(const int)",
                          "There is no such element");
    }
    this->index_ = 0;
    for (int n = 0; n < D; ++n) {
        const std::size_t axis = static_cast<std::size_t>(scanOrder[n]);
        const int size = size_[axis];
        const int c = centre / step_[axis] % size;
        const int r = std::min(reach(scanOrder[n]), size);
        first_[axis] = std::max(c - r, 0);
        last_[axis] = std::min(c + r, size - 1);
        position_[axis] = first_[axis];
        this->index_ += first_[axis] * step_[axis];
    }
    this->atEnd_ = false;
}

template <int D>
void MappedNeighbourhoodIterator<D>::next()
{
    for (int n = 0; n < D; ++n) {
        const std::size_t axis = static_cast<std::size_t>(scanOrder[n]);
        if (position_[axis] < last_[axis]) {
            ++position_[axis];
            this->index_ += step_[axis];
            return;
        }
        this->index_ -= (position_[axis] - first_[axis]) * step_[axis];
        position_[axis] = first_[axis];
    }
    this->atEnd_ = true;
}

template class MappedNeighbourhoodIterator<2>;
template class MappedNeighbourhoodIterator<3>;
