#include "numerics/elementtype.h"

#include "system/exception.h"

#include <cctype>

template <>
const char* elementTypeName<bool>()
{
    return "bool";
}

template <>
const char* elementTypeName<char>()
{
    return "char";
}

template <>
const char* elementTypeName<unsigned char>()
{
    return "unsigned char";
}

template <>
const char* elementTypeName<short>()
{
    return "short";
}

template <>
const char* elementTypeName<unsigned short>()
{
    return "unsigned short";
}

template <>
const char* elementTypeName<int>()
{
    return "int";
}

template <>
const char* elementTypeName<unsigned int>()
{
    return "unsigned int";
}

template <>
const char* elementTypeName<long>()
{
    return "long";
}

std::string instantiatedSignature(const std::string& signature, const std::string& name)
{
    const auto isWordCharacter = [&](std::size_t position) {
        return position < signature.size() &&
               (std::isalnum(static_cast<unsigned char>(signature[position])) != 0 ||
                signature[position] == '_');
    };
    std::string result;
    for (std::size_t i = 0; i < signature.size(); ++i) {
        const bool startsWord = i == 0 || !isWordCharacter(i - 1);
        if (signature[i] == 'T' && startsWord && !isWordCharacter(i + 1)) {
            result += name;
        } else {
            result += signature[i];
        }
    }
    return result;
}

template <class T>
void raiseNotAvailable(const std::string& signature)
{
    const std::string name = elementTypeName<T>();
    raise<TypeError>(instantiatedSignature(signature, name),
                     "Method not available for type '" + name + "'");
}

template void raiseNotAvailable<bool>(const std::string&);
template void raiseNotAvailable<char>(const std::string&);
template void raiseNotAvailable<unsigned char>(const std::string&);
template void raiseNotAvailable<short>(const std::string&);
template void raiseNotAvailable<unsigned short>(const std::string&);
template void raiseNotAvailable<int>(const std::string&);
template void raiseNotAvailable<unsigned int>(const std::string&);
template void raiseNotAvailable<long>(const std::string&);
