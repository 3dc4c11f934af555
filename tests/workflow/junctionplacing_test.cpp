#include "blade/junctionplacing.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

namespace {

/// A square of 100 pixels on a slice without an image: a tenth of its diagonal is 14.1 pixels.
std::unique_ptr<LMXStack> squareStack()
{
    auto stack = leaf::emptyStack(1);
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0,
                  {{0.0, 0.0}, {100.0, 0.0}, {100.0, 100.0}, {0.0, 100.0}});
    return stack;
}

std::string fault(const LMXStack& stack, int x1, int y1, int x2, int y2)
{
    return junctionFault({{x1, x2}, {y1, y2}}, stack.getSlice(0));
}

} // namespace

TEST(JunctionPlacing, TakesPointsNearDifferentPlacesOfTheContour)
{
    const auto stack = squareStack();
    EXPECT_EQ(fault(*stack, 40, 3, 60, -4), "");
    EXPECT_EQ(fault(*stack, -14, 50, -10, 70), "");
    EXPECT_EQ(fault(*stack, 3, 95, 12, 99), "") << "around the closing side";
    EXPECT_EQ(fault(*leaf::emptyStack(1), 900, 900, 901, 900), "") << "no contour to compare with";
}

TEST(JunctionPlacing, RefusesPointsFarFromTheContourOrOnOnePlaceOfIt)
{
    const auto stack = squareStack();
    EXPECT_EQ(fault(*stack, 50, 15, 50, 0),
              "junction 1 lies 15.0 pixels from the contour, more than 14.1");
    EXPECT_EQ(fault(*stack, 50, 0, 110, 111).substr(0, 32), "junction 2 lies 14.9 pixels from");
    EXPECT_EQ(fault(*stack, -8, -1, -1, -8),
              "both junctions fall on one place of the contour, 0.0 pixels apart there instead of "
              "9.9");
    EXPECT_EQ(fault(*stack, 50, 12, 50, -12).substr(0, 27), "both junctions fall on one ");
    EXPECT_EQ(fault(*stack, 50, 0, 50, 0), "both junctions are the same point");
}

TEST(JunctionPlacing, ReplacesThePointsThatASliceHas)
{
    const auto stack = leaf::emptyStack(2);
    JunctionPlacing placing;
    placing.setStack(*stack);
    placing.place({{1, 3}, {2, 4}}, 0);
    placing.place({{5, 7}, {6, 8}}, 1);
    placing.place({{9, 11}, {10, 12}}, 0);
    ASSERT_EQ(stack->getNumModels(), 1);
    EXPECT_EQ(stack->getModel(0).getNumItems(), 2);
    const auto first = leaf::vertices(*stack, "Petiole", 0);
    ASSERT_EQ(first.size(), 2u);
    EXPECT_EQ(first[1].x, 11.0);
    EXPECT_EQ(first[1].y, 12.0);
    EXPECT_EQ(leaf::vertices(*stack, "Petiole", 1)[0].x, 5.0);
}
