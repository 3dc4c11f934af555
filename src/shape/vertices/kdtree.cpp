#include "shape/vertices/kdtree.h"

#include "numerics/matrix.h"
#include "shape/vertices/vertexdistance.h"
#include "shape/vertices/vertexstack.h"
#include "system/exception.h"

#include <cmath>
#include <limits>

template <class T>
KDTree<T>::KDTree() = default;

template <class T>
void KDTree<T>::setShape(Shape<T>& shape)
{
    const char* where = "void KDTree<T>::setShape(Shape<T>&)";
    if (shape.getSize() == 0) {
        raise<UsageError>(where, "The shape is empty");
    }
    if (shape.isComposite()) {
        const auto* stack = dynamic_cast<VertexStack<T>*>(&shape);
        for (int k = 0; stack == nullptr || k < stack->getHeight(); ++k) {
            if (stack == nullptr || (*stack)[k].getServer() != (*stack)[0].getServer()) {
                raise<UsageError>(where, "The shape is indexed on several servers");
            }
        }
    }
    shape_ = &shape;
}

template <class T>
void KDTree<T>::build()
{
    const char* where = "void KDTree<T>::build()";
    if (shape_ == nullptr) {
        raise<UsageError>(where, "No shape has been set");
    }
    std::vector<int> slots;
    for (VertexIterator<T> walk = shape_->vertexIterator(); walk.current() != nullptr; walk++) {
        slots.push_back(walk.currentServerIndex());
    }
    if (slots.empty()) {
        raise<UsageError>(where, "The shape is empty");
    }
    auto* stack = dynamic_cast<VertexStack<T>*>(shape_);
    vertices_.setServer(stack == nullptr ? *shape_->getServer() : *(*stack)[0].getServer());
    const int size = static_cast<int>(slots.size());
    vertices_.setSize(size, false);
    for (int i = 0; i < size; ++i) {
        vertices_.setIndex(i, slots[static_cast<std::size_t>(i)]);
    }

    const double levels = std::floor(std::log(size + 1.0) / std::log(2.0)) + 1;
    const int nodes = static_cast<int>(std::pow(2.0, levels) - 1);
    tree_.setSize(nodes);
    tree_.fill(-1);
    axes_.setSize(nodes);
    axes_.fill(vertices_.getSpace());
    Matrix<T> matrix = initSortMatrix();
    rbuild(0, 0, size - 1, matrix);
}

template <class T>
Matrix<T> KDTree<T>::initSortMatrix() const
{
    const int space = vertices_.getSpace();
    Matrix<T> matrix(vertices_.getSize(), space + 1);
    for (int i = 0; i < vertices_.getSize(); ++i) {
        matrix(i, 0) = static_cast<T>(vertices_.getIndex(i));
        for (int c = 0; c < space; ++c) {
            matrix(i, c + 1) = vertices_[i][c];
        }
    }
    return matrix;
}

template <class T>
int KDTree<T>::maxExtensionAxis(int first, int last, const Matrix<T>& matrix) const
{
    Vector<T> extents(vertices_.getSpace());
    for (int c = 0; c < extents.getSize(); ++c) {
        T smallest = matrix(first, c + 1);
        T largest = smallest;
        for (int i = first + 1; i <= last; ++i) {
            smallest = std::min(smallest, matrix(i, c + 1));
            largest = std::max(largest, matrix(i, c + 1));
        }
        extents[c] = subtracted(largest, smallest);
    }
    return extents.maxPos();
}

template <class T>
void KDTree<T>::rbuild(int node, int first, int last, Matrix<T>& matrix)
{
    const int axis = maxExtensionAxis(first, last, matrix);
    matrix.sortRows(first, last, axis + 1);
    const int median = first + (last - first + 1) / 2;
    tree_[node] = static_cast<int>(matrix(median, 0));
    axes_[node] = axis;

    const auto addSide = [&](int child, int from, int to) {
        if (from == to) {
            tree_[child] = static_cast<int>(matrix(from, 0));
        } else if (from < to) {
            rbuild(child, from, to, matrix);
        }
    };
    addSide(2 * node + 1, first, median - 1);
    addSide(2 * node + 2, median + 1, last);
}

template <class T>
const Vector<T>& KDTree<T>::nodeVertex(int node) const
{
    return *vertices_.getServer()->vertex(tree_[node]);
}

