#include "cli/scaleoptions.h"

#include "cli/commandline.h"
#include "cli/failure.h"
#include "system/exception.h"

void ScaleOptions::declare(CommandLine& line)
{
    line.addOption(
        "marker",
        "Scale of each photograph from a marker on it: the side of a square, the "
        "diameter of a disc, or the distance of four dots at the corners of a square, as "
        "square:20mm, disc:25mm or dots:70mm (mm, cm or inch).",
        "MARKER");
    line.addOption("ruler",
                   "Scale of each photograph from the ticks of a ruler on it: mm, cm or inch.",
                   "UNIT");
}

ScaleOptions::ScaleOptions(const CommandLine& line)
{
    if (line.isSet("marker") && line.isSet("ruler")) {
        throw UsageFailure("the options 'marker' and 'ruler' exclude each other");
    }
    for (const char* other : {"marker", "ruler"}) {
        if (line.isSet(other) && line.isSet("pixel-width")) {
            throw UsageFailure(std::string("the options '") + other +
                               "' and 'pixel-width' exclude each other");
        }
    }
    try {
        if (line.isSet("marker")) {
            request = ScaleRequest::marker(line.bytes("marker"));
        } else if (line.isSet("ruler")) {
            request = ScaleRequest::ruler(line.bytes("ruler"));
        }
    } catch (const UsageError& error) {
        throw UsageFailure(error.getWhat());
    }
}
