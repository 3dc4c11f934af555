#include "stack/stackfilescanner.h"

#include "system/exception.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool endsToken(char c)
{
    return isBlank(c) || c == ';' || c == '"' || c == ',';
}

/// Reads a number that begins at `begin`; a plus sign may stand in front. The end of the number, or
/// null if there is none or it is out of range, as `outOfRange` tells.
template <class T>
const char* readNumber(const char* begin, const char* end, T& value, bool& outOfRange)
{
    if (end - begin > 1 && *begin == '+' && begin[1] != '-') {
        ++begin;
    }
    const auto result = std::from_chars(begin, end, value);
    outOfRange = result.ec == std::errc::result_out_of_range;
    return result.ec == std::errc() ? result.ptr : nullptr;
}

} // namespace

StackFileScanner::StackFileScanner(std::string text)
    : text_(std::move(text))
{}

void StackFileScanner::fail(const std::string& reason) const
{
    const bool cut = text_.find_first_not_of(" \t\r\n", position_) == std::string::npos;
    raise<FileFormatError>("bool StackReader::read(Stack&, const string&)",
                           cut ? "the file ends inside the statement" : reason);
}

int StackFileScanner::lineAt(std::size_t position)
{
    if (position < countedPosition_) {
        countedPosition_ = 0;
        countedLine_ = 1;
    }
    const auto begin = text_.begin() + static_cast<std::ptrdiff_t>(countedPosition_);
    const auto end = text_.begin() + static_cast<std::ptrdiff_t>(position);
    countedLine_ += static_cast<int>(std::count(begin, end, '\n'));
    countedPosition_ = position;
    return countedLine_;
}

int StackFileScanner::valueLine()
{
    return lineAt(position_);
}

void StackFileScanner::skipBlanks()
{
    while (position_ < text_.size() && isBlank(text_[position_])) {
        ++position_;
    }
}

// A semicolon between quotes on one line is part of a name.
void StackFileScanner::skipStatement()
{
    bool inQuotes = false;
    while (position_ < text_.size()) {
        const char c = text_[position_++];
        if (c == ';' && !inQuotes) {
            return;
        }
        inQuotes = c == '"' ? !inQuotes : inQuotes && c != '\n';
    }
}

bool StackFileScanner::nextStatement()
{
    if (open_) {
        skipStatement();
    }
    skipBlanks();
    open_ = position_ < text_.size();
    line_ = lineAt(position_);
    keyword_ = token();
    position_ += keyword_.size();
    return open_;
}

std::string StackFileScanner::token() const
{
    std::size_t end = position_;
    while (end < text_.size() && !endsToken(text_[end])) {
        ++end;
    }
    return text_.substr(position_, end - position_);
}

bool StackFileScanner::atQuote()
{
    skipBlanks();
    return position_ < text_.size() && text_[position_] == '"';
}

std::string StackFileScanner::quoted()
{
    if (!atQuote()) {
        fail("a text in double quotes is missing");
    }
    const std::size_t begin = position_ + 1;
    const std::size_t close = text_.find_first_of("\"\n", begin);
    if (close == std::string::npos || text_[close] == '\n') {
        // The rest of the line is lost, the next line is not.
        position_ = std::min(close, text_.size());
        open_ = false;
        fail("a double quote is not closed");
    }
    position_ = close + 1;
    return text_.substr(begin, close - begin);
}

std::string StackFileScanner::word()
{
    skipBlanks();
    const std::string result = token();
    if (result.empty()) {
        fail("a name is missing");
    }
    position_ += result.size();
    return result;
}

std::string StackFileScanner::rest()
{
    if (position_ < text_.size() && text_[position_] == ' ') {
        ++position_;
    }
    const std::size_t begin = position_;
    position_ = std::min(text_.find_first_of(";\n", begin), text_.size());
    return text_.substr(begin, position_ - begin);
}

int StackFileScanner::integer(int lowest, int highest)
{
    skipBlanks();
    int value = 0;
    bool outOfRange = false;
    const char* end = text_.data() + text_.size();
    const char* behind = readNumber(text_.data() + position_, end, value, outOfRange);
    const bool whole = behind != nullptr && (behind == end || endsToken(*behind));
    if (outOfRange || (whole && (value < lowest || value > highest))) {
        fail("the number " + token() + " is out of range");
    }
    if (!whole) {
        fail("an integer is missing before \"" + token() + "\"");
    }
    position_ = static_cast<std::size_t>(behind - text_.data());
    return value;
}

int StackFileScanner::integer()
{
    return integer(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

float StackFileScanner::number()
{
    skipBlanks();
    float value = 0.0f;
    bool outOfRange = false;
    const char* end = text_.data() + text_.size();
    const char* behind = readNumber(text_.data() + position_, end, value, outOfRange);
    const bool whole = behind != nullptr && (behind == end || endsToken(*behind));
    if (outOfRange || (whole && !std::isfinite(value))) {
        fail("the number " + token() + " is out of range");
    }
    if (!whole) {
        fail("a number is missing before \"" + token() + "\"");
    }
    position_ = static_cast<std::size_t>(behind - text_.data());
    return value;
}

bool StackFileScanner::boolean()
{
    const std::string value = word();
    if (value != "true" && value != "false") {
        fail("\"" + value + "\" is neither true nor false");
    }
    return value == "true";
}

std::vector<int> StackFileScanner::groups(int perGroup)
{
    std::vector<int> values;
    for (skipBlanks(); position_ < text_.size() && text_[position_] != ';'; skipBlanks()) {
        for (int i = 0; i < perGroup; ++i) {
            if (i > 0) {
                if (position_ >= text_.size() || text_[position_] != ',') {
                    fail("a comma is missing between two coordinates");
                }
                ++position_;
            }
            values.push_back(integer());
        }
        if (position_ < text_.size() && text_[position_] == ',') {
            fail("there are too many coordinates");
        }
    }
    return values;
}

void StackFileScanner::end()
{
    const std::size_t behindValue = position_;
    skipBlanks();
    if (position_ >= text_.size() || text_[position_] != ';') {
        // What stands on a line of its own is the next statement.
        open_ = text_.find('\n', behindValue) > position_;
        fail("a semicolon is missing before \"" + token() + "\"");
    }
    ++position_;
    open_ = false;
}

int StackFileScanner::lastInteger(int lowest, int highest)
{
    const int value = integer(lowest, highest);
    end();
    return value;
}

int StackFileScanner::lastInteger()
{
    const int value = integer();
    end();
    return value;
}

float StackFileScanner::lastNumber()
{
    const float value = number();
    end();
    return value;
}

float StackFileScanner::lastPositive()
{
    const float value = number();
    if (value <= 0.0f) {
        fail("the number must be positive");
    }
    end();
    return value;
}

bool StackFileScanner::lastBoolean()
{
    const bool value = boolean();
    end();
    return value;
}

std::string StackFileScanner::lastQuoted()
{
    std::string value = quoted();
    end();
    return value;
}

std::string StackFileScanner::lastWord()
{
    std::string value = word();
    end();
    return value;
}
