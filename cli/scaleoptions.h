#pragma once

#include "intake/scale/scalerequest.h"

class CommandLine;

/// What tells the scale of the photographs: "--marker" or "--ruler".
struct ScaleOptions
{
    static void declare(CommandLine& line);
    explicit ScaleOptions(const CommandLine& line);

    ScaleRequest request;
};
