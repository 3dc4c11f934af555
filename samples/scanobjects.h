#pragma once

#include "samples/colour.h"
#include "samples/polyline.h"

#include <string>
#include <vector>

class RandomGenerator;

/// A closed line filled with one colour.
struct Patch
{
    Polyline loop;
    Colour colour;
};

/// What lies beside the leaves of a scan: patches that are painted one over the other. Objects are
/// made in millimetres about their middle, and placed in pixels.
struct ScanObject
{
    std::string name;
    /// The edge of the whole object, which throws the shadow.
    Polyline edge;
    std::vector<Patch> patches;
};

/// What the ticks of a ruler stand for. A ruler in millimetres has longer ticks at 5 and 10 of
/// them, and sixteenths of an inch at its other edge; one in inches has sixteenths with ticks that
/// are longer at each halving; one in centimetres has one tick each and no other.
enum class RulerUnit { None, Millimetre, Centimetre, Inch };

/// What a marker shows: a square, a disc, or four dots at the corners of a square.
enum class MarkerKind { None, Square, Disc, Dots };

/// A marker and its known length in millimetres: the side of the square, the diameter of the disc,
/// or the distance of the dots' middles along the sides.
struct MarkerPlan
{
    MarkerKind kind = MarkerKind::None;
    double size = 0.0;
};

/// About 160 by 26 millimetres, along x.
ScanObject drawRuler(RulerUnit unit, RandomGenerator& random);

/// Printed in black on a white card with a rim of 4 millimetres.
ScanObject drawMarker(const MarkerPlan& marker);

/// 24 coloured squares on a dark card of 56 by 82 millimetres.
ScanObject drawColourCard(RandomGenerator& random);

/// A card of 66 by 44 millimetres, grey, with a wedge of ten steps from black to white.
ScanObject drawGreyCard();

/// A card of 66 by 36 millimetres with lines of marks that look like writing.
ScanObject drawLabel(RandomGenerator& random);

/// Puts an object's middle onto a pixel, turned clockwise on the screen by so many radians.
ScanObject placed(ScanObject object, const Point& middle, double angle, double pixelsPerMillimetre);
