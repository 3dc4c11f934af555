#include "blade/stagegates.h"
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

void addContour(LMXStack& stack, int slice, int size)
{
    leaf::addItem(stack, "Contour", PRIMITIVE_POLYGON, slice, points(size));
}

void addJunctions(LMXStack& stack, int slice, int size)
{
    leaf::addItem(stack, "Petiole", PRIMITIVE_POLYPOINT, slice, points(size));
}

/// Two slices with all that the gates ask for.
std::unique_ptr<LMXStack> completeStack()
{
    auto stack = leaf::emptyStack(2);
    for (int slice = 0; slice < 2; ++slice) {
        addContour(*stack, slice, 5);
        addJunctions(*stack, slice, 2);
        for (const char* name : {"Apex", "Primary Sinus", "Primary Peak"}) {
            leaf::addItem(*stack, name, PRIMITIVE_POLYPOINT, slice, points(1));
        }
    }
    return stack;
}

const std::vector<GatedStage> stages = {GatedStage::ExtractSinus, GatedStage::ExtractPeaks,
                                        GatedStage::Hierarchy, GatedStage::LeafMeasures,
                                        GatedStage::Averaging};

} // namespace

TEST(StageGates, ACompleteStackPassesAllAndAnEmptyOneNone)
{
    const auto complete = completeStack();
    const auto empty = leaf::emptyStack(1);
    for (const GatedStage stage : stages) {
        EXPECT_TRUE(evaluateGate(stage, *complete).passed);
        const GateResult failed = evaluateGate(stage, *empty);
        EXPECT_FALSE(failed.passed);
        EXPECT_EQ(failed.missing, "");
    }
}

TEST(StageGates, EachStageNeedsItsModelsAndNoOthers)
{
    // In the order of the stages: which of them fail without the model.
    struct Case
    {
        const char* model;
        bool fails[5];
    };

    const std::vector<Case> cases = {{"Petiole", {true, true, true, true, true}},
                                     {"Contour", {true, true, true, true, true}},
                                     {"Primary Sinus", {false, true, true, false, false}},
                                     {"Apex", {false, true, true, true, true}},
                                     {"Primary Peak", {false, false, true, false, false}}};
    for (const Case& given : cases) {
        const auto stack = completeStack();
        stack->deleteModel(stack->findModel(given.model));
        for (std::size_t i = 0; i < stages.size(); ++i) {
            const GateResult result = evaluateGate(stages[i], *stack);
            EXPECT_EQ(result.passed, !given.fails[i]) << given.model << i;
            EXPECT_EQ(result.missing, "") << given.model << i;
        }
    }
}

TEST(StageGates, TheFirstSliceThatFailsIsNamedContoursBeforeJunctions)
{
    const auto stack = leaf::emptyStack(3);
    for (int slice = 0; slice < 3; ++slice) {
        addContour(*stack, slice, slice == 2 ? 4 : 9);
        addJunctions(*stack, slice, slice == 0 ? 3 : 2);
    }
    EXPECT_EQ(evaluateGate(GatedStage::ExtractSinus, *stack).missing,
              "Missing Contour in slice number :leaf2");
    // A second contour of the slice does not make up for the small one.
    addContour(*stack, 2, 5);
    EXPECT_FALSE(evaluateGate(GatedStage::ExtractSinus, *stack).passed);
    delete leaf::findItem(*stack, "Contour", 2);
    delete leaf::findItem(*stack, "Contour", 2);
    addContour(*stack, 2, 5);
    addContour(*stack, 2, 7);
    EXPECT_EQ(evaluateGate(GatedStage::ExtractSinus, *stack).missing,
              "Missing Petiole in slice number :leaf0");
    delete leaf::findItem(*stack, "Petiole", 0);
    EXPECT_EQ(evaluateGate(GatedStage::ExtractSinus, *stack).missing,
              "Missing Petiole in slice number :leaf0");
    addJunctions(*stack, 0, 2);
    addJunctions(*stack, 0, 2);
    EXPECT_TRUE(evaluateGate(GatedStage::ExtractSinus, *stack).passed);
}
