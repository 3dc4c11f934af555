#include "shape/vertices/concretevertexiterator.h"

template <class T>
ConcreteVertexIterator<T>::ConcreteVertexIterator() = default;

template <class T>
ConcreteVertexIterator<T>::~ConcreteVertexIterator() = default;

template <class T>
ConcreteVertexIterator<T>* ConcreteVertexIterator<T>::clone() const
{
    return new ConcreteVertexIterator(*this);
}

template <class T>
Vector<T>* ConcreteVertexIterator<T>::current()
{
    return current_;
}

template <class T>
const Vector<T>* ConcreteVertexIterator<T>::current() const
{
    return current_;
}

template <class T>
const Vector<unsigned int>& ConcreteVertexIterator<T>::locator() const
{
    return locator_;
}

template <class T>
int ConcreteVertexIterator<T>::currentServerIndex() const
{
    return -1;
}

template <class T>
void ConcreteVertexIterator<T>::operator++(int)
{}

template <class T>
void ConcreteVertexIterator<T>::operator++()
{}

template <class T>
void ConcreteVertexIterator<T>::rewind()
{}

template class ConcreteVertexIterator<int>;
template class ConcreteVertexIterator<float>;
template class ConcreteVertexIterator<double>;
template class ConcreteVertexIterator<long double>;
