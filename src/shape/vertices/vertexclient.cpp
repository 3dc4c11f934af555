#include "shape/vertices/vertexclient.h"

template <class T>
VertexClient<T>::VertexClient() = default;

template <class T>
VertexClient<T>::VertexClient(int space, int size, int capacity, int growth)
    : server_(new VertexServer<T>(space, size, capacity, growth))
{
    server_->ref();
}

template <class T>
VertexClient<T>::VertexClient(const VertexClient& other)
    : server_(other.server_)
{
    if (server_ != nullptr) {
        server_->ref();
    }
}

template <class T>
VertexClient<T>& VertexClient<T>::operator=(const VertexClient& other)
{
    assign(other);
    return *this;
}

template <class T>
void VertexClient<T>::assign(const VertexClient& other)
{
    if (this != &other && other.server_ != nullptr) {
        setServer(*other.server_);
    }
}

template <class T>
VertexClient<T>::~VertexClient()
{
    if (server_ != nullptr) {
        server_->deref();
    }
}

template <class T>
void VertexClient<T>::detach()
{
    if (server_ == nullptr || server_->getRefs() < 2) {
        return;
    }
    auto* const copy = new VertexServer<T>(*server_);
    setServer(*copy);
}

template <class T>
void VertexClient<T>::setServer(VertexServer<T>& server)
{
    if (server_ == &server) {
        return;
    }
    server.ref();
    if (server_ != nullptr) {
        server_->deref();
    }
    server_ = &server;
}

template <class T>
void VertexClient<T>::print(const std::string& title, std::ostream& stream) const
{
    stream << title << "\n";
    if (server_ == nullptr) {
        stream << " Server: (nil)\n";
    } else {
        server_->print(" Server:", stream);
    }
}

template class VertexClient<int>;
template class VertexClient<float>;
template class VertexClient<double>;
template class VertexClient<long double>;
