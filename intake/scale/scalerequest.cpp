#include "intake/scale/scalerequest.h"

#include "intake/scale/markerfinder.h"
#include "intake/scale/rulerfinder.h"
#include "system/exception.h"

#include <locale>
#include <sstream>

namespace {

double millimetres(const std::string& unit)
{
    return unit == "mm" ? 1.0 : unit == "cm" ? 10.0 : unit == "inch" ? 25.4 : 0.0;
}

const char* nameOf(ScaleRequest::Kind kind)
{
    switch (kind) {
    case ScaleRequest::Kind::Square:
        return "square";
    case ScaleRequest::Kind::Disc:
        return "disc";
    case ScaleRequest::Kind::Dots:
        return "dots";
    default:
        return "";
    }
}

const char* nameOf(ScaleRequest::Unit unit)
{
    switch (unit) {
    case ScaleRequest::Unit::Centimetre:
        return "cm";
    case ScaleRequest::Unit::Inch:
        return "inch";
    default:
        return "mm";
    }
}

} // namespace

ScaleRequest ScaleRequest::marker(const std::string& text)
{
    const auto refuse = [&] {
        raise<UsageError>("ScaleRequest ScaleRequest::marker(const string&)",
                          "'" + text + "' is no marker: square:20mm, disc:25mm or dots:70mm");
    };
    ScaleRequest request;
    const std::size_t colon = text.find(':');
    const std::string kind = text.substr(0, colon);
    for (const Kind known : {Kind::Square, Kind::Disc, Kind::Dots}) {
        if (kind == nameOf(known)) {
            request.kind = known;
        }
    }
    if (request.kind == Kind::None || colon == std::string::npos) {
        refuse();
    }
    std::istringstream size(text.substr(colon + 1));
    size.imbue(std::locale::classic());
    std::string unit;
    std::string rest;
    if (!(size >> request.length)) {
        refuse();
    }
    size >> unit;
    request.length *= millimetres(unit);
    if (!(request.length > 0.0 && request.length < 1e5) || size >> rest) {
        refuse();
    }
    return request;
}

ScaleRequest ScaleRequest::ruler(const std::string& text)
{
    ScaleRequest request;
    request.kind = Kind::Ruler;
    for (const Unit known : {Unit::Millimetre, Unit::Centimetre, Unit::Inch}) {
        if (text == nameOf(known)) {
            request.unit = known;
            return request;
        }
    }
    raise<UsageError>("ScaleRequest ScaleRequest::ruler(const string&)",
                      "'" + text + "' is no unit of a ruler: mm, cm or inch");
}

std::string ScaleRequest::text() const
{
    if (kind == Kind::None) {
        return "none";
    }
    if (kind == Kind::Ruler) {
        return std::string("ruler ") + nameOf(unit);
    }
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << "marker " << nameOf(kind) << " " << length << " mm";
    return out.str();
}

FoundScale findScale(const cv::Mat& photograph, const ScaleRequest& request)
{
    if (photograph.empty() || request.kind == ScaleRequest::Kind::None) {
        return FoundScale::none("nothing to look for");
    }
    return request.kind == ScaleRequest::Kind::Ruler ? findRuler(photograph, request.unit)
                                                     : findMarker(photograph, request);
}
