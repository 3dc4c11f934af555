#pragma once

#include <istream>
#include <locale>
#include <ostream>
#include <sstream>
#include <string>

/// What the text forms of all shapes have in common.

/// The stream with the number format of the classic locale; its own comes back at the end.
class ClassicFormat
{
public:
    explicit ClassicFormat(std::istream& stream);
    ~ClassicFormat();
    ClassicFormat(const ClassicFormat&) = delete;
    ClassicFormat& operator=(const ClassicFormat&) = delete;

private:
    std::istream& stream_;
    std::locale former_;
};

/// Reads "# " and a number, whatever the mark is; false if there is no such thing.
bool readHeaderLine(std::istream& stream, int& number);

/// Reads a number as `>>` does, and besides the "nan" and "inf" of either sign that a shape of
/// floating numbers is written with.
template <class T>
void readNumber(std::istream& stream, T& number);

extern template void readNumber(std::istream&, int&);
extern template void readNumber(std::istream&, float&);
extern template void readNumber(std::istream&, double&);
extern template void readNumber(std::istream&, long double&);

/// Whether the rest of the stream can hold `size` vertices: each number takes two bytes at least, a
/// digit and a separator. A small shape may be announced by any stream, a moderate one by a stream
/// that can't tell its length.
bool canHold(std::istream& stream, int space, int size);

/// A text with the number format of `stream`, but for its locale, which is the classic one. Texts
/// are made apart: a change of a file stream's own locale would write out what it holds back, and
/// lose the error.
std::ostringstream textFor(const std::ostream& stream);

/// Writes the text. A failure raises `FileWriteError` as the operation `where`; the stream's own
/// exception mask comes back.
void writeText(std::ostream& stream, const std::ostringstream& text, const std::string& where);
