#pragma once

#include <string>

/// What kinds of margin there are.
enum class LeafKind {
    /// Pinnate, one row of teeth on either side.
    Plain,
    /// Pinnate, each tooth with smaller teeth on its back.
    TeethOnTeeth,
    /// Pinnate, teeth on one side, the other one smooth.
    OneSided,
    Smooth,
    /// Palmate, with lobes.
    Palmate
};

std::string kindName(LeafKind kind);

/// All that is decided about a leaf before it is drawn. Lengths are in pixels, angles in radians.
///
/// "Upper" is the half that a walk around the blade meets first, from the stalk and clockwise on
/// the screen: the left one when the tip points up. A tooth is what lies between two notches of
/// one half; what lies between the last notch and the tip or the stalk is none.
struct LeafPlan
{
    std::string name;
    LeafKind kind = LeafKind::Plain;
    bool colour = false;
    bool lightBackground = false;

    int upperTeeth = 0;
    int lowerTeeth = 0;
    /// Teeth on the back of other teeth, on the whole leaf.
    int smallTeeth = 0;

    double bladeLength = 0.0;
    double halfWidth = 0.0;
    /// Exponents of the half width at the base (below 1: rounded) and at the tip (above 1: drawn
    /// out).
    double baseExponent = 1.0;
    double tipExponent = 1.0;
    double toothHeight = 0.0;
    double petioleLength = 0.0;
    double petioleHalfWidth = 0.0;
    /// Sideways shift of the tip, and of the stalk's end.
    double bend = 0.0;
    double petioleBend = 0.0;
    double tilt = 0.0;

    /// Seed of what is drawn at random with these figures: places of teeth, shades, noise.
    long seed = 1;
};

/// The plan of leaf `index` of a series, counted from 0. It depends on the two numbers alone, not
/// on how many leaves are drawn. Half of the leaves are plain.
LeafPlan planLeaf(int index, long seed);

/// The plan of leaf `index` of `count` that grow from the first to the last, each a plain one on a
/// dark background, grey, with as many teeth as the others.
LeafPlan planGrowingLeaf(int index, int count, long seed);
