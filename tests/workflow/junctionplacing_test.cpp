#include "blade/landmarks/junctionplacing.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

TEST(JunctionPlacing, TakesPointsNearDifferentPlacesOfTheContourAndTellsOthers)
{
    // A square of 100 pixels on a slice without an image: a tenth of its diagonal is 14.1 pixels.
    const auto stack = leaf::emptyStack(2);
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0,
                  {{0.0, 0.0}, {100.0, 0.0}, {100.0, 100.0}, {0.0, 100.0}});
    const auto expectFault = [&](JunctionPoints points, const std::string& begin) {
        const std::string found = junctionFault(points, stack->getSlice(0));
        EXPECT_EQ(begin.empty() ? found : found.substr(0, begin.size()), begin);
    };
    expectFault({{40, 60}, {3, -4}}, "");
    expectFault({{-14, -10}, {50, 70}}, "");
    expectFault({{3, 12}, {95, 99}}, ""); // around the closing side
    expectFault({{50, 50}, {15, 0}},
                "junction 1 lies 15.0 pixels from the contour, more than 14.1");
    expectFault({{50, 110}, {0, 111}}, "junction 2 lies 14.9 pixels from");
    expectFault({{-8, -1}, {-1, -8}}, "both junctions fall on one place of the contour, 0.0 pixels "
                                      "apart there instead of 9.9");
    expectFault({{50, 50}, {12, -12}}, "both junctions fall on one ");
    expectFault({{50, 50}, {0, 0}}, "both junctions are the same point");
    EXPECT_EQ(junctionFault({{900, 901}, {900, 900}}, stack->getSlice(1)), "") << "no contour";
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
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Petiole", 0), {{9, 10}, {11, 12}}, 0));
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Petiole", 1), {{5, 6}, {7, 8}}, 0));
}
