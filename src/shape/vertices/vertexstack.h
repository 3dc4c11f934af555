#pragma once

#include "shape/vertices/vertices.h"

#include <memory>
#include <vector>

/// A list of levels, each a list of vertices. The levels normally stand on the stack's own server,
/// each with its own indices; a level that comes from elsewhere keeps its server.
///
/// A place in the stack has two elements, level and position. A walk over the vertices ends at the
/// first empty level.
template <class T>
class VertexStack : public Shape<T>
{
public:
    class __ConcreteVertexIterator;

    /// No server, no level.
    VertexStack();

    /// `height` levels of `size` vertices each on one new server; a `capacity` or `growth` below 1
    /// stands for the number of all vertices.
    VertexStack(int space, int height, int size, int capacity, int growth);

    /// Shares the server, copies the levels' index lists.
    VertexStack(const VertexStack& other);

    /// Reads the file, see `load`.
    explicit VertexStack(const std::string& filename);
    ~VertexStack() override;

    using Shape<T>::operator=;
    VertexStack& operator=(const VertexStack& other);

    /// Takes the levels of another stack, sharing their vertices; raises the standard bad cast
    /// error on any other shape.
    void assign(const VertexClient<T>& other) override;

    /// Makes stack and levels the only clients of their server: unless they are, all vertices are
    /// copied to a new server, level after level.
    void detach() override;

    VertexStack* clone() const override;
    int getSpace() const override;
    int getNumVertices() const override;
    int getShapeType() const override;
    bool isComposite() const override;
    Vector<T>& operator[](const Vector<unsigned int>& locator) override;
    const Vector<T>& operator[](const Vector<unsigned int>& locator) const override;

    /// The text form: three lines of "# " and the type number, the dimension, the number of levels;
    /// for each level two empty lines, "# " and its size, then one line per vertex. A failed read
    /// leaves the stack as it was.
    int read(std::istream& stream) override;
    void write(std::ostream& stream) const override;
    void print(const std::string& title, std::ostream& stream) const override;

    VertexIterator<T> vertexIterator() override;
    ConstVertexIterator<T> vertexIterator() const override;

    /// Adds copies of all levels of `stack` at the end or at the front, in their order.
    virtual void append(const VertexStack& stack);
    virtual void prepend(const VertexStack& stack);

    /// Adds a copy of `level`, which shares the vertices, at the end or at the front.
    virtual void append(const Vertices<T>& level);
    virtual void prepend(const Vertices<T>& level);

    /// Puts a copy of `level` before level `i` (`0 .. height`). A stack without a server takes the
    /// level's.
    virtual void insert(unsigned int i, const Vertices<T>& level);

    /// An empty level of the class that this stack holds; the caller owns it.
    virtual Vertices<T>* newLevel() const;

    /// Number of levels.
    int getHeight() const { return static_cast<int>(levels_.size()); }

    /// A level; unchecked.
    Vertices<T>& operator[](int i) { return *levels_[static_cast<std::size_t>(i)]; }

    const Vertices<T>& operator[](int i) const { return *levels_[static_cast<std::size_t>(i)]; }

    /// Drops level `i`; unchecked.
    void remove(int i);

    /// Reverses the order of the levels.
    void reverse();

    /// Sorts the levels by coordinate `c` of their first vertex, ascending; equal ones stay in
    /// their order, empty ones come first.
    void sort(int c);

    /// A stack of the same levels and sizes in two dimensions: for each vertex level and position
    /// of the first nearest vertex of `other`. Costs the product of the sizes.
    VertexStack closestPointMap(const VertexStack& other) const;

protected:
    /// Replaces everything by new levels; for constructors, which make levels of their own class.
    void create(int space, int height, int size, int capacity, int growth);
    void takeLevels(const VertexStack& other);

    std::vector<std::unique_ptr<Vertices<T>>> levels_;

private:
    std::vector<const Vertices<T>*> levelPointers() const;
};

/// The walk over the levels, one after the other; its locator has two elements.
template <class T>
class VertexStack<T>::__ConcreteVertexIterator : public ConcreteVertexIterator<T>
{
public:
    explicit __ConcreteVertexIterator(const VertexStack& stack);
    __ConcreteVertexIterator(const __ConcreteVertexIterator& other);
    ~__ConcreteVertexIterator() override;

    __ConcreteVertexIterator* clone() const override;
    int currentServerIndex() const override;
    void operator++(int) override;
    void operator++() override;
    void rewind() override;

private:
    void enterLevel();
    void show();

    const VertexStack* stack_;
    int level_ = 0;
    std::unique_ptr<ConcreteVertexIterator<T>> inner_;
};

extern template class VertexStack<int>;
extern template class VertexStack<float>;
extern template class VertexStack<double>;
extern template class VertexStack<long double>;
