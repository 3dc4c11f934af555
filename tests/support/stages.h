#pragma once

#include "blade/landmarks/extractconvexpoints.h"
#include "blade/landmarks/extractpeak.h"
#include "blade/process/blademessages.h"
#include "support/leaf.h"

/// Runs of the stages, without a window.
namespace leaf {

/// Keeps what processes tell while it lives.
class Told
{
public:
    Told()
        : former_(BladeMessages::setHandler([this](const auto& text) { texts.push_back(text); }))
    {}

    ~Told() { BladeMessages::setHandler(former_); }

    std::vector<std::string> texts;

private:
    BladeMessages::Handler former_;
};

/// Runs a process and gives what it told.
inline std::vector<std::string> run(ModelsManager& process)
{
    const Told told;
    process.run();
    return told.texts;
}

/// Finds the sinuses on every slice with the values that the window starts with, and gives the
/// report of each slice.
inline std::vector<std::string> findSinuses(LMXStack& stack)
{
    ExtractConvexPoints process;
    process.setStack(stack);
    process.setNeigbourhood(25);
    process.setThresholdAngle(145.0f);
    process.createModels();
    std::vector<std::string> reports;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        reports.push_back(process.process(i));
    }
    return reports;
}

/// Finds the tips on every slice, and gives what was told.
inline std::vector<std::string>
findTips(LMXStack& stack, VenationType venation, MethodExtractPeaks method = LocalCurvature)
{
    ExtractPeak process;
    process.setStack(stack);
    process.setMethodToExtract(method);
    process.setExcludeNeighbourhood(10);
    process.setVenationType(venation);
    return run(process);
}

} // namespace leaf
