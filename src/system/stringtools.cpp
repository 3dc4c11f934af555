#include "system/stringtools.h"

#include "system/exception.h"

#include <locale.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>

namespace {

/// What the conversion of a text came to: the value, how far the text was read, and whether the
/// value went out of the type's range.
template <class T>
struct Conversion
{
    T value = 0;
    std::size_t consumed = 0;
    bool outOfRange = false;

    bool isWhole(const std::string& text) const
    {
        return consumed == text.size() && consumed != 0 && !outOfRange;
    }
};

/// The rules of `std::stoi`.
Conversion<int> readInt(const std::string& text)
{
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    Conversion<int> conversion;
    conversion.consumed = static_cast<std::size_t>(end - text.c_str());
    conversion.outOfRange = errno == ERANGE || value < INT_MIN || value > INT_MAX;
    if (!conversion.outOfRange) {
        conversion.value = static_cast<int>(value);
    }
    return conversion;
}

/// The rules of `std::stof`, which itself takes its decimal sign from the process's locale.
Conversion<float> readFloat(const std::string& text)
{
    static const locale_t classic = newlocale(LC_ALL_MASK, "C", nullptr);
    char* end = nullptr;
    errno = 0;
    Conversion<float> conversion;
    conversion.value = strtof_l(text.c_str(), &end, classic);
    conversion.consumed = static_cast<std::size_t>(end - text.c_str());
    conversion.outOfRange = errno == ERANGE;
    return conversion;
}

/// Raises the error of a conversion that did not take the whole text.
template <class T>
T checked(const Conversion<T>& conversion,
          const std::string& text,
          const std::string& where,
          const std::string& type,
          const std::string& function)
{
    if (conversion.isWhole(text)) {
        return conversion.value;
    }
    const std::string quoted = '"' + text + '"';
    if (conversion.outOfRange) {
        raise<RangeError>(where,
                          quoted + ": range error in " + type + " conversion [" + function + "]");
    }
    const std::string reason = conversion.consumed == 0
                                   ? function
                                   : "error after position " + std::to_string(conversion.consumed);
    raise<TypeError>(where, quoted + ": invalid string argument for " + type + " conversion [" +
                                reason + "]");
}

} // namespace

std::string StringTools::toString(int value)
{
    return std::to_string(value);
}

std::string StringTools::toString(int value, int width, char fill)
{
    const std::string digits = std::to_string(value);
    const int missing = std::max(0, width - static_cast<int>(digits.size()));
    return std::string(static_cast<std::size_t>(missing), fill) + digits;
}

template <>
bool StringTools::isCompatible<int>(const std::string& text)
{
    return readInt(text).isWhole(text);
}

template <>
bool StringTools::isCompatible<float>(const std::string& text)
{
    return readFloat(text).isWhole(text);
}

float StringTools::toFloat(const std::string& text)
{
    return checked(readFloat(text), text, "float StringTools::toFloat(const string&)", "float",
                   "stof");
}

int StringTools::toInt(const std::string& text)
{
    return checked(readInt(text), text, "int StringTools::toInt(const string&)", "int", "stoi");
}

std::vector<std::string> StringTools::tokenize(const std::string& text,
                                               const std::string& delimiters)
{
    std::vector<std::string> tokens;
    std::size_t begin = text.find_first_not_of(delimiters);
    while (begin != std::string::npos) {
        const std::size_t end = std::min(text.find_first_of(delimiters, begin), text.size());
        tokens.push_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(delimiters, end);
    }
    return tokens;
}

std::vector<std::string> StringTools::integerListParser(const std::string& text,
                                                        const std::string& delimiters)
{
    std::vector<std::string> integers;
    for (const std::string& token : tokenize(text, delimiters)) {
        if (token.find('-') == std::string::npos) {
            integers.push_back(token);
            continue;
        }
        const std::vector<std::string> ends = tokenize(token, "-");
        if (ends.size() != 2) {
            raise<ValueError>(
                "vector<string> StringTools::integerListParser(const string&, const string&)",
                '"' + token + "\": a range needs two numbers");
        }
        const long last = toInt(ends[1]);
        for (long number = toInt(ends[0]); number <= last; ++number) {
            integers.push_back(std::to_string(number));
        }
    }
    return integers;
}
