#include "image/pixels/axialneighbourhooditerator.h"
#include "image/pixels/image2.h"
#include "image/pixels/neighbourhood.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <cstdlib>
#include <memory>
#include <vector>

namespace {

std::vector<int> visited(AbstractNeighbourhoodIterator& iterator, int centre)
{
    std::vector<int> indices;
    for (iterator.setCentre(centre); !iterator.atEnd(); iterator.next()) {
        indices.push_back(iterator.index());
    }
    return indices;
}

} // namespace

TEST(Neighbourhood, ShapesHoldTheOffsetsWithinTheirBounds)
{
    EXPECT_EQ(Neighbourhood::neighbourhood4(), matrixOf<int>({{-1, 0}, {0, -1}, {0, 1}, {1, 0}}));
    EXPECT_EQ(Neighbourhood::neighbourhood6().getSize1(), 6);
    for (int r = 0; r < 6; ++r) {
        const int side = 2 * r + 1;
        EXPECT_EQ(Neighbourhood::squareNeighbourhood(r, true).getSize1(), side * side);
        EXPECT_EQ(Neighbourhood::cubicNeighbourhood(r, false).getSize1(), side * side * side - 1);
        const Neighbourhood ball = Neighbourhood::sphericalNeighbourhood(r, true);
        for (int i = 0; i < ball.getSize1(); ++i) {
            EXPECT_LE(ball[i].snorm(), r * r);
        }
        EXPECT_EQ(ball.maxShift(), r);
    }
    EXPECT_EQ(Neighbourhood::sphericalNeighbourhood(2, true).getSize1(), 33);
    EXPECT_EQ(Neighbourhood::circularNeighbourhood(2, true).getSize1(), 13);
    EXPECT_THROW(Neighbourhood::squareNeighbourhood(-1, true), ValueError);
}

TEST(Neighbourhood, HalvesMirrorEachOther)
{
    const Neighbourhood cube = Neighbourhood::cubicNeighbourhood(2, true);
    const Neighbourhood front = cube.front(false);
    const Neighbourhood back = cube.back(false);
    ASSERT_EQ(front.getSize1(), 62);
    ASSERT_EQ(back.getSize1(), 62);
    for (int i = 0; i < 62; ++i) {
        EXPECT_EQ(front[i], -back[61 - i]);
    }
    EXPECT_EQ(cube.half(-1, true).getSize1(), 63);
    EXPECT_THROW(cube.half(0, true), ValueError);
}

TEST(Neighbourhood, TheShapeIsBuiltForTheDimensionOfAnImage)
{
    const Image2 plane(ValueType::UnsignedChar, 5, 5, 1, 1, 1, 1);
    const Image2 volume(ValueType::UnsignedChar, 5, 5, 5, 1, 1, 1);
    Neighbourhood neighbourhood;
    EXPECT_FALSE(neighbourhood.isBuilt());
    neighbourhood.configureFor(plane);
    EXPECT_TRUE(neighbourhood.isBuilt());
    EXPECT_EQ(neighbourhood, Neighbourhood::squareNeighbourhood(1, true));
    neighbourhood.setBall(2);
    neighbourhood.configureFor(volume);
    EXPECT_EQ(neighbourhood, Neighbourhood::sphericalNeighbourhood(2, true));
    EXPECT_FALSE(neighbourhood.isBox());
}

TEST(AbstractNeighbourhoodIterator, BoxesAndLinesAreCutAtTheBorder)
{
    const Image2 image(ValueType::Float, 4, 5, 3, 1, 1, 1);
    for (int radius = 0; radius < 7; ++radius) {
        const std::unique_ptr<AbstractNeighbourhoodIterator> iterators[] = {
            std::make_unique<AxialNeighbourhoodIterator<3, 0>>(image),
            std::make_unique<AxialNeighbourhoodIterator<3, 1>>(image),
            std::make_unique<AxialNeighbourhoodIterator<3, 2>>(image),
            std::make_unique<MappedNeighbourhoodIterator<3>>(image)};
        for (int n = 0; n < 4; ++n) {
            iterators[n]->setRadius(radius);
            EXPECT_TRUE(iterators[n]->atEnd());
            for (int centre = 0; centre < 60; ++centre) {
                std::vector<int> expected;
                for (int other = 0; other < 60; ++other) {
                    const int distances[] = {centre / 5 % 4 - other / 5 % 4, centre % 5 - other % 5,
                                             centre / 20 - other / 20};
                    bool isReached = true;
                    for (int axis = 0; axis < 3; ++axis) {
                        const int reach = n == 3 || n == axis ? radius : 0;
                        isReached = isReached && std::abs(distances[axis]) <= reach;
                    }
                    if (isReached) {
                        expected.push_back(other);
                    }
                }
                EXPECT_EQ(visited(*iterators[n], centre), expected) << n << ": " << centre;
            }
        }
        EXPECT_THROW(iterators[0]->setCentre(60), RangeError);
        EXPECT_THROW(iterators[0]->setRadius(-1), ValueError);
    }
    // Images choose the iterators of their dimensions.
    const Image2 flat(ValueType::Float, 3, 4, 1, 3, 1, 1);
    EXPECT_EQ(visited(*flat.newMappedNeighbourhoodIterator(), 0), (std::vector<int>{0, 1, 4, 5}));
    EXPECT_EQ(visited(*image.newMappedNeighbourhoodIterator(), 27).size(), 27U);
    EXPECT_EQ(visited(*flat.newAxialNeighbourhoodIterator(1, 2), 5),
              (std::vector<int>{4, 5, 6, 7}));
    const auto axes = image.newAxialNeighbourhoodIterators(1);
    ASSERT_EQ(axes.size(), 3U);
    EXPECT_EQ(visited(*axes[2], 27), (std::vector<int>{7, 27, 47}));
    EXPECT_THROW(flat.newAxialNeighbourhoodIterator(2, 1), ValueError);
}
