#include "blade/process/stagegates.h"

#include "blade/process/landmarks.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stack.h"
#include "stack/stackslice.h"

#include <array>
#include <cstddef>

namespace {

constexpr int leastContour = 5;
constexpr int junctions = 2;

using Gates = std::array<StageGate, 5>;

const Gates& gates()
{
    static const Gates table = {{
        {"Extract Sinus",
         "After Extract Contour, don't forget draw the blade-petiole junctions",
         {Landmarks::petiole, Landmarks::contour}},
        {"Extract Peaks",
         "Please run Extract Sinus before Extract Tips",
         {Landmarks::petiole, Landmarks::contour, Landmarks::primarySinus, Landmarks::apex}},
        {"Hierarchy",
         "Please run Extract Sinus and/or Extract Tips before Hierarchy",
         {Landmarks::petiole, Landmarks::contour, Landmarks::primarySinus, Landmarks::apex,
          Landmarks::primaryPeak}},
        {"Analysis",
         "Please run Extract Sinus before Analysis",
         {Landmarks::petiole, Landmarks::contour, Landmarks::apex}},
        {"Averaging",
         "Please run Extract Sinus before averaging",
         {Landmarks::petiole, Landmarks::contour, Landmarks::apex}},
    }};
    return table;
}

template <class Test>
bool isVerified(const StackSlice& slice, const std::string& name, Test isGood)
{
    bool found = false;
    for (int i = 0; i < slice.getNumItems(); ++i) {
        const ModelItem& item = slice.getItem(i);
        if (item.getModel() && item.getModel()->getName() == name) {
            if (!isGood(item.getSize())) {
                return false;
            }
            found = true;
        }
    }
    return found;
}

template <class Test>
bool verifiedSizes(const Stack& stack, const std::string& name, Test isGood, std::string& missing)
{
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        if (!isVerified(slice, name, isGood)) {
            missing = "Missing " + name + " in slice number :" + slice.getName();
            return false;
        }
    }
    return true;
}

} // namespace

const StageGate& stageGate(GatedStage stage)
{
    return gates()[static_cast<std::size_t>(stage)];
}

GateResult evaluateGate(GatedStage stage, const Stack& stack)
{
    GateResult result{true, ""};
    for (const std::string& model : stageGate(stage).models) {
        result.passed = result.passed && verifiedModel(stack, model);
    }
    result.passed =
        result.passed &&
        verifiedSizeModelContours(stack, Landmarks::contour, leastContour, result.missing) &&
        verifiedSizeModelPetiole(stack, Landmarks::petiole, junctions, result.missing);
    return result;
}

bool verifiedModel(const Stack& stack, const std::string& name)
{
    return stack.findModel(name) >= 0;
}

bool verifiedSizeModelContours(const Stack& stack,
                               const std::string& name,
                               int least,
                               std::string& missing)
{
    return verifiedSizes(
        stack, name, [least](int size) { return size >= least; }, missing);
}

bool verifiedSizeModelPetiole(const Stack& stack,
                              const std::string& name,
                              int exact,
                              std::string& missing)
{
    return verifiedSizes(
        stack, name, [exact](int size) { return size == exact; }, missing);
}
