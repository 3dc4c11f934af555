#pragma once

#include "intake/leaffinder.h"

#include <opencv2/core.hpp>

#include <optional>

/// What a slice shows of a photograph: one leaf and the background around it.
struct SliceCut
{
    /// Where the slice lies in the photograph. Reaches beyond it where a margin was added.
    cv::Rect part;
    /// The photograph itself is the slice, untouched.
    bool isWhole = false;
    /// Rows of red, green and blue, of the part's size.
    cv::Mat pixels;
    /// The contrast of these pixels to the background (CV_32F).
    cv::Mat contrast;
    double border = 0.0; ///< the contrast at which the leaf ends
    /// 255 on the leaf, of the same size; its holes are filled.
    cv::Mat region;
};

/// Makes slices of the leaves that were found on a photograph.
///
/// A leaf that lies alone and free on its photograph needs nothing. Else the part around it is cut
/// out, with a margin of background, and other objects in that part are painted over in the colour
/// that the background has there. Where the leaf reaches the photograph's edge the margin is added.
class SliceCutter
{
public:
    /// The cut for the leaf at this place among the objects; of this part of the photograph, where
    /// one is given.
    static SliceCut cut(const Photograph& photograph,
                        const FoundLeaves& found,
                        int object,
                        const std::optional<cv::Rect>& part = std::nullopt);

    /// The margin in pixels around a leaf of this size: the stage that finds outlines marks a frame
    /// of 5 pixels as background and needs room between it and the leaf.
    static int marginOf(const cv::Rect& box);

private:
    static bool needsNothing(const FoundLeaves& found, const FoundObject& leaf);
};
