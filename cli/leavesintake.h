#pragma once

#include "cli/runrecord.h"
#include "cli/scaleoptions.h"
#include "cli/stackoptions.h"
#include "cli/stages.h"
#include "intake/leaftable.h"
#include "interface/lmxstack.h"

#include <optional>
#include <string>
#include <vector>

class CommandLine;
class Report;

/// The way from photographs to slices with outlines, for the subcommands that find leaves.
class LeavesIntake
{
public:
    /// Declares the options of the finding itself.
    static void declare(CommandLine& line);

    /// Reads the table of settings, if one is named.
    LeavesIntake(const CommandLine& line, const StackOptions& stack, const ContourOptions& contour);

    /// Throws `UsageFailure` if the table of leaves beside the stack was changed since it was written,
    /// unless the user said `replace`, or gave just that table as the settings.
    void requireReplaceable(const std::string& stackPath, bool replace) const;

    /// Fills the stack, whose file will be `stackPath`, with a slice a leaf. Photographs that can't be
    /// read, have no leaf, or whose name is taken are faults of the report and stand in the record;
    /// the others are taken, and are its inputs. Writes the overview pictures and the table of leaves beside the stack's
    /// file. Throws `Failure` if no leaf was found at all.
    void fill(LMXStack& stack,
              const std::string& stackPath,
              const std::vector<std::string>& photographs,
              RunRecord& record,
              Report& report);

    /// Says how many leaves were found, and which to look at first.
    void summarize(Report& report) const;

    /// The settings given, or null.
    const LeafTable* settings() const { return settings_ ? &*settings_ : nullptr; }

private:
    void take(LMXStack& stack, const std::string& photograph, RunRecord& record, Report& report);

    StackOptions stackOptions_;
    ContourOptions contour_;
    ScaleOptions scale_;
    bool hasBackground_;
    bool replace_;
    std::optional<LeafTable> settings_;
    class LeafIntake* intake_ = nullptr;
    class ExtractContour* stage_ = nullptr;
    std::string overviewFolder_;
    LeafTable table_;
    int photographs_ = 0; ///< with leaves
};
