#include "image/values/valuetype.h"

std::size_t bytesPerSample(ValueType type)
{
    return withValueType(
        type, [](auto sample) { return sizeof(typename decltype(sample)::type); },
        [] { return std::size_t(0); });
}

bool isValueType(ValueType type)
{
    return bytesPerSample(type) != 0;
}
