#pragma once

#include "blade/landmarks/outlinering.h"

#include <vector>

/// What tells the two ends of a leaf from each other and from the rest of its outline. An end is a
/// stretch of points of the ring, `last` included, or a single one.
class LeafEnds
{
public:
    /// The ring has to outlive this.
    explicit LeafEnds(const OutlineRing& ring);

    /// How far the two flanks beyond an end are from being mirror images: the mean difference of
    /// their distances from the end's middle, relative to the mean distance. At the base and at the
    /// tip of most leaves it is below 0.1.
    double asymmetry(int first, int last) const;

    /// From -1 to 1: above 0 if the teeth of both flanks point away from the end, which then is the
    /// base; near 0 without teeth.
    double teeth(int first, int last) const;

    /// The width of the leaf where both flanks have come so far from the end's middle as `part` of
    /// the farthest point; relative to the distance of that.
    double width(int first, int last, double part) const;

    /// How far a point is from the middle of the outline: the more the narrower this end is.
    double outreach(int i) const { return distanceFrom(centre_, i); }

    /// The point farthest from a place.
    int farthestFrom(const OutlineRing::Point& place) const;

    /// The points that stand out and about which the outline is most nearly symmetric, and both ends
    /// of the longest axis.
    std::vector<int> tips() const;

private:
    OutlineRing::Point middle(int first, int last) const;
    double distanceFrom(const OutlineRing::Point& from, int i) const;
    void measureTeeth(double window);

    const OutlineRing& ring_;
    OutlineRing::Point centre_;
    /// Sums up to each point of the cubes of the steps by which the outline leaves its smoothed
    /// form: with their signs and without.
    std::vector<double> signedSums_;
    std::vector<double> absoluteSums_;
};
