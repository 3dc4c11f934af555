#pragma once

#include "support/leaf.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

/// Leaves whose teeth carry teeth, with the labels that were drawn.
namespace leaf {

enum class Mark { Sinus, SecondarySinus, BothSinus, Tip, SecondaryTip };

/// A corner of a half margin: the distance from the base along the axis, and that from the axis.
struct Corner
{
    double along;
    double across;
    Mark mark;
};

struct LabelledLeaf
{
    Outline outline; ///< with the sinuses and tips of all kinds
    std::vector<Point> primarySinuses;
    std::vector<Point> secondarySinuses;
    std::vector<Point> primaryTips;
    std::vector<Point> secondaryTips;
};

/// A leaf 600 long with straight lines between the corners of its halves, given from base to apex:
/// the left half when the tip points up, then the right one.
inline LabelledLeaf drawCorners(const std::vector<Corner>& left, std::vector<Corner> right)
{
    LabelledLeaf result;
    Outline& outline = result.outline;
    std::vector<Point>& points = outline.points;
    const auto place = [](double along, double across) {
        return Point{400.0 + across, 700.0 - along};
    };
    const auto corner = [&](const Corner& c, double side) {
        const Point point = place(c.along, side * c.across);
        appendLine(points, point);
        const bool isTip = c.mark == Mark::Tip || c.mark == Mark::SecondaryTip;
        (isTip ? outline.tips : outline.sinuses).push_back(point);
        if (isTip) {
            (c.mark == Mark::Tip ? result.primaryTips : result.secondaryTips).push_back(point);
        } else if (c.mark != Mark::SecondarySinus) {
            result.primarySinuses.push_back(point);
        }
        if (c.mark == Mark::SecondarySinus || c.mark == Mark::BothSinus) {
            result.secondarySinuses.push_back(point);
        }
    };
    outline.apex = place(600.0, 0.0);
    outline.junctions[0] = place(0.0, -8.0);
    outline.junctions[1] = place(0.0, 8.0);
    points.push_back(place(-80.0, 0.0));
    appendLine(points, place(-80.0, -8.0));
    appendLine(points, outline.junctions[0]);
    for (const Corner& c : left) {
        corner(c, -1.0);
    }
    appendLine(points, outline.apex);
    std::reverse(right.begin(), right.end());
    for (const Corner& c : right) {
        corner(c, 1.0);
    }
    appendLine(points, outline.junctions[1]);
    appendLine(points, place(-80.0, 8.0));
    appendLine(points, points.front());
    points.pop_back();
    return result;
}

/// Three primary sinuses a half; the lower tooth carries a small one on the side of the base. With
/// `doubleLabels` the sinus that bounds both is drawn as of both kinds.
inline LabelledLeaf drawTeethOnTeeth(bool doubleLabels)
{
    const std::vector<Corner> half = {
        {60.0, 100.0, doubleLabels ? Mark::BothSinus : Mark::Sinus},
        {80.0, 148.0, Mark::SecondaryTip},
        {115.0, 145.0, Mark::SecondarySinus},
        {180.0, 200.0, Mark::Tip},
        {260.0, 110.0, Mark::Sinus},
        {350.0, 190.0, Mark::Tip},
        {440.0, 90.0, Mark::Sinus},
    };
    return drawCorners(half, half);
}

/// Sinuses and tips by turns at random distances from the axis, all drawn as primary.
inline LabelledLeaf drawRandomTeeth(unsigned seed)
{
    std::mt19937 random(seed);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const auto half = [&] {
        std::vector<Corner> corners;
        const int teeth = static_cast<int>(random() % 9u);
        const double step = 460.0 / (2.0 * teeth + 1.0);
        for (int k = 0; k <= 2 * teeth; ++k) {
            const double along = 60.0 + step * (k + between(0.1, 0.9));
            const bool isTip = k % 2 == 1;
            corners.push_back({along, isTip ? between(185.0, 260.0) : between(60.0, 175.0),
                               isTip ? Mark::Tip : Mark::Sinus});
        }
        return corners;
    };
    const std::vector<Corner> left = half();
    return drawCorners(left, half());
}

} // namespace leaf
