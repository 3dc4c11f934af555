#include "shape/vertices/vertices.h"

#include "shape/vertices/shapestream.h"
#include "system/exception.h"

#include <algorithm>
#include <exception>
#include <sstream>

namespace {

/// Runs an edit of an index list or its server under the lock of all lists. An error must not leave
/// the critical section on its own, so it is carried out.
template <class Edit>
void guarded(Edit&& edit)
{
    std::exception_ptr failure;
#pragma omp critical(vertices_vertex_operation)
    {
        try {
            edit();
        } catch (...) {
            failure = std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

} // namespace

template <class T>
Vertices<T>::Vertices() = default;

template <class T>
Vertices<T>::Vertices(int space, int size, int capacity, int growth)
    : Shape<T>(space, size, capacity, growth)
{
    setSize(size, true);
}

template <class T>
Vertices<T>::Vertices(const Vertices& other) = default;

template <class T>
Vertices<T>::Vertices(const std::string& filename)
{
    this->load(filename);
}

template <class T>
Vertices<T>::~Vertices() = default;

template <class T>
Vertices<T>& Vertices<T>::operator=(const Vertices& other)
{
    this->assign(other);
    return *this;
}

template <class T>
void Vertices<T>::assign(const VertexClient<T>& other)
{
    if (this == &other) {
        return;
    }
    const auto& vertices = dynamic_cast<const Vertices&>(other);
    std::vector<int> indices = vertices.indices_;
    Shape<T>::assign(other);
    indices_.swap(indices);
}

template <class T>
Vertices<T>* Vertices<T>::clone() const
{
    return new Vertices(*this);
}

template <class T>
int Vertices<T>::getNumVertices() const
{
    return getSize();
}

template <class T>
int Vertices<T>::getShapeType() const
{
    return 6;
}

template <class T>
bool Vertices<T>::isComposite() const
{
    return false;
}

template <class T>
Vector<T>& Vertices<T>::operator[](const Vector<unsigned int>& locator)
{
    return (*this)[static_cast<int>(locator[0])];
}

template <class T>
const Vector<T>& Vertices<T>::operator[](const Vector<unsigned int>& locator) const
{
    return (*this)[static_cast<int>(locator[0])];
}

template <class T>
int Vertices<T>::read(std::istream& stream)
{
    const ClassicFormat format(stream);
    int type = 0;
    int space = 0;
    int size = 0;
    if (!readHeaderLine(stream, type) || !readHeaderLine(stream, space) ||
        !readHeaderLine(stream, size)) {
        return -1;
    }
    if (!canHold(stream, space, size)) {
        stream.setstate(std::ios::failbit);
        return -1;
    }
    Vertices fresh(space, size, 0, 0);
    for (int i = 0; i < size; ++i) {
        Vector<T>& vertex = fresh[i];
        vertex.setZeros();
        for (int c = 0; c < space && stream; ++c) {
            readNumber(stream, vertex[c]);
        }
    }
    this->setServer(*fresh.server_);
    indices_ = fresh.indices_;
    return type;
}

template <class T>
void Vertices<T>::write(std::ostream& stream) const
{
    std::ostringstream text = textFor(stream);
    text << "# " << this->getShapeType() << "\n";
    text << "# " << this->getSpace() << "\n";
    text << "# " << getSize() << "\n";
    for (int i = 0; i < getSize(); ++i) {
        const Vector<T>& vertex = (*this)[i];
        for (int c = 0; c < vertex.getSize(); ++c) {
            text << (c > 0 ? " " : "") << vertex[c];
        }
        text << "\n";
    }
    writeText(stream, text, "void Vertices<T>::write(ostream&) const");
}

template <class T>
void Vertices<T>::print(const std::string& title, std::ostream& stream) const
{
    Shape<T>::print(title, stream);
    stream << " Size = " << getSize() << "\n";
    stream << " Indexes = \n";
    for (const int index : indices_) {
        stream << "   " << index << "\n";
    }
}

template <class T>
VertexIterator<T> Vertices<T>::vertexIterator()
{
    return VertexIterator<T>(new __ConcreteVertexIterator(*this));
}

template <class T>
ConstVertexIterator<T> Vertices<T>::vertexIterator() const
{
    return ConstVertexIterator<T>(new __ConcreteVertexIterator(*this));
}

template <class T>
void Vertices<T>::requireServer(const char* where) const
{
    if (this->server_ == nullptr) {
        raise<UsageError>(where, "This shape has no vertex server");
    }
}

template <class T>
int Vertices<T>::store(const Vector<T>& vertex)
{
    VertexServer<T>& server = *this->server_;
    const int slot = server.getSize();
    server.setSize(slot + 1);
    *server[slot] = vertex;
    return slot;
}

template <class T>
void Vertices<T>::append(const Vertices& other)
{
    requireServer("void Vertices<T>::append(const Vertices&)");
    guarded([&] {
        if (other.server_ == this->server_) {
            const std::vector<int> added = other.indices_;
            indices_.insert(indices_.end(), added.begin(), added.end());
            return;
        }
        VertexServer<T>& server = *this->server_;
        const int first = server.getSize();
        server.setSize(first + other.getSize());
        indices_.reserve(indices_.size() + other.indices_.size());
        for (int i = 0; i < other.getSize(); ++i) {
            *server[first + i] = other[i];
            indices_.push_back(first + i);
        }
    });
}

template <class T>
void Vertices<T>::setSize(int size, bool fill)
{
    const std::size_t former = indices_.size();
    indices_.resize(static_cast<std::size_t>(size));
    if (fill) {
        for (std::size_t i = former; i < indices_.size(); ++i) {
            indices_[i] = i == 0 ? 0 : indices_[i - 1] + 1;
        }
    }
}

template <class T>
void Vertices<T>::append(const Vector<T>& vertex)
{
    requireServer("void Vertices<T>::append(const Vector<T>&)");
    guarded([&] { indices_.push_back(store(vertex)); });
}

template <class T>
void Vertices<T>::prepend(const Vector<T>& vertex)
{
    requireServer("void Vertices<T>::prepend(const Vector<T>&)");
    guarded([&] { indices_.insert(indices_.begin(), store(vertex)); });
}

template <class T>
void Vertices<T>::insert(int position, const Vector<T>& vertex)
{
    requireServer("void Vertices<T>::insert(const int,const Vector<T>&)");
    guarded([&] { indices_.insert(indices_.begin() + position, store(vertex)); });
}

template <class T>
void Vertices<T>::remove(int i)
{
    guarded([&] { indices_.erase(indices_.begin() + i); });
}

template <class T>
void Vertices<T>::remove(int i, int j)
{
    guarded([&] { indices_.erase(indices_.begin() + i, indices_.begin() + std::max(i, j + 1)); });
}

template <class T>
void Vertices<T>::removeOutside(int i, int j)
{
    if (j < i) {
        return;
    }
    guarded([&] {
        const int first = std::clamp(i, 0, getSize());
        const int last = std::clamp(j, -1, getSize() - 1);
        indices_.erase(indices_.begin() + std::max(first, last + 1), indices_.end());
        indices_.erase(indices_.begin(), indices_.begin() + first);
    });
}

template <class T>
void Vertices<T>::removeDuplicates(bool closed)
{
    guarded([&] {
        std::vector<int> kept;
        kept.reserve(indices_.size());
        for (int i = 0; i < getSize(); ++i) {
            if (i == 0 || (*this)[i] != (*this)[i - 1]) {
                kept.push_back(getIndex(i));
            }
        }
        indices_.swap(kept);
        if (closed && getSize() > 1 && (*this)[getSize() - 1] == (*this)[0]) {
            indices_.pop_back();
        }
    });
}

template <class T>
void Vertices<T>::reverse()
{
    guarded([&] { std::reverse(indices_.begin(), indices_.end()); });
}

template <class T>
void Vertices<T>::setOrigin(int k)
{
    guarded([&] { std::rotate(indices_.begin(), indices_.begin() + k, indices_.end()); });
}

template <class T>
Vertices<T>::__ConcreteVertexIterator::__ConcreteVertexIterator(const Vertices& shape)
    : shape_(&shape)
{
    this->locator_.setSize(1);
    show();
}

template <class T>
typename Vertices<T>::__ConcreteVertexIterator* Vertices<T>::__ConcreteVertexIterator::clone() const
{
    return new __ConcreteVertexIterator(*this);
}

template <class T>
int Vertices<T>::__ConcreteVertexIterator::currentServerIndex() const
{
    return this->current_ == nullptr ? -1 : shape_->getIndex(position_);
}

template <class T>
void Vertices<T>::__ConcreteVertexIterator::operator++(int)
{
    ++*this;
}

template <class T>
void Vertices<T>::__ConcreteVertexIterator::operator++()
{
    if (this->current_ != nullptr) {
        ++position_;
        show();
    }
}

template <class T>
void Vertices<T>::__ConcreteVertexIterator::rewind()
{
    position_ = 0;
    show();
}

template <class T>
void Vertices<T>::__ConcreteVertexIterator::show()
{
    this->locator_[0] = static_cast<unsigned int>(position_);
    this->current_ = position_ < shape_->getSize()
                         ? shape_->server_->vertex(shape_->getIndex(position_))
                         : nullptr;
}

template class Vertices<int>;
template class Vertices<float>;
template class Vertices<double>;
template class Vertices<long double>;
