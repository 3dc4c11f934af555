#include "shape/vertices/shapestream.h"

#include "system/exception.h"

#include <algorithm>
#include <limits>

namespace {

/// Number of bytes between the read position and the end; -1 where the stream can't tell, like a
/// pipe.
std::streamoff bytesLeft(std::istream& stream)
{
    std::streambuf& buffer = *stream.rdbuf();
    const std::streamoff here = buffer.pubseekoff(0, std::ios::cur, std::ios::in);
    if (here < 0) {
        return -1;
    }
    const std::streamoff end = buffer.pubseekoff(0, std::ios::end, std::ios::in);
    buffer.pubseekpos(here, std::ios::in);
    return end - here;
}

} // namespace

ClassicFormat::ClassicFormat(std::istream& stream)
    : stream_(stream)
    , former_(stream.getloc())
{
    if (former_ != std::locale::classic()) {
        stream_.imbue(std::locale::classic());
    }
}

ClassicFormat::~ClassicFormat()
{
    if (former_ != std::locale::classic()) {
        stream_.imbue(former_);
    }
}

bool readHeaderLine(std::istream& stream, int& number)
{
    char mark = 0;
    return static_cast<bool>(stream >> mark >> number);
}

template <class T>
void readNumber(std::istream& stream, T& number)
{
    using Limits = std::numeric_limits<T>;
    if constexpr (Limits::has_infinity) {
        const auto next = (stream >> std::ws).peek();
        const bool isSigned = next == '-' || next == '+';
        if (isSigned) {
            stream.get();
        }
        const auto first = stream.peek();
        if (first == 'n' || first == 'i') {
            char word[4] = {};
            stream.read(word, 3);
            const bool isInfinite = std::string(word) == "inf";
            if (!isInfinite && std::string(word) != "nan") {
                stream.setstate(std::ios::failbit);
                return;
            }
            number = isInfinite ? Limits::infinity() : Limits::quiet_NaN();
            number = next == '-' ? -number : number;
            return;
        }
        if (isSigned) {
            stream.unget();
        }
    }
    stream >> number;
}

template void readNumber(std::istream&, int&);
template void readNumber(std::istream&, float&);
template void readNumber(std::istream&, double&);
template void readNumber(std::istream&, long double&);

bool canHold(std::istream& stream, int space, int size)
{
    constexpr std::streamoff smallShape = 4096;
    constexpr std::streamoff moderateShape = 1 << 24;
    if (space < 0 || size < 0) {
        return false;
    }
    const std::streamoff numbers = std::streamoff(size) * std::max(space, 1);
    const std::streamoff left = bytesLeft(stream);
    return numbers <= (left < 0 ? moderateShape : std::max(smallShape, left / 2 + 1));
}

std::ostringstream textFor(const std::ostream& stream)
{
    std::ostringstream text;
    text.flags(stream.flags());
    text.precision(stream.precision());
    text.imbue(std::locale::classic());
    return text;
}

void writeText(std::ostream& stream, const std::ostringstream& text, const std::string& where)
{
    const std::ios_base::iostate formerExceptions = stream.exceptions();
    bool written = true;
    try {
        stream.exceptions(std::ios::failbit | std::ios::badbit);
        stream << text.str();
        stream.exceptions(formerExceptions);
    } catch (const std::ios_base::failure&) {
        written = false;
    }
    if (!written) {
        try {
            stream.exceptions(formerExceptions);
        } catch (const std::ios_base::failure&) {
            // The mask is set before the state raises; the error below tells the same.
        }
        raise<FileWriteError>(where, "Cannot write the vertices");
    }
}
