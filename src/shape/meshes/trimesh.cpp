// Vertices, triangles and neighbourhoods of `TriMesh`.

#include "shape/meshes/trimesh.h"

#include "system/exception.h"

#include <queue>

#include <algorithm>
#include <iostream>
#include <iterator>

namespace {

void makeSet(std::vector<int>& list)
{
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
}

void dropFrom(std::vector<int>& list, int value)
{
    list.erase(std::remove(list.begin(), list.end(), value), list.end());
}

std::vector<int> intersection(std::vector<int> a, std::vector<int> b)
{
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    std::vector<int> common;
    std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(common));
    return common;
}

/// How far on a triangle goes from one of its vertices to another, 1 or 2.
int stepBetween(const Vector<int>& triangle, int from, int to)
{
    const int step = triangle.find(to) - triangle.find(from);
    return step < 0 ? step + 3 : step;
}

/// Whether both run along their common edge the same way.
bool turnApart(const Vector<int>& a, const Vector<int>& b)
{
    const std::vector<int> edge = intersection(a.toStlVector(), b.toStlVector());
    return edge.size() >= 2 && stepBetween(a, edge[0], edge[1]) == stepBetween(b, edge[0], edge[1]);
}

} // namespace

template <class T>
TriMesh<T>::TriMesh() = default;

template <class T>
TriMesh<T>::TriMesh(int space, int size, int capacity, int growth)
    : Vertices<T>(space, size, capacity, growth)
    , stars_(static_cast<std::size_t>(this->getSize()))
{}

template <class T>
TriMesh<T>::TriMesh(const Vertices<T>& vertices)
    : Vertices<T>(vertices)
    , stars_(static_cast<std::size_t>(this->getSize()))
{}

template <class T>
TriMesh<T>::TriMesh(const TriMesh& other)
    : Vertices<T>(other)
{
    copyParts(other);
}

template <class T>
TriMesh<T>::TriMesh(const std::string& filename)
{
    this->load(filename);
}

template <class T>
TriMesh<T>::~TriMesh() = default;

template <class T>
TriMesh<T>& TriMesh<T>::operator=(const TriMesh& other)
{
    assign(other);
    return *this;
}

template <class T>
void TriMesh<T>::assign(const VertexClient<T>& other)
{
    if (this == &other) {
        return;
    }
    Vertices<T>::assign(other);
    if (const auto* mesh = dynamic_cast<const TriMesh*>(&other)) {
        copyParts(*mesh);
    } else {
        clear();
    }
}

template <class T>
void TriMesh<T>::copyParts(const TriMesh& other)
{
    triangles_.clear();
    for (const auto& triangle : other.triangles_) {
        triangles_.emplace_back(triangle == nullptr ? nullptr : triangle->clone());
    }
    triangleIndexes = other.triangleIndexes;
    stars_ = other.stars_;
    normals_ = other.normals_;
    normals_.detach();
    vertexColors.reset(other.hasVertexColors() ? other.vertexColors->clone() : nullptr);
}

template <class T>
void TriMesh<T>::detach()
{
    Vertices<T>::detach();
    for (const auto& triangle : triangles_) {
        if (triangle != nullptr) {
            triangle->setServer(*this->server_);
        }
    }
    if (hasVertexColors()) {
        vertexColors->detach();
    }
}

template <class T>
TriMesh<T>* TriMesh<T>::clone() const
{
    return new TriMesh(*this);
}

template <class T>
int TriMesh<T>::getShapeType() const
{
    return 8;
}

template <class T>
void TriMesh<T>::setSize(int size)
{
    const char* where = "void TriMesh<T>::setSize(const int)";
    if (size < 0) {
        raise<ValueError>(where, "Negative number of vertices");
    }
    if (this->server_ == nullptr) {
        raise<UsageError>(where, "This mesh has no vertex server");
    }
    for (int vertex = size; vertex < static_cast<int>(stars_.size()); ++vertex) {
        for (const int t : std::vector<int>(star(vertex))) {
            removeTriangle(t);
        }
    }
    const int former = this->getSize();
    Vertices<T>::setSize(size, false);
    stars_.resize(static_cast<std::size_t>(size));
    if (size > former) {
        VertexServer<T>& server = *this->server_;
        const int first = server.getSize();
        server.setSize(first + size - former);
        for (int i = former; i < size; ++i) {
            this->setIndex(i, first + i - former);
            (*this)[i].setZeros();
        }
    }
}

