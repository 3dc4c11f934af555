#pragma once

#include "numerics/vector.h"
#include "shape/meshes/quadmesh.h"
#include "shape/vertices/shapeset.h"

#include <type_traits>
#include <vector>

/// The sum of the meshes of several sets, place by place, from which sets can be taken and to which
/// they can be added: the mean of all sets but one costs no more than that one set.
///
/// The sum is kept in a wider type than the coordinates, so that a mesh which is taken out leaves no
/// trace of its rounding.
template <class T>
class FusionMean
{
public:
    /// The type of sums over many meshes.
    using Wide = std::conditional_t<std::is_same_v<T, float>, double, long double>;

    /// Raises `SizeError` where meshes at one place differ in their dimensions.
    explicit FusionMean(const std::vector<ShapeSet<T>>& sets);

    void take(const ShapeSet<T>& set);
    void add(const ShapeSet<T>& set);

    /// The mean of the sets that are in the sum: a mesh for each mesh of `model`, or null where no
    /// set has one. The caller owns the shapes.
    ShapeSet<T> meanLike(const ShapeSet<T>& model) const;

private:
    struct Place
    {
        Vector<Wide> sum;
        int height = 0;
        int width = 0;
        int count = 0;
    };

    Place& placeOf(int i, const QuadMesh<T>& mesh);

    std::vector<Place> places_;
};

extern template class FusionMean<float>;
extern template class FusionMean<double>;
extern template class FusionMean<long double>;
