#include "blade/process/stagegates.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

namespace {

std::vector<leaf::Point> points(int count)
{
    std::vector<leaf::Point> result;
    for (int i = 0; i < count; ++i) {
        result.push_back({10.0 * i, 5.0 * i * i});
    }
    return result;
}

/// Slices with all that the gates ask for.
std::unique_ptr<LMXStack> completeStack(int slices)
{
    auto stack = leaf::emptyStack(slices);
    for (int slice = 0; slice < slices; ++slice) {
        leaf::mark(*stack, "Contour", slice, points(5));
        leaf::mark(*stack, "Petiole", slice, points(2));
        for (const char* name : {"Apex", "Primary Sinus", "Primary Peak"}) {
            leaf::mark(*stack, name, slice, points(1));
        }
    }
    return stack;
}

const std::vector<GatedStage> stages = {GatedStage::ExtractSinus, GatedStage::ExtractPeaks,
                                        GatedStage::Hierarchy, GatedStage::LeafMeasures,
                                        GatedStage::Averaging};

} // namespace

TEST(StageGates, EachStageNeedsItsModelsAndNoOthers)
{
    // In the order of the stages: which of them fail without the model.
    struct Case
    {
        const char* model;
        bool fails[5];
    };

    const std::vector<Case> cases = {{"none", {false, false, false, false, false}},
                                     {"Petiole", {true, true, true, true, true}},
                                     {"Contour", {true, true, true, true, true}},
                                     {"Primary Sinus", {false, true, true, false, false}},
                                     {"Apex", {false, true, true, true, true}},
                                     {"Primary Peak", {false, false, true, false, false}}};
    for (const Case& given : cases) {
        const auto stack = completeStack(2);
        if (stack->findModel(given.model) >= 0) {
            stack->deleteModel(stack->findModel(given.model));
        }
        for (std::size_t i = 0; i < stages.size(); ++i) {
            const GateResult result = evaluateGate(stages[i], *stack);
            EXPECT_EQ(result.passed, !given.fails[i]) << given.model << i;
            EXPECT_EQ(result.missing, "") << given.model << i;
        }
    }
}

TEST(StageGates, TheFirstSliceThatFailsIsNamedContoursBeforeJunctions)
{
    const auto stack = completeStack(3);
    const auto expectMissing = [&](const std::string& what) {
        const GateResult result = evaluateGate(GatedStage::ExtractSinus, *stack);
        EXPECT_EQ(result.missing, what.empty() ? ""
                                               : "Missing " + what.substr(0, 7) +
                                                     " in slice number :leaf" + what.back());
        EXPECT_EQ(result.passed, what.empty());
    };
    leaf::remark(*stack, "Contour", 2, points(4));
    leaf::remark(*stack, "Petiole", 0, points(3));
    expectMissing("Contour 2");
    leaf::mark(*stack, "Contour", 2, points(5)); // it does not make up for the small one
    expectMissing("Contour 2");
    delete leaf::findItem(*stack, "Contour", 2);
    leaf::remark(*stack, "Contour", 2, points(5));
    leaf::mark(*stack, "Contour", 2, points(7));
    expectMissing("Petiole 0");
    delete leaf::findItem(*stack, "Petiole", 0);
    expectMissing("Petiole 0");
    leaf::mark(*stack, "Petiole", 0, points(2));
    leaf::mark(*stack, "Petiole", 0, points(2));
    expectMissing("");
}
