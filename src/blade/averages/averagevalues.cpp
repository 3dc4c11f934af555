#include "blade/averages/averagevalues.h"

#include "system/stringtools.h"

#include <cmath>
#include <fstream>
#include <vector>

namespace {

std::string trimmed(const std::string& line)
{
    const char* const blanks = " \t\r";
    const std::size_t first = line.find_first_not_of(blanks);
    return first == std::string::npos
               ? ""
               : line.substr(first, line.find_last_not_of(blanks) - first + 1);
}

class ValueFile
{
public:
    ValueFile(const char* where, const std::string& filename)
        : where_(where)
        , filename_(filename)
    {}

    Vector<float> read(bool ascending, std::size_t least) const
    {
        std::ifstream stream(filename_);
        std::vector<float> values;
        std::string line;
        int number = 0;
        while (std::getline(stream, line)) {
            ++number;
            const std::string text = trimmed(line);
            if (text.empty()) {
                continue;
            }
            const float value = parse(text, number);
            if (ascending && !values.empty() && !(value > values.back())) {
                fail(number, "'" + text + "' is not above the value before");
            }
            values.push_back(value);
        }
        // A folder opens, but can't be read.
        if (!stream.eof() || stream.bad()) {
            raiseFile<FileReadError>(where_, "The file can't be read", filename_);
        }
        if (values.size() < least) {
            fail(number, "the file ends with " + std::to_string(values.size()) +
                             " values, at least " + std::to_string(least) + " are needed");
        }
        return Vector<float>(values);
    }

private:
    float parse(const std::string& text, int line) const
    {
        if (!StringTools::isCompatible<float>(text)) {
            fail(line, "'" + text + "' is not a number");
        }
        const float value = StringTools::toFloat(text);
        if (!std::isfinite(value)) {
            fail(line, "'" + text + "' is not a finite number");
        }
        return value;
    }

    [[noreturn]] void fail(int line, const std::string& what) const
    {
        raiseFile<FileFormatError>(where_, "Line " + std::to_string(line) + ": " + what, filename_);
    }

    const char* where_;
    std::string filename_;
};

} // namespace

Vector<float> readBinLimits(const std::string& filename)
{
    return ValueFile("Vector<float> readBinLimits(const string&)", filename).read(true, 2);
}

Vector<float> readAverageTargets(const std::string& filename)
{
    return ValueFile("Vector<float> readAverageTargets(const string&)", filename).read(false, 1);
}
