#pragma once

#include "blade/process/modelsmanager.h"

#include <optional>
#include <string>

class ModelItem;
class StackSlice;

/// Two blade-petiole junctions, in pixels, x to the right and y down.
struct JunctionPoints
{
    int x[2];
    int y[2];
};

/// Junctions that are proposed, with how sure that is: from 0 to 1, for the end of the leaf at which
/// they lie and for their place there.
struct ProposedJunctions : JunctionPoints
{
    double confidence;

    /// Those below should be looked at.
    static constexpr double low = 0.5;
};

/// The confidence of the slice's junctions, if they were proposed and nobody has moved them since.
std::optional<double> proposalConfidence(const StackSlice& slice);

/// Why the points can't be the junctions of the slice: they are equal, lie outside its image, or, if
/// it has a contour, lie farther from it than a tenth of the diagonal of the contour's box, or fall on
/// one place of it. Empty if they can. A slice without an image has no bounds.
std::string junctionFault(const JunctionPoints& junctions, const StackSlice& slice);

/// Puts junctions on slices, in the place of those that a slice has. Makes the model of the junctions
/// where the stack has none.
class JunctionPlacing : public ModelsManager
{
public:
    /// Those that a person drew.
    void place(const JunctionPoints& junctions, int slice);

    /// The same with a note of the confidence in the slice's annotation.
    void place(const ProposedJunctions& junctions, int slice);

    /// Makes the model, unless it is there.
    void createModels() override;

    // The work needs the junctions: these do nothing.
    void run() override {}

    std::string process(int) override { return ""; }
};
