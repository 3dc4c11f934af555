#pragma once

#include "blade/process/modelsmanager.h"

#include <string>

class ModelItem;
class StackSlice;

/// Two blade-petiole junctions, in pixels, x to the right and y down.
struct JunctionPoints
{
    int x[2];
    int y[2];
};

/// Why the points can't be the junctions of the slice: they are equal, lie outside its image, or, if
/// it has a contour, lie farther from it than a tenth of the diagonal of the contour's box, or fall on
/// one place of it. Empty if they can. A slice without an image has no bounds.
std::string junctionFault(const JunctionPoints& junctions, const StackSlice& slice);

/// Puts the junctions that a person drew on slices, in the place of those that a slice has. Makes
/// the model of the junctions where the stack has none.
class JunctionPlacing : public ModelsManager
{
public:
    void place(const JunctionPoints& junctions, int slice);

    /// Makes the model, unless it is there.
    void createModels() override;

    // The work needs the junctions: these do nothing.
    void run() override {}

    std::string process(int) override { return ""; }
};
