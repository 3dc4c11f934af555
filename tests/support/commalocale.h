#pragma once

#include <locale>

/// While it lives, streams write 1.234,5 for 1234.5.
class CommaLocale
{
public:
    CommaLocale()
        : previous_(std::locale::global(std::locale(std::locale::classic(), new Comma)))
    {}

    ~CommaLocale() { std::locale::global(previous_); }

    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

private:
    class Comma : public std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }

        char do_thousands_sep() const override { return '.'; }

        std::string do_grouping() const override { return "\3"; }
    };

    std::locale previous_;
};
