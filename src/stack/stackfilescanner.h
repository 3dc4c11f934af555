#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Cuts the text of a stack description file into statements and their values.
///
/// Values are taken one by one, in the order of the statement; `end()` tells that it should be over.
/// Each operation on values raises `FileFormatError`, with the reason alone, when the text has
/// something else; `nextStatement()` then goes on behind the damaged statement. The value a
/// statement gives must not be used before `end()` has found its semicolon.
class StackFileScanner
{
public:
    explicit StackFileScanner(std::string text);

    /// Goes to the next statement and reads its keyword, which may be empty; false at the end.
    bool nextStatement();

    const std::string& keyword() const { return keyword_; }

    /// The line of the keyword, counted from 1.
    int line() const { return line_; }

    /// The line of the value read last.
    int valueLine();

    /// A text in double quotes is next.
    bool atQuote();

    /// Between double quotes on one line; no escapes are resolved.
    std::string quoted();

    /// A name without quotes.
    std::string word();

    /// All up to the semicolon, without the blank in front.
    std::string rest();

    /// From `lowest` to `highest`.
    int integer(int lowest, int highest);

    /// Any `int`.
    int integer();

    /// A finite number.
    float number();
    bool boolean();

    /// All up to the semicolon: groups of integers joined by commas, `perGroup` in each. The
    /// integers in one row.
    std::vector<int> groups(int perGroup);

    /// Expects the semicolon.
    void end();

    /// The last value of a statement: the value and the semicolon.
    int lastInteger(int lowest, int highest);
    int lastInteger();
    float lastNumber();

    /// Greater than 0.
    float lastPositive();
    bool lastBoolean();
    std::string lastQuoted();
    std::string lastWord();

private:
    void skipBlanks();
    void skipStatement();
    int lineAt(std::size_t position);
    std::string token() const;
    [[noreturn]] void fail(const std::string& reason) const;

    std::string text_;
    std::size_t position_ = 0;
    bool open_ = false;
    std::string keyword_;
    int line_ = 1;
    std::size_t countedPosition_ = 0;
    int countedLine_ = 1;
};
