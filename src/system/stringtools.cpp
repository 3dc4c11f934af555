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

/// Who converts, and what it says of a text that it can't take.
struct Converter
{
    const char* where;
    const char* invalid;
    const char* range;
    const char* function;
};

template <class T>
T checked(const Conversion<T>& conversion, const std::string& text, const Converter& converter)
{
    if (conversion.isWhole(text)) {
        return conversion.value;
    }
    const std::string quoted = '"' + text + '"';
    std::string reason = converter.function;
    if (conversion.outOfRange) {
        raise<RangeError>(converter.where, quoted + converter.range + " [" + reason + "]");
    }
    if (conversion.consumed != 0) {
        reason = "error after position " + std::to_string(conversion.consumed);
    }
    raise<TypeError>(converter.where, quoted + converter.invalid + " [" + reason + "]");
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
    static const Converter converter = {"float StringTools::toFloat(const string&)",
                                        ": invalid string argument for float conversion",
                                        ": range error in float conversion", "stof"};
    return checked(readFloat(text), text, converter);
}

int StringTools::toInt(const std::string& text)
{
    static const Converter converter = {"int StringTools::toInt(const string&)",
                                        ": invalid string argument for int conversion",
                                        ": range error in int conversion", "stoi"};
    return checked(readInt(text), text, converter);
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
