#pragma once

#include "numerics/matrix.h"
#include "numerics/vector.h"
#include "shape/meshes/curvestacktriangulationcontourtag.h"

#include <vector>

template <class T>
class Vertices;
template <class T>
class VertexStack;

class Model;
class ModelItem;
class Stack;

/// Maps from the pixel coordinates of each slice to coordinates in space.
///
/// The registration of a slice is relative to the slice before it, so rotations and shifts
/// accumulate along the stack. The centre of the first image goes to the origin, and y turns
/// upward. The maps are those of the last `computeMaps()`; the operations that map raise
/// `UsageError` for an item on a slice that stands behind them in the stack.
///
/// An item whose slice is not in the stack is ignored, and a line on the standard error stream
/// says so.
template <class T>
class StackReconstruction
{
public:
    /// Binds to a stack, which must outlive this object, and computes the maps.
    void setStack(const Stack& newStack);

    /// Without a stack: `UsageError`. The centre of a slice without an image is its origin.
    void computeMaps();

    /// The item as a new shape in space, which the caller owns: a closed `Curve<T>` for a polygon,
    /// an open one for a polyline, `Vertices<T>` for points and for the pixels of a region. It is
    /// empty for an item that is ignored. An unknown primitive raises `ProgramError`, here and in
    /// `apply(const Model&)`.
    Vertices<T>* apply(const ModelItem& item) const;

    /// The items of the model, one a level, in the order of their slices, on one slice in that of
    /// the model: a new stack, which the caller owns, a closed or open `CurveStack<T>` for polygons
    /// or polylines, else a `VertexStack<T>`.
    VertexStack<T>* apply(const Model& model) const;

    /// Gives `out` new vertices of three dimensions on a server of its own, those of the item or
    /// the pixels of a region. It stays as it was for an item that is ignored.
    void map(Vertices<T>& out, const ModelItem& item) const;

    /// The triangulation tags of the levels that `apply` gives.
    std::vector<CurveStackTriangulationContourTag> contourTags(const Model& model) const;

    /// One row of 6 coefficients (a, b, e, d, f, g) per slice: (x, y) goes to
    /// (a x + b y + e, d x + f y + g).
    const Matrix<T>& getMaps() const { return maps; }

    /// The z of each slice.
    const Vector<T>& getZMap() const { return zMap; }

private:
    int sliceOf(const ModelItem& item) const;
    std::vector<const ModelItem*> itemsInOrder(const Model& model) const;

    const Stack* stack = nullptr;
    Matrix<T> maps;
    Vector<T> zMap;
};

extern template class StackReconstruction<float>;
extern template class StackReconstruction<double>;
extern template class StackReconstruction<long double>;
