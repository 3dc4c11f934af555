#pragma once

#include "blade/landmarks/junctionplacing.h"
#include "shape/curves/curve.h"

#include <optional>

class StackSlice;

/// Proposes the two blade-petiole junctions of a leaf from its outline alone: the places where the
/// outline narrows from the blade to the stalk. Where the blade begins with a corner they lie a few
/// pixels up the blade from it, so that the corner does not count as a sinus. On a leaf without a
/// stalk they lie beside the end at which one would be, with a low confidence.
class JunctionProposal
{
public:
    /// Two vertices of an outline, by index, with the confidence of `ProposedJunctions`.
    struct Pair
    {
        int first;
        int second;
        double confidence;
    };

    /// The junctions on a closed outline of either sense, in any unit. Seen with the tip up in an
    /// image whose rows grow downward, `first` is left of the stalk and `second` right of it. Nothing
    /// for an open curve, for one without area, and where no end stands out.
    static std::optional<Pair> propose(const Curve<float>& contour);

    /// The same for the contour of a slice, in pixels, ready to be placed (`JunctionPlacing`).
    /// Nothing for a slice without contour.
    static std::optional<ProposedJunctions> propose(const StackSlice& slice);
};
