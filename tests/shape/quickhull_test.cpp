#include "shape/quickhull.h"
#include "support/curves.h"
#include "support/errors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
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

using Points = std::set<std::pair<int, int>>;

/// Andrew's monotone chain in exact arithmetic.
Points chainHull(const Curve<int>& curve)
{
    Points sorted;
    for (int i = 0; i < curve.getSize(); ++i) {
        sorted.insert({curve[i][0], curve[i][1]});
    }
    if (sorted.size() < 3) {
        return sorted;
    }
    const auto addChain = [](auto begin, auto end, Points& hull) {
        std::vector<std::pair<int, int>> chain;
        for (auto p = begin; p != end; ++p) {
            while (chain.size() > 1) {
                const auto& a = chain[chain.size() - 2];
                const auto& b = chain.back();
                if ((b.first - a.first) * (p->second - a.second) -
                        (b.second - a.second) * (p->first - a.first) >
                    0) {
                    break;
                }
                chain.pop_back();
            }
            chain.push_back(*p);
        }
        hull.insert(chain.begin(), chain.end());
    };
    Points hull;
    addChain(sorted.begin(), sorted.end(), hull);
    addChain(sorted.rbegin(), sorted.rend(), hull);
    return hull;
}

/// All corners of the hull are found, and nothing that lies inside it: what is found beside them
/// adds no area.
template <class T>
void expectChainHull(const Curve<int>& curve)
{
    Curve<T> typed(2, curve.getSize(), 0, 0, false);
    for (int i = 0; i < curve.getSize(); ++i) {
        typed[i] = curve[i].template toType<T>();
    }
    const Curve<T> hull = hullOf(typed);
    const Points corners = chainHull(curve);
    Points found;
    Curve<T> cornersAlone(2, 0, 0, 0, false);
    for (int i = 0; i < hull.getSize(); ++i) {
        const std::pair<int, int> point(static_cast<int>(hull[i][0]), static_cast<int>(hull[i][1]));
        found.insert(point);
        if (corners.count(point) != 0) {
            cornersAlone.append(hull[i]);
        }
    }
    EXPECT_EQ(static_cast<int>(found.size()), hull.getSize());
    EXPECT_EQ(static_cast<std::size_t>(cornersAlone.getSize()), corners.size());
    EXPECT_EQ(hull.twiceArea(0, 1), cornersAlone.twiceArea(0, 1));
    EXPECT_EQ(hull.twiceArea(0, 1) > 0, corners.size() > 2);
}

} // namespace

TEST(QuickHull, AgreesWithTheMonotoneChainOnEveryType)
{
    std::mt19937 engine(61);
    for (int round = 0; round < 60; ++round) {
        // Small grids are full of straight stretches and twins.
        const Curve<int> curve =
            randomCurve<int>(2 + round * 3, round % 3 == 0 ? 3 : 1000, false, engine);
        if (chainHull(curve).size() < 2) {
            continue;
        }
        expectChainHull<int>(curve);
        expectChainHull<float>(curve);
        expectChainHull<double>(curve);
        expectChainHull<long double>(curve);
    }
}

TEST(QuickHull, BeginsAtTheLargestFirstCoordinateAndGivesTheEndsOfAStretch)
{
    EXPECT_EQ(coordinatesOf(hullOf(Curve<float>::square(0, 0, 1))),
              (std::vector<float>{1, 0, 1, 1, 0, 1, 0, 0}));
    EXPECT_EQ(hullOf(Curve<float>(2, 0, 0, 0, false)).getSize(), 0);
    EXPECT_EQ(coordinatesOf(hullOf(curveOf<float>({{2, 3}}, false))),
              (std::vector<float>{2, 3, 2, 3}));
    EXPECT_EQ(coordinatesOf(hullOf(curveOf<float>({{0, 0}, {2, 2}, {1, 1}, {2, 2}}, false))),
              (std::vector<float>{2, 2, 0, 0}));
    EXPECT_EQ(coordinatesOf(hullOf(curveOf<float>({{4, 1}, {4, 0}, {4, 5}}, false))),
              (std::vector<float>{4, 5, 4, 0}));
    EXPECT_THROW(QuickHull<float>().process(), UsageError);
}

TEST(QuickHull, LeavesOutStraightStretchesFarFromTheOrigin)
{
    // In float products the areas along these sides would come out with either sign.
    Curve<float> contour(2, 0, 0, 0, false);
    const float corner = 3001.25f;
    for (int i = 0; i < 1000; ++i) {
        contour.append(vectorOf<float>({corner + static_cast<float>(i), corner}));
    }
    for (int i = 0; i < 1000; ++i) {
        contour.append(vectorOf<float>({corner + 1000, corner + static_cast<float>(i)}));
    }
    for (int i = 1000; i > 0; --i) {
        contour.append(
            vectorOf<float>({corner + static_cast<float>(i), corner + static_cast<float>(i)}));
    }
    EXPECT_EQ(hullOf(contour).getSize(), 3);
}
