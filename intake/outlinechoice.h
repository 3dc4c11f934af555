#pragma once

#include "blade/contour/backgroundvalue.h"
#include "blade/contour/extractcontour.h"
#include "intake/slicecutter.h"
#include "shape/curves/curve.h"

#include <optional>
#include <string>

/// What is shown to the stage that finds outlines, and what came of it.
struct ChosenOutline
{
    enum Channel { Grey, Red, Green, Blue, Contrast, Region };

    /// "grey", "red", "green", "blue", "contrast" or "region".
    static std::string nameOf(Channel channel);
    /// Nothing for another name.
    static std::optional<Channel> channelOf(const std::string& name);

    Curve<int> outline{2, 0, 0, 0, false}; ///< in pixels of the slice; empty without one
    Channel channel = Grey;
    BackgroundValue background = DarkBackground;
    /// Of the outline's inside and the leaf's region: common area to that of both, 0 to 1. Of the
    /// region's own outline, that of the best outline that was tried before it.
    double overlap = 0.0;
};

/// What was said of an outline by hand; the rest is tried.
struct OutlineWish
{
    std::optional<ChosenOutline::Channel> channel;
    std::optional<BackgroundValue> background;
    bool binary = false;
    int fidelity = 100;
};

/// Finds the outline of a leaf by the stage's own method (`ExtractContour`), shown what suits it.
///
/// That method takes a grey picture with a leaf brighter than the background. Which picture serves
/// best is tried: the colour channel that separates the leaf best, and a contrast picture, the
/// distance of each pixel from the background's colour, white from well above the contrast at the
/// leaf's border on and black far from the leaf. The outline that agrees best with the region found by colour is taken. If
/// none agrees, the region itself is shown, as a picture of two values.
class OutlineChoice
{
public:
    /// Needs no stack, and may be called from several threads.
    static ChosenOutline choose(const SliceCut& cut, const OutlineWish& wish);

    /// Common area of an outline's inside and a region, to the area of both; 0 for an outline of
    /// fewer than 3 vertices.
    static double overlap(const Curve<int>& outline, const cv::Mat& region);

    /// How far outline and region go apart at most, to the diagonal of the region's box; 1 for an
    /// outline of fewer than 3 vertices.
    static double reach(const Curve<int>& outline, const cv::Mat& region);
};
