#pragma once

#include "blade/landmarks/outlinering.h"

#include <utility>
#include <vector>

/// Looks for stalks along the outline of a leaf.
///
/// A stalk is told by the largest disc that fits into the leaf at each point of the outline and
/// touches it there: along a stalk its radius is half the stalk's width, bent or not, and it leaps up
/// where the blade begins, be it wedge-shaped or with lobes that reach back beside the stalk. So a
/// stalk is a stretch of the outline whose discs stay below some level, long for that level. A tooth
/// is such a stretch, too, but a short one. Lengths are taken relative to the square root of the
/// leaf's area: nothing here depends on unit, turn or mirror.
class StalkSearch
{
public:
    /// What a stalk has to be.
    struct Kind
    {
        /// Half widths looked for, relative to the scale.
        double thinnest;
        double thickest;
        /// A stretch ends best where its length less this many levels is largest: where the flanks
        /// begin to part, by an angle with the stalk's axis of sine 2 / `lengthPerLevel` each.
        double lengthPerLevel;
    };

    /// Stalks that are longer than wide.
    static constexpr Kind slender = {0.006, 0.04, 8.0};
    /// Stubs as long as wide or shorter.
    static constexpr Kind stubby = {0.006, 0.075, 4.0};

    /// A stretch of points, `last` included, with the level that its discs stay below.
    struct Stretch
    {
        int first;
        int last;
        double level;
        double merit;
    };

    /// The ring has to outlive the search.
    explicit StalkSearch(const OutlineRing& ring);

    /// The best stretch of a kind at each place, over all levels.
    std::vector<Stretch> stretches(const Kind& kind) const;

    /// Squares of the radii along the stretch, in levels. It tells a blunt stalk, whose flanks run
    /// side by side, from the pointed tip of a lobe as long: 5 is a blunt stalk 1.25 times as long as
    /// wide, or a pointed one 3.75 times.
    double bulk(const Stretch& stretch) const;

    /// The bulk over the length in levels: about 0.6 for a stalk, however short, and below 0.35 for a
    /// point.
    double fill(const Stretch& stretch) const;

    /// The middle of the narrowest place up to `reach` points from one.
    int narrowest(int near, int reach) const;

    /// How the blade begins at the end of a stalk.
    enum class Base {
        Corners, ///< at corners on both flanks
        Gradual, ///< without any
        OneSided ///< at a corner of one flank; the other one runs on into the blade
    };

    struct Beginning
    {
        Base base;
        /// Degrees of the blunter corner.
        double turn;
    };

    /// Moves the ends of a stretch to the corners at which the blade begins. Where a lobe lies back
    /// along the stalk, the other flank runs on past that junction to its own. At a gradual base the
    /// ends stay; at a one-sided one the end without a corner is moved across from the other one.
    Beginning moveToCorners(Stretch& stretch) const;

private:
    int lengthOf(const Stretch& stretch) const
    {
        return ring_.wrapped(stretch.last - stretch.first) + 1;
    }

    double radius(int i) const { return radii_[static_cast<std::size_t>(ring_.wrapped(i))]; }

    int widthInSteps(double level) const;
    int nearestAcross(int corner, int end, int reach) const;
    void fitDiscs();
    void addStretches(double level, double lengthPerLevel, std::vector<Stretch>& stretches) const;
    std::pair<int, double> sharpestTurn(int end, int direction, int from, int to, int width) const;

    const OutlineRing& ring_;
    std::vector<double> radii_;
};