template <class T>
void TriMesh<T>::append(const Vertices<T>& vertices)
{
    Vertices<T>::append(vertices);
    stars_.resize(std::max(stars_.size(), this->indices_.size()));
}

template <class T>
void TriMesh<T>::append(const Vector<T>& vertex)
{
    Vertices<T>::append(vertex);
    stars_.resize(std::max(stars_.size(), this->indices_.size()));
}

template <class T>
void TriMesh<T>::append(const TriMesh& other)
{
    const int offset = this->getSize();
    const std::vector<Vector<int>> added = other.triangleIndexes;
    append(static_cast<const Vertices<T>&>(other));
    for (const Vector<int>& triangle : added) {
        if (triangle[0] >= 0) {
            addTriangle(triangle + offset);
        }
    }
}

template <class T>
void TriMesh<T>::clear()
{
    triangles_.clear();
    triangleIndexes.clear();
    stars_.assign(static_cast<std::size_t>(this->getSize()), {});
    normals_ = Vertices<T>();
    vertexColors.reset();
}

template <class T>
void TriMesh<T>::remove(int vertex)
{
    for (const int t : std::vector<int>(star(vertex))) {
        removeTriangle(t);
    }
    if (vertex < normals_.getSize()) {
        normals_.remove(vertex);
    }
    Vertices<T>::remove(vertex);
}

template <class T>
void TriMesh<T>::requireVertices(const Vector<int>& vertices, const char* where) const
{
    if (vertices.getSize() != 3) {
        raise<SizeError>(where, "A triangle has three vertices");
    }
    if (vertices.min() < 0 || vertices.max() >= this->getSize()) {
        raise<RangeError>(where, "Vertex index out of range");
    }
}

template <class T>
void TriMesh<T>::addTriangle(int i, int j, int k)
{
    Vector<int> vertices(3);
    vertices[0] = i;
    vertices[1] = j;
    vertices[2] = k;
    addTriangle(vertices);
}

template <class T>
void TriMesh<T>::addTriangle(const Vector<int>& vertices)
{
    requireVertices(vertices, "void TriMesh<T>::addTriangle(const Vector<int>&)");
    const int number = getNumTriangles();
    triangles_.push_back(
        std::make_unique<Triangle<T>>(*this, vertices[0], vertices[1], vertices[2]));
    triangleIndexes.push_back(vertices);
    stars_.resize(std::max(stars_.size(), this->indices_.size()));
    for (int corner = 0; corner < 3; ++corner) {
        stars_[static_cast<std::size_t>(vertices[corner])].push_back(number);
    }
}

template <class T>
void TriMesh<T>::setTriangles(const std::vector<Vector<int>>& list)
{
    triangles_.clear();
    triangleIndexes.clear();
    stars_.assign(static_cast<std::size_t>(this->getSize()), {});
    for (const Vector<int>& vertices : list) {
        addTriangle(vertices);
        if (triangles_.back()->getServer() != this->getServer()) {
            std::cerr << "server differ \n";
        }
    }
}

template <class T>
void TriMesh<T>::setTriangleIndexes(int i, const Vector<int>& vertices)
{
    requireVertices(vertices, "void TriMesh<T>::setTriangleIndexes(const int,const Vector<int>&)");
    triangleIndexes[static_cast<std::size_t>(i)] = vertices;
}

template <class T>
void TriMesh<T>::invertTriangle(int i)
{
    Vector<int>& vertices = triangleIndexes[static_cast<std::size_t>(i)];
    std::swap(vertices[0], vertices[1]);
}

template <class T>
void TriMesh<T>::removeTriangle(int t)
{
    const auto place = static_cast<std::size_t>(t);
    if (triangles_[place] == nullptr) {
        return;
    }
    for (int corner = 0; corner < 3; ++corner) {
        dropFrom(stars_[static_cast<std::size_t>(triangleIndexes[place][corner])], t);
    }
    triangleIndexes[place].fill(-1);
    triangles_[place].reset();
}

template <class T>
const std::vector<int>& TriMesh<T>::star(int vertex) const
{
    // A list of vertices that is not known to be a mesh grows without it.
    static const std::vector<int> none;
    const auto place = static_cast<std::size_t>(vertex);
    return place < stars_.size() ? stars_[place] : none;
}

