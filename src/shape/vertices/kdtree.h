#pragma once

#include "shape/vertices/vertices.h"

template <class T>
class Matrix;

/// Nearest-vertex queries on one shape.
///
/// The tree lies in two flat arrays, heap fashion: the children of node `i` are `2 i + 1` and
/// `2 i + 2`. Call `setShape`, then `build`, again after each change of the shape's vertices.
/// Searches allocate nothing and may run side by side. Building costs n log^2 n.
///
/// Source: J. L. Bentley, Multidimensional binary search trees used for associative searching,
/// Communications of the ACM 18, 1975.
template <class T>
class KDTree
{
public:
    /// A tree without a shape.
    KDTree();

    /// Takes the shape, which must outlive the tree; does not build. Raises `UsageError` for a
    /// shape without vertices, and for a stack whose levels do not all stand on one server.
    void setShape(Shape<T>& shape);

    /// The shape, or null.
    Shape<T>* getShape() const { return shape_; }

    /// Builds the tree; raises `UsageError` without a shape, or for one that has lost all vertices.
    void build();

    /// The vertex nearest to `position`, as it stands on the shape's server. Of equally near ones
    /// the first met in the tree is given. Raises `UsageError` before `build`.
    Vector<T>& nearestVertex(const Vector<T>& position);
    const Vector<T>& nearestVertex(const Vector<T>& position) const;

    /// Makes `out` the `k` nearest vertices in ascending order of distance, on the shape's server.
    /// Raises `RangeError` unless `k` lies between 1 and the number of vertices, `ValueError` where
    /// distances are not finite, and `UsageError` before `build`.
    void nearestVertices(Vertices<T>& out, const Vector<T>& position, int k) const;

    /// Node `i`: a server slot, -1 for no node.
    const Vector<int>& getTree() const { return tree_; }

    /// Node `i`: the coordinate on which it splits, the dimension for a leaf.
    const Vector<int>& getAxes() const { return axes_; }

private:
    Matrix<T> initSortMatrix() const;
    int maxExtensionAxis(int first, int last, const Matrix<T>& matrix) const;
    void rbuild(int node, int first, int last, Matrix<T>& matrix);
    void nearestNeighbour(int& best, T& bestDistance, int node, const Vector<T>& position) const;
    void kNearestNeighbours(std::vector<int>& indices,
                            std::vector<T>& distances,
                            int node,
                            const Vector<T>& position) const;
    const Vector<T>& nodeVertex(int node) const;
    int nearestNode(const Vector<T>& position) const;

    Shape<T>* shape_ = nullptr;
    Vertices<T> vertices_;
    Vector<int> tree_;
    Vector<int> axes_;
};

extern template class KDTree<int>;
extern template class KDTree<float>;
extern template class KDTree<double>;
extern template class KDTree<long double>;
