#include "shape/vertices/concreteedgeiterator.h"

template <class T>
ConcreteEdgeIterator<T>::ConcreteEdgeIterator() = default;

template <class T>
ConcreteEdgeIterator<T>::~ConcreteEdgeIterator() = default;

template <class T>
Edge<T>* ConcreteEdgeIterator<T>::current()
{
    return nullptr;
}

template <class T>
void ConcreteEdgeIterator<T>::operator++(int)
{}

template <class T>
void ConcreteEdgeIterator<T>::rewind()
{}

template class ConcreteEdgeIterator<int>;
template class ConcreteEdgeIterator<float>;
template class ConcreteEdgeIterator<double>;
template class ConcreteEdgeIterator<long double>;
