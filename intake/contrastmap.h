#pragma once

#include "intake/backgroundsurface.h"

#include <opencv2/core.hpp>

/// How much each pixel differs in colour from the background, in units of CIE Lab with lightness
/// weighed a third.
///
/// A shadow has the background's hue, only darker: in Lab the shadow of a colour lies on the line
/// from that colour to black, (L + 16, a, b) times a factor. With `Shadows::Ignored` a pixel is
/// measured from the nearest such shadow, down to about a third of the light. Where leaf and
/// background differ in lightness alone (grey pictures, silhouettes) shadows have to count.
class ContrastMap
{
public:
    enum class Shadows { Ignored, Counted };

    /// Where a contrast map of the other kind (shadows counted) stands out in thin lines: 255 on these,
    /// 0 elsewhere. Stalks are often in the background's hue, only darker; unlike shadows they are
    /// narrow and sharp.
    static cv::Mat thinLines(const cv::Mat& counted, double noise);

    /// The map of a part of a photograph: `rgb` are its pixels (CV_8UC3), its upper left one lies at
    /// `corner` of a photograph of the size `whole` (all in the same pixels; they may be reduced
    /// ones). Gives CV_32F of the part's size.
    static cv::Mat make(const cv::Mat& rgb,
                        const BackgroundSurface& background,
                        cv::Point corner,
                        cv::Size whole,
                        Shadows shadows);
};
