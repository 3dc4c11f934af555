#include "shape/vertices/vertexserver.h"

#include "system/exception.h"

#include <algorithm>
#include <cstdint>

template <class T>
VertexServer<T>::VertexServer(int space, int size, int capacity, int growth)
    : space_(space)
    , size_(size)
    , growth_(growth < 1 ? size : growth)
{
    setCapacity(size < 0 ? size : std::max(size, capacity));
}

template <class T>
VertexServer<T>::VertexServer(const VertexServer& other)
    : space_(other.space_)
    , size_(0)
    , growth_(other.growth_)
{
    *this = other;
}

template <class T>
VertexServer<T>& VertexServer<T>::operator=(const VertexServer& other)
{
    if (this == &other) {
        return *this;
    }
    clear();
    refs_ = 0;
    space_ = other.space_;
    growth_ = other.growth_;
    slots_.reserve(other.slots_.size());
    for (const auto& slot : other.slots_) {
        slots_.push_back(std::make_unique<Vector<T>>(*slot));
    }
    size_ = other.size_;
    return *this;
}

template <class T>
VertexServer<T>::~VertexServer() = default;

template <class T>
void VertexServer<T>::setSize(int size)
{
    if (size < 0) {
        setCapacity(size);
    }
    if (size > getCapacity()) {
        const std::int64_t step = std::max(growth_, 1);
        const std::int64_t steps = (std::int64_t(size) - getCapacity() + step - 1) / step;
        const std::int64_t capacity = getCapacity() + steps * step;
        setCapacity(static_cast<int>(std::min<std::int64_t>(capacity, INT32_MAX)));
    }
    size_ = size;
}

template <class T>
void VertexServer<T>::setCapacity(int capacity)
{
    const auto slots = static_cast<std::size_t>(capacity);
    if (capacity < 0 || slots < slots_.size()) {
        slots_.resize(slots);
        size_ = std::min(size_, capacity);
    }
    // The standard vector makes room in steps of its own, so that growth slot by slot stays linear.
    while (slots_.size() < slots) {
        slots_.push_back(std::make_unique<Vector<T>>(space_));
    }
}

template <class T>
void VertexServer<T>::append(const VertexServer& other)
{
    const char* where = "void VertexServer<T>::append(const VertexServer&)";
    if (this == &other) {
        raise<ValueError>(where, "Cannot append server to itself");
    }
    if (space_ != other.space_) {
        raise<ValueError>(where, "Incompatible server space dimension");
    }
    const int first = size_;
    setSize(size_ + other.size_);
    for (int i = 0; i < other.size_; ++i) {
        *(*this)[first + i] = *other[i];
    }
}

template <class T>
void VertexServer<T>::clear()
{
    slots_.clear();
    size_ = 0;
}

template <class T>
void VertexServer<T>::deref()
{
    if (refs_ < 1) {
        return;
    }
    --refs_;
    if (refs_ == 0) {
        delete this;
    }
}

template <class T>
void VertexServer<T>::print(const std::string& title, std::ostream& stream) const
{
    stream << title << "\n";
    stream << "  address  = " << static_cast<const void*>(this) << "\n";
    stream << "  refs     = " << refs_ << "\n";
    stream << "  space    = " << space_ << "\n";
    stream << "  capacity = " << getCapacity() << "\n";
    stream << "  size     = " << size_ << "\n";
    stream << "  growth   = " << growth_ << "\n";
    for (int i = 0; i < size_; ++i) {
        const Vector<T>& vertex = *(*this)[i];
        for (int c = 0; c < vertex.getSize(); ++c) {
            stream << (c > 0 ? " " : "") << vertex[c];
        }
        stream << "\n";
    }
}

template class VertexServer<int>;
template class VertexServer<float>;
template class VertexServer<double>;
template class VertexServer<long double>;
