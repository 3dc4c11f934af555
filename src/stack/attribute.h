#pragma once

#include <optional>

/// What the optional attributes of models and items share, for one attribute.
namespace attribute {

/// `mine` takes over a defined `other`.
template <class T>
void update(std::optional<T>& mine, const std::optional<T>& other)
{
    if (other) {
        mine = other;
    }
}

/// The value that both define, else undefined.
template <class T>
std::optional<T> common(const std::optional<T>& a, const std::optional<T>& b)
{
    return a && a == b ? a : std::nullopt;
}

/// `mine` unless `other` is the same.
template <class T>
std::optional<T> difference(const std::optional<T>& mine, const std::optional<T>& other)
{
    return mine == other ? std::nullopt : mine;
}

} // namespace attribute
