#include "blade/landmarks/extractconvexpoints.h"
#include "blade/landmarks/halfneighbourhood.h"
#include "samples/leafoutline.h"
#include "support/curves.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

std::vector<leaf::Point> rounded(const Polyline& line)
{
    std::vector<leaf::Point> points;
    for (const ::Point& point : line) {
        points.push_back({std::floor(point.x), std::floor(point.y)});
    }
    return points;
}

/// The number of sinuses of a drawn leaf on a picture so many times as large as planned.
std::size_t sinuses(const LeafOutline& drawn, double factor, double& share)
{
    const LeafOutline large = enlarged(drawn, factor);
    const auto stack = leaf::emptyStack(1);
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0,
                  rounded(resampledLoop(large.outline, 1.2)));
    leaf::mark(*stack, "Petiole", 0, rounded({large.leftJunction, large.rightJunction}));
    const int half = autoHalfNeighbourhood(stack->getSlice(0));
    share = half / factor;
    ExtractConvexPoints process;
    process.setStack(*stack);
    process.setNeigbourhood(half);
    process.setThresholdAngle(145.0f);
    process.createModels();
    process.process(0);
    return leaf::vertices(*stack, "Primary Sinus", 0).size();
}

} // namespace

TEST(HalfNeighbourhood, OfItsOwnGivesALeafTheSameSinusesAtAllSizesOfThePicture)
{
    for (int index = 0; index < 12; ++index) {
        const LeafPlan plan = planLeaf(index, 4);
        const LeafOutline drawn = makeOutline(plan, 900, 1300);
        double small = 0.0;
        double large = 0.0;
        EXPECT_EQ(sinuses(drawn, 0.45, small), sinuses(drawn, 2.4, large)) << plan.name;
        EXPECT_NEAR(small, large, 0.1 * large) << plan.name;
    }
    for (const double length : {0.0, -3.0, std::nan("")}) {
        EXPECT_EQ(autoHalfNeighbourhood(length), 5);
    }
}
