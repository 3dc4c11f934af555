#pragma once

#include "shape/vertices/vertexserver.h"

#include <ostream>
#include <string>

/// Base of all that stands on a vertex server: holds the server, shares it when copied.
///
/// Nothing is copied on write. A client that is to change without the others calls `detach` first.
template <class T>
class VertexClient
{
public:
    /// A client without a server: it can be assigned, but has no storage of its own.
    VertexClient();

    /// A client of a new server, which gets these arguments.
    VertexClient(int space, int size, int capacity, int growth);

    /// Shares the server of `other`.
    VertexClient(const VertexClient& other);

    /// Calls the virtual `assign`, so that derived classes copy what they add.
    virtual VertexClient& operator=(const VertexClient& other);

    /// Shares the server of `other`; a client without one leaves this client's server in place.
    virtual void assign(const VertexClient& other);

    virtual ~VertexClient();

    /// Makes this client the only one of its server: if others share it, this one moves to a deep
    /// copy of all slots. Slot numbers stay the same.
    virtual void detach();

    /// Moves this client to `server`, whose client it becomes.
    void setServer(VertexServer<T>& server);

    /// The server, or null.
    VertexServer<T>* getServer() { return server_; }

    const VertexServer<T>* getServer() const { return server_; }

    /// Writes the title and the server's fields, for debugging.
    void print(const std::string& title, std::ostream& stream) const;

protected:
    VertexServer<T>* server_ = nullptr;
};

extern template class VertexClient<int>;
extern template class VertexClient<float>;
extern template class VertexClient<double>;
extern template class VertexClient<long double>;
