#pragma once

#include <string>
#include <type_traits>

/// What the element types of vectors and matrices are called in messages, and which of them lack an
/// operation.

/// The name of the type `T` as it is written in code: "unsigned char".
template <class T>
const char* elementTypeName();

/// Whether `T` is one of the types `Listed`.
template <class T, class... Listed>
inline constexpr bool isOneOf = (std::is_same_v<T, Listed> || ...);

/// Raises `TypeError` "Method not available for type 'int'" (with the name of `T`) for an operation
/// that needs real numbers. In `signature` the word "T" stands for the element type; the error
/// names the operation with the type in its place.
template <class T>
[[noreturn]] void raiseNotAvailable(const std::string& signature);

/// `signature` with each word "T" replaced by `name`.
std::string instantiatedSignature(const std::string& signature, const std::string& name);
