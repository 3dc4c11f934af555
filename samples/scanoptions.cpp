#include "samples/scanoptions.h"

#include "system/exception.h"
#include "system/stringtools.h"

#include <map>

namespace {

const char* const where = "bool setScanOption(ScanOptions&, const string&, const string&)";

template <class T>
T choice(const std::string& option, const std::string& value, const std::map<std::string, T>& known)
{
    const auto found = known.find(value);
    if (found == known.end()) {
        raise<UsageError>(where, option + " has no choice '" + value + "'");
    }
    return found->second;
}

double number(const std::string& option, const std::string& value, double least, double most)
{
    const double result = static_cast<double>(StringTools::toFloat(value));
    if (!(result >= least && result <= most)) {
        raise<UsageError>(where, option + " needs a number between " +
                                     std::to_string(static_cast<int>(least)) + " and " +
                                     std::to_string(static_cast<int>(most)));
    }
    return result;
}

/// "square:20mm", "disc:25mm", "dots:70mm" or "none".
MarkerPlan marker(const std::string& option, const std::string& value)
{
    const std::size_t colon = value.find(':');
    const std::string kind = value.substr(0, colon);
    MarkerPlan plan;
    plan.kind = choice<MarkerKind>(option, kind,
                                   {{"none", MarkerKind::None},
                                    {"square", MarkerKind::Square},
                                    {"disc", MarkerKind::Disc},
                                    {"dots", MarkerKind::Dots}});
    if (plan.kind != MarkerKind::None) {
        if (colon == std::string::npos || value.size() < colon + 4 ||
            value.substr(value.size() - 2) != "mm") {
            raise<UsageError>(where, option + " needs a size, as in square:20mm");
        }
        plan.size = number(option, value.substr(colon + 1, value.size() - colon - 3), 5.0, 80.0);
    }
    return plan;
}

} // namespace

bool setScanOption(ScanOptions& options, const std::string& option, const std::string& value)
{
    if (option == "--leaves") {
        options.leaves = static_cast<int>(number(option, value, 0.0, 100.0));
    } else if (option == "--dpi") {
        options.resolution = number(option, value, 50.0, 1200.0);
        options.stated = options.resolution;
    } else if (option == "--stated-dpi") {
        options.stated = number(option, value, 0.0, 10000.0);
    } else if (option == "--paper") {
        options.paper = choice<Paper>(option, value,
                                      {{"white", Paper::White},
                                       {"grey", Paper::Grey},
                                       {"blue", Paper::Blue},
                                       {"black", Paper::Black}});
    } else if (option == "--ruler") {
        options.ruler = choice<RulerUnit>(option, value,
                                          {{"none", RulerUnit::None},
                                           {"mm", RulerUnit::Millimetre},
                                           {"cm", RulerUnit::Centimetre},
                                           {"inch", RulerUnit::Inch}});
    } else if (option == "--marker") {
        options.marker = marker(option, value);
    } else {
        return false;
    }
    return true;
}
