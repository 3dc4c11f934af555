#pragma once

#include "image/values/lengthunit.h"
#include "interface/lmxstack.h"
#include "interface/stackbuilder.h"

#include <QJsonObject>

#include <optional>
#include <string>
#include <vector>

class CommandLine;
class Report;

/// How a stack is made of photographs.
struct StackOptions
{
    static void declare(CommandLine& line);
    explicit StackOptions(const CommandLine& line);

    QJsonObject toJson() const;

    std::optional<float> pixelWidth;
    int rows = 1; ///< of the mosaic that every slice is
    int columns = 1;
    std::string unitName;
    LengthUnit unit;
};

/// Fills a stack with a slice per photograph; `path` is the stack's file, beside which conversions
/// go. Notes what a user should know about the pixel sizes. A photograph that can't be taken is told
/// as a fault, and given back; throws `Failure` if none is left.
std::vector<StackBuilder::Refusal> buildStack(LMXStack& stack,
                                              const std::string& path,
                                              const std::vector<std::string>& photographs,
                                              const StackOptions& options,
                                              Report& report);