template <class T>
void TriMesh<T>::updateStar(int from, int to)
{
    const char* where = "void TriMesh<T>::updateStar(const int,const int)";
    if (std::min(from, to) < 0 || std::max(from, to) >= this->getSize()) {
        raise<RangeError>(where, "Vertex index out of range");
    }
    stars_.resize(std::max(stars_.size(), this->indices_.size()));
    std::vector<int>& source = stars_[static_cast<std::size_t>(from)];
    for (const int t : source) {
        if (getTriangleIndexes(t).find(to) != -1) {
            std::cerr << "problem in update star\n";
            raise<UsageError>(where, "A triangle holds both vertices");
        }
    }
    std::vector<int>& target = stars_[static_cast<std::size_t>(to)];
    for (const int t : source) {
        Vector<int>& vertices = triangleIndexes[static_cast<std::size_t>(t)];
        vertices.replace(from, to);
        Triangle<T>& view = *triangle(t);
        for (int corner = 0; corner < 3; ++corner) {
            if (view.getIndex(corner) == this->getIndex(from)) {
                view.setIndex(corner, this->getIndex(to));
            }
        }
        target.push_back(t);
    }
    source.clear();
}

template <class T>
std::vector<int> TriMesh<T>::neighbours(int vertex) const
{
    std::vector<int> list;
    for (const int t : star(vertex)) {
        const Vector<int>& vertices = getTriangleIndexes(t);
        list.insert(list.end(), vertices.data(), vertices.data() + 3);
    }
    makeSet(list);
    dropFrom(list, vertex);
    return list;
}

template <class T>
std::vector<int> TriMesh<T>::sharedTriangles(int i, int j) const
{
    std::vector<int> list = intersection(star(i), star(j));
    makeSet(list);
    return list;
}

template <class T>
std::vector<int> TriMesh<T>::neighboringTriangles(int t, bool byVertex) const
{
    std::vector<int> list;
    if (triangle(t) == nullptr) {
        return list;
    }
    const Vector<int>& vertices = getTriangleIndexes(t);
    for (int corner = 0; corner < 3; ++corner) {
        const std::vector<int> part =
            byVertex ? star(vertices[corner])
                     : sharedTriangles(vertices[corner], vertices[(corner + 1) % 3]);
        list.insert(list.end(), part.begin(), part.end());
    }
    makeSet(list);
    dropFrom(list, t);
    return list;
}

template <class T>
std::vector<bool> TriMesh<T>::vertexFlags() const
{
    const int size = this->getSize();
    std::vector<bool> flags(static_cast<std::size_t>(size), false);
    for (int i = 0; i < size; ++i) {
        if (flags[static_cast<std::size_t>(i)]) {
            continue;
        }
        for (const int j : neighbours(i)) {
            if (j > i && sharedTriangles(i, j).size() != 2) {
                flags[static_cast<std::size_t>(i)] = true;
                if (j < size) {
                    flags[static_cast<std::size_t>(j)] = true;
                }
                break;
            }
        }
    }
    return flags;
}

template <class T>
void TriMesh<T>::normalizeTriangleOrientations()
{
    if (triangles_.empty() || triangles_.front() == nullptr) {
        return;
    }
    std::vector<bool> reached(triangles_.size(), false);
    reached[0] = true;
    std::queue<int> waiting({0});
    for (; !waiting.empty(); waiting.pop()) {
        const int t = waiting.front();
        if (!(triangle(t)->area() > Vector<T>::epsilon())) {
            continue;
        }
        for (const int u : neighboringTriangles(t, false)) {
            if (!reached[static_cast<std::size_t>(u)]) {
                if (turnApart(getTriangleIndexes(t), getTriangleIndexes(u))) {
                    invertTriangle(u);
                }
                waiting.push(u);
                reached[static_cast<std::size_t>(u)] = true;
            }
        }
    }
}

template <class T>
void TriMesh<T>::setVertexColors(TriMesh<int>* colors)
{
    if (colors != nullptr && colors->getSize() != this->getSize()) {
        raise<SizeError>("void TriMesh<T>::setVertexColors(TriMesh<int>*)",
                         "The number of colors differs from the number of vertices");
    }
    if (colors != vertexColors.get()) {
        vertexColors.reset(colors);
    }
}

template class TriMesh<int>;
template class TriMesh<float>;
template class TriMesh<double>;
template class TriMesh<long double>;
