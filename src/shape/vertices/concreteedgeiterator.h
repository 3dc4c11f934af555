#pragma once

template <class T>
class Edge;

/// A walk over the edges of one shape; the base class walks over nothing, so a shape without edges
/// yields none.
template <class T>
class ConcreteEdgeIterator
{
public:
    ConcreteEdgeIterator();
    virtual ~ConcreteEdgeIterator();

    /// The edge reached, null at the end. The same object may serve each step: don't keep it.
    virtual Edge<T>* current();

    virtual void operator++(int);

    /// Goes back to the first edge.
    virtual void rewind();
};

extern template class ConcreteEdgeIterator<int>;
extern template class ConcreteEdgeIterator<float>;
extern template class ConcreteEdgeIterator<double>;
extern template class ConcreteEdgeIterator<long double>;
