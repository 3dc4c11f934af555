#pragma once

#include "shape/vertices/shape.h"

/// An ordered list of vertices: position `i` of the shape is the vertex in slot `indices[i]` of the
/// server. A slot may stand at several positions and in several shapes.
///
/// Editing the list (reversing, inserting, removing, turning) moves indices, never coordinates.
/// These edits are guarded by one OpenMP critical section common to all lists, so that lists on one
/// server can grow side by side; reading takes no lock.
template <class T>
class Vertices : public Shape<T>
{
public:
    class __ConcreteVertexIterator;

    /// No server, no vertices.
    Vertices();

    /// Positions `0 .. size-1` on a new server with these arguments.
    Vertices(int space, int size, int capacity, int growth);

    /// Shares the server, copies the index list.
    Vertices(const Vertices& other);

    /// Reads the file, see `load`.
    explicit Vertices(const std::string& filename);
    ~Vertices() override;

    using Shape<T>::operator=;
    Vertices& operator=(const Vertices& other);

    /// Shares the server and copies the index list; the argument must be a `Vertices`, otherwise
    /// the standard bad cast error is raised.
    void assign(const VertexClient<T>& other) override;

    Vertices* clone() const override;
    int getNumVertices() const override;
    int getShapeType() const override;
    bool isComposite() const override;
    Vector<T>& operator[](const Vector<unsigned int>& locator) override;
    const Vector<T>& operator[](const Vector<unsigned int>& locator) const override;

    /// The text form: three lines of "# " and the type number, the dimension, the number of
    /// vertices; then one line per vertex with its coordinates, a blank between them. Closing edge
    /// and index list are not stored.
    int read(std::istream& stream) override;
    void write(std::ostream& stream) const override;
    void print(const std::string& title, std::ostream& stream) const override;

    VertexIterator<T> vertexIterator() override;
    ConstVertexIterator<T> vertexIterator() const override;

    /// Appends the vertices of `other`. On the same server the two then share them; from another
    /// server they are copied by value.
    virtual void append(const Vertices& other);

    /// The vertex at a position; unchecked.
    Vector<T>& operator[](int i)
    {
        return *(*this->server_)[indices_[static_cast<std::size_t>(i)]];
    }

    const Vector<T>& operator[](int i) const
    {
        return *(*this->server_)[indices_[static_cast<std::size_t>(i)]];
    }

    /// The same as `operator[]`.
    Vector<T>& vertex(int i) { return (*this)[i]; }

    const Vector<T>& vertex(int i) const { return (*this)[i]; }

    /// Number of positions.
    int getSize() const { return static_cast<int>(indices_.size()); }

    /// The server slot at a position.
    int getIndex(int i) const { return indices_[static_cast<std::size_t>(i)]; }

    void setIndex(int i, int slot) { indices_[static_cast<std::size_t>(i)] = slot; }

    /// Resizes the index list alone; the caller sizes the server. With `fill`, new entries take the
    /// numbers that follow the last index (from 0 in an empty list), otherwise 0.
    void setSize(int size, bool fill);

    /// Copies a vertex into a new slot of the server and puts it at the end, at the front, or
    /// before position `position` (`0 .. size`). The list needs a server.
    void append(const Vector<T>& vertex);
    void prepend(const Vector<T>& vertex);
    void insert(int position, const Vector<T>& vertex);

    /// Drops position `i`, or positions `i .. j`, both included; unchecked.
    void remove(int i);
    void remove(int i, int j);

    /// Keeps positions `i .. j` alone, as far as they exist; does nothing if `j < i`.
    void removeOutside(int i, int j);

    /// Drops every position whose vertex equals the one before it, exactly; with `closed` also the
    /// last one if it equals the first.
    void removeDuplicates(bool closed);

    void reverse();

    /// Turns the list so that position `k` (`0 .. size-1`) becomes position 0.
    void setOrigin(int k);

    /// Position of the first vertex with the largest or smallest coordinate `c`; 0 below two
    /// vertices.
    int findMax(int c) const;
    int findMin(int c) const;

    /// The positions `i` of this shape and `j` of `shape` with the smallest squared distance, the
    /// first pair in the order of `i`, then `j`. Both are left alone where a shape is empty.
    void closestPoints(const Vertices& shape, int& i, int& j) const;

    /// For each position of this shape the position in `shape` of the first nearest vertex, 0 where
    /// that has none. Costs the product of the sizes.
    Vector<int> closestPointMap(const Vertices& shape) const;

    /// The shift `k` for which this shape, begun at `k`, fits `shape` best: the largest sum of
    /// scalar products of vertex `i` with vertex `(i - k) mod n`, the smallest `k` on ties. Raises
    /// `SizeError` where sizes differ. Quadratic.
    int findMatch(const Vertices& shape) const;

    /// Turns this list to its best match.
    void match(const Vertices& shape);

    /// Mean axis of the vertices as seen from `centre` (without it, from the centre of gravity), in
    /// two dimensions: opposite directions count as the same. The length, 0 to 1, tells how far the
    /// directions agree. With `weighted` each direction counts by its distance. A vertex in the
    /// centre has no direction and is left out. Raises `ProgramError` in other dimensions; an empty
    /// vector for `int`.
    ///
    /// Source: K. V. Mardia and P. E. Jupp, Directional Statistics, 2000, section 1.4.
    Vector<T> meanDirection(const Vector<T>& centre, bool weighted) const;
    Vector<T> meanDirection(bool weighted) const;

protected:
    std::vector<int> indices_;

private:
    void requireServer(const char* where) const;
    int store(const Vector<T>& vertex);
    int closestPosition(const Vector<T>& vertex, T& distance) const;
};

/// The walk over a list of vertices; its locator has one element, the position.
template <class T>
class Vertices<T>::__ConcreteVertexIterator : public ConcreteVertexIterator<T>
{
public:
    explicit __ConcreteVertexIterator(const Vertices& shape);

    __ConcreteVertexIterator* clone() const override;
    int currentServerIndex() const override;
    void operator++(int) override;
    void operator++() override;
    void rewind() override;

private:
    void show();

    const Vertices* shape_;
    int position_ = 0;
};

extern template class Vertices<int>;
extern template class Vertices<float>;
extern template class Vertices<double>;
extern template class Vertices<long double>;
