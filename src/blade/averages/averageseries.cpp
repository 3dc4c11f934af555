#include "blade/averages/averageseries.h"

#include "system/stringtools.h"

#include <iomanip>
#include <locale>
#include <sstream>

std::string keyLabel(float key, const std::string& sign)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::fixed << std::setprecision(6) << key;
    std::string text = stream.str();
    const std::size_t point = text.find('.');
    if (point == std::string::npos) {
        return text;
    }
    text.replace(point, 1, sign);
    return text.substr(0, point + 3);
}

std::vector<std::string> numberLabels(int count)
{
    const int digits = static_cast<int>(StringTools::toString(count).size());
    std::vector<std::string> labels;
    for (int i = 0; i < count; ++i) {
        labels.push_back(StringTools::toString(i, digits, '0'));
    }
    return labels;
}

// Keys that are equal in two decimals must not write over each other's files.
std::string AverageNames::next(const std::string& label)
{
    std::string name = prefix_ + label;
    for (int k = 2; !used_.insert(name).second; ++k) {
        name = prefix_ + label + "-" + StringTools::toString(k);
    }
    return name;
}
