#pragma once

#include "blade/project/projectconfig.h"

#include <QJsonObject>

#include <string>

class CommandLine;
class Report;

/// The facts of the project: those of the project file, and what options say in their place.
struct ProjectOptions
{
    /// The project file and the venation.
    static void declareVenation(CommandLine& line);

    /// The parameters of the growth curve.
    static void declareGrowth(CommandLine& line);

    /// Reads the project file, if one is named, and then the options that were declared and given.
    /// Throws `Failure` for a file that can't be read.
    ProjectOptions(const CommandLine& line, Report& report);

    QJsonObject toJson() const;

    /// Of the project file; empty without one.
    std::string path;
    ProjectConfig config;
};

/// "pinnate" or "palmate" as an option's value.
VenationType venationOption(const CommandLine& line);
