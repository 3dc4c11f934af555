#include "shape/curves/curvestack.h"

#include "system/exception.h"

template <class T>
CurveStack<T>::CurveStack() = default;

template <class T>
CurveStack<T>::CurveStack(int space, int height, int size, int capacity, int growth, bool open)
    : open_(open)
{
    this->create(space, height, size, capacity, growth);
}

template <class T>
CurveStack<T>::CurveStack(const VertexStack<T>& stack, bool open)
    : open_(open)
{
    VertexClient<T>::assign(stack);
    for (int k = 0; k < stack.getHeight(); ++k) {
        this->levels_.push_back(std::make_unique<Curve<T>>(stack[k], open));
    }
}

template <class T>
CurveStack<T>::CurveStack(const CurveStack& other)
    : VertexStack<T>()
    , open_(other.open_)
{
    VertexStack<T>::assign(other);
}

template <class T>
CurveStack<T>::CurveStack(const std::string& filename)
{
    this->load(filename);
}

template <class T>
CurveStack<T>::~CurveStack() = default;

template <class T>
CurveStack<T>& CurveStack<T>::operator=(const CurveStack& other)
{
    this->assign(other);
    return *this;
}

template <class T>
void CurveStack<T>::assign(const VertexClient<T>& other)
{
    const auto& stack = dynamic_cast<const CurveStack&>(other);
    VertexStack<T>::assign(other);
    open_ = stack.open_;
}

template <class T>
CurveStack<T>* CurveStack<T>::clone() const
{
    return new CurveStack(*this);
}

template <class T>
int CurveStack<T>::getShapeType() const
{
    return open_ ? 3 : 2;
}

template <class T>
int CurveStack<T>::read(std::istream& stream)
{
    const int type = VertexStack<T>::read(stream);
    if (type != -1) {
        setOpen(type == 3);
    }
    return type;
}

template <class T>
void CurveStack<T>::insert(unsigned int i, const Vertices<T>& level)
{
    if (dynamic_cast<const Curve<T>&>(level).isOpen() != open_) {
        raise<TypeError>("void CurveStack<T>::insert(...)", "Closure mismatch");
    }
    VertexStack<T>::insert(i, level);
}

template <class T>
Vertices<T>* CurveStack<T>::newLevel() const
{
    auto level = std::make_unique<Curve<T>>();
    level->setOpen(open_);
    return level.release();
}

template <class T>
void CurveStack<T>::setOpen(bool open)
{
    open_ = open;
    for (int k = 0; k < this->getHeight(); ++k) {
        (*this)[k].setOpen(open);
    }
}

template <class T>
bool CurveStack<T>::isBranching() const
{
    for (int k = 1; k < this->getHeight(); ++k) {
        const Curve<T>& below = (*this)[k - 1];
        const Curve<T>& above = (*this)[k];
        if (below.getSize() > 0 && above.getSize() > 0 && below[0][2] == above[0][2]) {
            return true;
        }
    }
    return false;
}

template <class T>
CurveStack<T> CurveStack<T>::closestPointMap(const CurveStack& other) const
{
    return CurveStack(VertexStack<T>::closestPointMap(other), open_);
}

template class CurveStack<int>;
template class CurveStack<float>;
template class CurveStack<double>;
template class CurveStack<long double>;