template <class T>
void KDTree<T>::nearestNeighbour(int& best,
                                 T& bestDistance,
                                 int node,
                                 const Vector<T>& position) const
{
    const Vector<T>& vertex = nodeVertex(node);
    const int axis = axes_[node];
    const int left = 2 * node + 1;
    const int right = 2 * node + 2;
    if (axis < vertices_.getSpace() && tree_[left] != -1) {
        const T delta = subtracted(position[axis], vertex[axis]);
        const T beyond = multiplied(delta, delta);
        if (delta < 0) {
            nearestNeighbour(best, bestDistance, left, position);
            if (bestDistance > beyond && tree_[right] != -1) {
                nearestNeighbour(best, bestDistance, right, position);
            }
        } else {
            if (tree_[right] != -1) {
                nearestNeighbour(best, bestDistance, right, position);
            }
            if (bestDistance > beyond) {
                nearestNeighbour(best, bestDistance, left, position);
            }
        }
    }
    const T distance = squaredDistance(vertex, position);
    if (bestDistance > distance) {
        bestDistance = distance;
        best = node;
    }
}

template <class T>
int KDTree<T>::nearestNode(const Vector<T>& position) const
{
    if (tree_.getSize() == 0) {
        raise<UsageError>("Vector<T>& KDTree<T>::nearestVertex(const Vector<T>&)",
                          "The tree has not been built");
    }
    int best = 0;
    T bestDistance = squaredDistance(nodeVertex(0), position);
    nearestNeighbour(best, bestDistance, 0, position);
    return best;
}

template <class T>
Vector<T>& KDTree<T>::nearestVertex(const Vector<T>& position)
{
    const int node = nearestNode(position);
    return *vertices_.getServer()->vertex(tree_[node]);
}

template <class T>
const Vector<T>& KDTree<T>::nearestVertex(const Vector<T>& position) const
{
    return nodeVertex(nearestNode(position));
}

template <class T>
void KDTree<T>::kNearestNeighbours(std::vector<int>& indices,
                                   std::vector<T>& distances,
                                   int node,
                                   const Vector<T>& position) const
{
    const Vector<T>& vertex = nodeVertex(node);
    const int axis = axes_[node];
    const int left = 2 * node + 1;
    const int right = 2 * node + 2;
    if (axis < vertices_.getSpace() && tree_[left] != -1) {
        const T delta = subtracted(position[axis], vertex[axis]);
        const T beyond = multiplied(delta, delta);
        if (delta < 0) {
            kNearestNeighbours(indices, distances, left, position);
            if (distances.back() > beyond && tree_[right] != -1) {
                kNearestNeighbours(indices, distances, right, position);
            }
        } else {
            if (tree_[right] != -1) {
                kNearestNeighbours(indices, distances, right, position);
            }
            if (distances.back() > beyond) {
                kNearestNeighbours(indices, distances, left, position);
            }
        }
    }
    const T distance = squaredDistance(vertex, position);
    if (!(distances.back() > distance)) {
        return;
    }
    std::size_t place = indices.size();
    while (place > 0 && indices[place - 1] < 0) {
        --place;
    }
    while (place > 0 && distances[place - 1] > distance) {
        if (place < indices.size()) {
            indices[place] = indices[place - 1];
            distances[place] = distances[place - 1];
        }
        --place;
    }
    indices[place] = tree_[node];
    distances[place] = distance;
}

template <class T>
void KDTree<T>::nearestVertices(Vertices<T>& out, const Vector<T>& position, int k) const
{
    const char* where = "void KDTree<T>::nearestVertices(Vertices<T>&,const Vector<T>&,const int)";
    if (tree_.getSize() == 0) {
        raise<UsageError>(where, "The tree has not been built");
    }
    if (k < 1 || k > vertices_.getSize()) {
        raise<RangeError>(where, "The number of vertices asked for is out of range");
    }
    std::vector<int> indices(static_cast<std::size_t>(k), -1);
    std::vector<T> distances(static_cast<std::size_t>(k), std::numeric_limits<T>::max());
    kNearestNeighbours(indices, distances, 0, position);
    if (indices.back() < 0) {
        raise<ValueError>(where, "The distances are not finite");
    }
    // A view for the caller, who may change what the searches leave alone.
    out.setServer(const_cast<VertexServer<T>&>(*vertices_.getServer()));
    out.setSize(k, false);
    for (int i = 0; i < k; ++i) {
        out.setIndex(i, indices[static_cast<std::size_t>(i)]);
    }
}

template class KDTree<int>;
template class KDTree<float>;
template class KDTree<double>;
template class KDTree<long double>;
