#pragma once

#include <cmath>
#include <type_traits>

/// Arithmetic in exactly one element type: integers wrap around, also where the language leaves an
/// overflow undefined, and the result of each step is an element again.

/// The type in which integers of type `T` wrap around without being undefined: unsigned, and not
/// narrower than what the operands are promoted to.
template <class T, bool isInteger = std::is_integral_v<T> && !std::is_same_v<T, bool>>
struct WrapAround
{
    using Type = std::common_type_t<unsigned int, std::make_unsigned_t<T>>;
};

/// Real numbers stay as they are; `bool` is computed as `int`, which its values can't overflow.
template <class T>
struct WrapAround<T, false>
{
    using Type = std::conditional_t<std::is_same_v<T, bool>, int, T>;
};

/// Where real numbers are needed: the type itself if it is one, else `double`.
template <class T>
using RealOf = std::conditional_t<std::is_floating_point_v<T>, T, double>;

template <class T>
inline T added(T a, T b)
{
    using Wide = typename WrapAround<T>::Type;
    return static_cast<T>(static_cast<Wide>(a) + static_cast<Wide>(b));
}

template <class T>
inline T subtracted(T a, T b)
{
    using Wide = typename WrapAround<T>::Type;
    return static_cast<T>(static_cast<Wide>(a) - static_cast<Wide>(b));
}

template <class T>
inline T multiplied(T a, T b)
{
    using Wide = typename WrapAround<T>::Type;
    return static_cast<T>(static_cast<Wide>(a) * static_cast<Wide>(b));
}

template <class T>
inline T divided(T a, T b)
{
    return static_cast<T>(a / b);
}

template <class T>
inline T negated(T a)
{
    if constexpr (std::is_floating_point_v<T>) {
        return -a;
    } else {
        return subtracted(T(0), a);
    }
}

/// The absolute value; that of the smallest integer, which has none, is itself.
template <class T>
inline T absolute(T a)
{
    if constexpr (std::is_floating_point_v<T>) {
        return std::abs(a);
    } else if constexpr (std::is_signed_v<T>) {
        return a < 0 ? negated(a) : a;
    } else {
        return a;
    }
}

/// The square root as an element: of an integer by way of `double`, truncated.
template <class T>
inline T squareRoot(T a)
{
    return static_cast<T>(std::sqrt(static_cast<RealOf<T>>(a)));
}
