#pragma once

#include "interface/lmxstack.h"

#include <string>

class ProjectConfig;
class Report;
class RunRecord;

/// Where the tables go.
struct MeasureTarget
{
    std::string folder;
    std::string prefix;

    std::string recordPath() const { return folder + "/" + prefix + "_run.json"; }
};

/// Throws `UsageFailure` for a prefix that is no part of a file name.
void checkPrefix(const MeasureTarget& target);

/// Makes the folder. Throws `Failure` if that can't be done or one of the files can't be written,
/// `UsageFailure` if one is no table or record of ours and may not be replaced.
void prepareTarget(const MeasureTarget& target, bool replace);

/// Measures the leaves and writes the two tables and the record. Throws `Failure` naming the table
/// that can't be written.
void measureLeaves(LMXStack& stack,
                   const MeasureTarget& target,
                   const ProjectConfig& project,
                   RunRecord& record,
                   Report& report);
