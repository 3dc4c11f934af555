#pragma once

#include "image/pixels/abstractneighbourhooditerator.h"

#include <array>

/// Walks a square (`D` = 2) or a cube (`D` = 3) around an element, which is one of those visited,
/// cut at the border of the image. Axis 0 is the row, 1 the column, 2 the plane.
template <int D>
class MappedNeighbourhoodIterator : public AbstractNeighbourhoodIterator
{
public:
    /// An image of two dimensions has one plane; with `D` = 2 only the first is walked.
    explicit MappedNeighbourhoodIterator(const Image2& image);
    ~MappedNeighbourhoodIterator() override;

    void next() override;
    void setCentre(int centre) override;

protected:
    /// How far the walk reaches along an axis.
    virtual int reach(int axis) const;

private:
    /// The axes from the fastest to the slowest in scan order.
    static constexpr int scanOrder[] = {1, 0, 2};

    std::array<int, D> size_;
    std::array<int, D> step_; ///< from element to element along each axis, as linear index
    std::array<int, D> first_;
    std::array<int, D> last_;
    std::array<int, D> position_;
};

extern template class MappedNeighbourhoodIterator<2>;
extern template class MappedNeighbourhoodIterator<3>;
