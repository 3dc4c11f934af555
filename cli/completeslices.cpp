#include "cli/completeslices.h"

#include "blade/process/landmarks.h"
#include "cli/commandline.h"
#include "cli/report.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>

void CompleteSlices::declare(CommandLine& line)
{
    line.addFlag("skip-incomplete", "Leaves slices out, and names them, that lack what the stage "
                                    "needs, in place of refusing the stack.");
}

CompleteSlices::CompleteSlices(LMXStack& stack,
                               GatedStage stage,
                               const CommandLine& line,
                               Report& report)
    : stack_(stack)
{
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        all_.push_back(&stack.getSlice(i));
    }
    if (!line.isSet("skip-incomplete")) {
        return;
    }
    std::vector<StackSlice*> complete;
    for (StackSlice* slice : all_) {
        show({slice});
        const std::string fault = faultOf(*slice, stage);
        if (fault.empty()) {
            complete.push_back(slice);
        } else {
            omissions_.push_back({slice->getName(), fault});
        }
    }
    if (complete.empty()) {
        omissions_.clear();
    }
    show(complete.empty() ? all_ : complete);
    for (const Omission& omission : omissions_) {
        report.note(stack.getFilename() + ": slice " + omission.slice + ": " + omission.reason +
                    "; the slice is left out");
    }
}

CompleteSlices::~CompleteSlices()
{
    show(all_);
}

/// Without a change of their distances, which follow from the slice before at most where one in the
/// middle is removed.
void CompleteSlices::show(const std::vector<StackSlice*>& slices)
{
    while (stack_.getNumSlices() > 0) {
        stack_.removeSlice(stack_.getNumSlices() - 1);
    }
    for (StackSlice* slice : slices) {
        stack_.addSlice(*slice);
    }
}

/// What the only slice of the stack lacks.
std::string CompleteSlices::faultOf(StackSlice& slice, GatedStage stage)
{
    const std::string missing = evaluateGate(stage, stack_).missing;
    if (!missing.empty()) {
        return missing.find(Landmarks::contour) != std::string::npos ? "it has no contour of a leaf"
                                                                     : "it has no two junctions";
    }
    const std::vector<std::string>& models = stageGate(stage).models;
    const bool needsApex = std::find(models.begin(), models.end(), Landmarks::apex) != models.end();
    const ModelItem* apex = landmarkOf(slice, Landmarks::apex);
    return needsApex && (!apex || apex->getSize() == 0) ? "it has no apex" : "";
}
