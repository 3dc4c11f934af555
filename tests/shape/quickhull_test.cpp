#include "shape/curves/quickhull.h"
#include "support/curves.h"
#include "support/errors.h"

#include <algorithm>
#include <set>
#include <utility>

namespace {

template <class T>
Curve<T> hullOf(const Curve<T>& curve)
{
    QuickHull<T> hull;
    hull.setCurve(curve);
    return hull.process();
}

/// The hull turns left, passes through vertices of the curve, each place once, and has all others on
/// its left: whole numbers tell without rounding.
template <class T>
void expectHull(const Curve<int>& curve)
{
    std::set<std::pair<T, T>> places;
    Curve<T> typed(2, curve.getSize(), 0, 0, false);
    for (int i = 0; i < curve.getSize(); ++i) {
        typed[i] = curve[i].template toType<T>();
        places.emplace(typed[i][0], typed[i][1]);
    }
    const Curve<T> hull = hullOf(typed);
    EXPECT_GE(hull.twiceArea(0, 1), 0);
    for (int i = 0; i < hull.getSize(); ++i) {
        EXPECT_EQ(places.erase({hull[i][0], hull[i][1]}), 1u);
        const Vector<T> side = hull[(i + 1) % hull.getSize()] - hull[i];
        for (int j = 0; j < typed.getSize(); ++j) {
            const Vector<T> to = typed[j] - hull[i];
            ASSERT_GE(side[0] * to[1] - side[1] * to[0], 0);
            // Nor does a point stand beyond the end of a side.
            ASSERT_TRUE(hull.getSize() > 2 || side.scalarProduct(to) >= 0);
        }
    }
}

} // namespace

TEST(QuickHull, IsTheHullOnEveryType)
{
    std::mt19937 engine(61);
    for (int round = 0; round < 60; ++round) {
        // Small grids are full of straight stretches and twins.
        const Curve<int> curve =
            randomCurve<int>(4 + round * 3, round % 3 == 0 ? 3 : 1000, false, engine);
        expectHull<int>(curve);
        expectHull<float>(curve);
        expectHull<double>(curve);
        expectHull<long double>(curve);
    }
}

TEST(QuickHull, BeginsAtTheLargestFirstCoordinateAndGivesTheEndsOfAStretch)
{
    const std::tuple<Curve<float>, std::vector<float>> cases[] = {
        {Curve<float>::square(0, 0, 1), {1, 0, 1, 1, 0, 1, 0, 0}},
        {Curve<float>(2, 0, 0, 0, false), {}},
        {curveOf<float>({{2, 3}}, false), {2, 3, 2, 3}},
        {curveOf<float>({{0, 0}, {2, 2}, {1, 1}, {2, 2}}, false), {2, 2, 0, 0}},
        {curveOf<float>({{4, 1}, {4, 0}, {4, 5}}, false), {4, 5, 4, 0}}};
    for (const auto& [curve, hull] : cases) {
        EXPECT_EQ(coordinatesOf(hullOf(curve)), hull);
    }
    EXPECT_THROW(QuickHull<float>().process(), UsageError);
}

TEST(QuickHull, LeavesOutStraightStretchesFarFromTheOrigin)
{
    // In float products the areas along these sides would come out with either sign.
    Curve<float> contour(2, 0, 0, 0, false);
    for (int i = 0; i < 3000; ++i) {
        const float along = static_cast<float>(i % 1000);
        const float x = i < 1000 ? along : i < 2000 ? 1000 : 1000 - along;
        contour.append(vectorOf<float>({x, i < 1000 ? 0 : i < 2000 ? along : x}));
    }
    contour.translate(vectorOf<float>({3001.25f, 3001.25f}));
    EXPECT_EQ(hullOf(contour).getSize(), 3);
}
