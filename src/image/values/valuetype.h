#pragma once

#include <cstddef>
#include <type_traits>

/// The type of an `Image2` sample. The numbers are those of `Scalar`, with the two 16-bit types in
/// the same order.
enum class ValueType {
    UnsignedChar = 0,
    UnsignedShort = 1,
    Short = 2,
    Int = 3,
    UnsignedInt = 4,
    Float = 5,
    Double = 6,
};

/// Bytes of one sample; 0 for a number outside the list.
std::size_t bytesPerSample(ValueType type);

/// Whether the number is one of the list.
bool isValueType(ValueType type);

/// The value type of a C++ type. Fails to compile for a type off the list.
template <class T>
constexpr ValueType valueTypeOf()
{
    if constexpr (std::is_same_v<T, unsigned char>) {
        return ValueType::UnsignedChar;
    } else if constexpr (std::is_same_v<T, unsigned short>) {
        return ValueType::UnsignedShort;
    } else if constexpr (std::is_same_v<T, short>) {
        return ValueType::Short;
    } else if constexpr (std::is_same_v<T, int>) {
        return ValueType::Int;
    } else if constexpr (std::is_same_v<T, unsigned int>) {
        return ValueType::UnsignedInt;
    } else if constexpr (std::is_same_v<T, float>) {
        return ValueType::Float;
    } else {
        static_assert(std::is_same_v<T, double>, "not a sample type");
        return ValueType::Double;
    }
}

/// A C++ type as a value, for `withValueType`.
template <class T>
struct SampleType
{
    using type = T;
};

/// Calls `action(SampleType<T>())` with the C++ type of `type` and returns its result; for a number
/// outside the list, `otherwise()`, which must raise an error or return the same type.
template <class Action, class Otherwise>
auto withValueType(ValueType type, Action&& action, Otherwise&& otherwise)
    -> decltype(action(SampleType<unsigned char>()))
{
    switch (type) {
    case ValueType::UnsignedChar:
        return action(SampleType<unsigned char>());
    case ValueType::UnsignedShort:
        return action(SampleType<unsigned short>());
    case ValueType::Short:
        return action(SampleType<short>());
    case ValueType::Int:
        return action(SampleType<int>());
    case ValueType::UnsignedInt:
        return action(SampleType<unsigned int>());
    case ValueType::Float:
        return action(SampleType<float>());
    case ValueType::Double:
        return action(SampleType<double>());
    }
    return otherwise();
}
