#pragma once

#include <string>
#include <vector>

/// Conversions between texts and numbers. The decimal sign is always a point, whatever locale the
/// process runs in.
class StringTools
{
public:
    static std::string toString(int value);

    /// `value` in a field of at least `width` characters, filled on the left.
    static std::string toString(int value, int width, char fill);

    /// Whether `toInt` or `toFloat` takes the text; `T` is `int` or `float`. Blanks may stand in
    /// front, nothing behind.
    template <class T>
    static bool isCompatible(const std::string& text);

    /// Raises `TypeError` for a text that is not a number to its end, `RangeError` for a number
    /// that `float` can't hold.
    static float toFloat(const std::string& text);

    /// Raises `TypeError` for a text that is not an integer to its end, `RangeError` for a number
    /// that `int` can't hold.
    static int toInt(const std::string& text);

    /// The pieces between separators; each character of `delimiters` is one. No piece is empty.
    static std::vector<std::string> tokenize(const std::string& text,
                                             const std::string& delimiters);

    /// Tokens, with each range written out: `1`, `3`, `4`, `5` for `1,3-5`. A range that runs down
    /// gives nothing. Raises `ValueError` for a "-" that has not one number on either side, and the
    /// errors of `toInt`.
    static std::vector<std::string> integerListParser(const std::string& text,
                                                      const std::string& delimiters);
};

template <>
bool StringTools::isCompatible<int>(const std::string& text);
template <>
bool StringTools::isCompatible<float>(const std::string& text);
