#pragma once

#include "blade/process/stagegates.h"
#include "interface/lmxstack.h"

#include <string>
#include <vector>

class CommandLine;
class Report;

/// While it lives, and if the user wants it, the stack has only the slices that a stage can work on,
/// those with the contour, the junctions and, behind the sinus stage, the apex that its gate asks for.
/// Each of the others is named in a note, and stands in its place again at the end. A stack that has
/// no complete slice at all keeps them all, for the gate to tell.
class CompleteSlices
{
public:
    static void declare(CommandLine& line);

    CompleteSlices(LMXStack& stack, GatedStage stage, const CommandLine& line, Report& report);
    ~CompleteSlices();
    CompleteSlices(const CompleteSlices&) = delete;
    CompleteSlices& operator=(const CompleteSlices&) = delete;

    struct Omission
    {
        std::string slice;
        std::string reason;
    };

    const std::vector<Omission>& omissions() const { return omissions_; }

private:
    void show(const std::vector<StackSlice*>& slices);
    std::string faultOf(StackSlice& slice, GatedStage stage);

    LMXStack& stack_;
    std::vector<StackSlice*> all_;
    std::vector<Omission> omissions_;
};
