#pragma once

#include "numerics/vector.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

/// A reference-counted pool of vertices, shared by the shapes that stand on it.
///
/// The pool is a row of slots; each slot holds a vertex of `space` elements on the heap, so that a
/// pointer to a vertex outlives any growth of the pool. Slots `0 .. size-1` are in use, the number
/// of slots is the capacity. Vertices are never taken out: a shape that drops one forgets its slot.
/// New vertices are not initialised.
///
/// Clients own the pool together: `ref` and `deref` count them, and the last `deref` deletes it.
/// The count is a plain int: clients of one pool must not be copied or destroyed concurrently.
template <class T>
class VertexServer
{
public:
    /// A `growth` below 1 stands for `size`, a `capacity` below 1 for `size`. So `(2, 0, 0, 0)` has
    /// no slots and grows by one at a time.
    VertexServer(int space, int size, int capacity, int growth);

    /// Deep copy of all slots, also of those beyond the size; nobody refers to it yet.
    VertexServer(const VertexServer& other);
    VertexServer& operator=(const VertexServer& other);
    ~VertexServer();

    /// The vertex in a slot; the slot is not checked.
    Vector<T>* operator[](int slot) { return slots_[static_cast<std::size_t>(slot)].get(); }

    const Vector<T>* operator[](int slot) const
    {
        return slots_[static_cast<std::size_t>(slot)].get();
    }

    /// The same as `operator[]`.
    Vector<T>* vertex(int slot) { return (*this)[slot]; }

    const Vector<T>* vertex(int slot) const { return (*this)[slot]; }

    /// Dimension of every vertex.
    int getSpace() const { return space_; }

    /// Number of vertices in use.
    int getSize() const { return size_; }

    /// Number of slots.
    int getCapacity() const { return static_cast<int>(slots_.size()); }

    int getGrowth() const { return growth_; }

    void setGrowth(int growth) { growth_ = growth; }

    /// Number of clients.
    int getRefs() const { return refs_; }

    /// Makes `size` vertices usable. The capacity grows by whole steps of `growth` (at least 1);
    /// it never shrinks, so vertices beyond a lower size keep their values for a later, higher one.
    /// A negative size raises the length error of the standard vector.
    void setSize(int size);

    /// Creates or deletes slots at the end; lowers the size to `capacity` where it was above.
    /// A negative capacity raises the length error of the standard vector.
    void setCapacity(int capacity);

    /// Copies the vertices in use of `other` behind those of this pool. Raises `ValueError` for the
    /// pool itself and for a pool of another dimension.
    void append(const VertexServer& other);

    /// Deletes every vertex.
    void clear();

    void ref() { ++refs_; }

    /// Takes one client away; without a client left the pool deletes itself. Nothing happens where
    /// there was no client.
    void deref();

    /// Writes the fields and all vertices in use, for debugging.
    void print(const std::string& title, std::ostream& stream) const;

private:
    int space_;
    int size_;
    int growth_;
    int refs_ = 0;
    std::vector<std::unique_ptr<Vector<T>>> slots_;
};

extern template class VertexServer<int>;
extern template class VertexServer<float>;
extern template class VertexServer<double>;
extern template class VertexServer<long double>;
