#pragma once

#include <string>
#include <vector>

class Stack;

/// The conditions under which the stages of the workflow may run. They are read from the stack
/// alone, and are the same wherever a stage is started from.

/// The stages that have a gate.
enum class GatedStage {
    ExtractSinus,
    ExtractPeaks,
    Hierarchy,
    LeafMeasures,
    Averaging,
};

/// What a stage needs: the models, in the order in which they are looked for, and besides a contour
/// of at least 5 vertices and junctions of exactly 2 points on each slice. `title` and `text` are
/// those of the warning that a failed gate shows.
struct StageGate
{
    const char* title;
    const char* text;
    std::vector<std::string> models;
};

const StageGate& stageGate(GatedStage stage);

struct GateResult
{
    bool passed;

    /// Which slice lacks what, "Missing Petiole in slice number :leaf0"; empty if the gate passed,
    /// or failed for the lack of a model.
    std::string missing;
};

/// Tests a gate up to the first failure.
GateResult evaluateGate(GatedStage stage, const Stack& stack);

/// The stack has a model of this name, with or without items.
bool verifiedModel(const Stack& stack, const std::string& name);

/// Each slice has an item of the model, and each such item at least `least` vertices. `missing`
/// names the first slice that fails.
bool verifiedSizeModelContours(const Stack& stack,
                               const std::string& name,
                               int least,
                               std::string& missing);

/// The same with exactly `exact` vertices.
bool verifiedSizeModelPetiole(const Stack& stack,
                              const std::string& name,
                              int exact,
                              std::string& missing);
