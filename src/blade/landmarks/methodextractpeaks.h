#pragma once

/// How the tip of a tooth is found; the numbers are those of the page's radio buttons.
enum MethodExtractPeaks {
    LocalSymmetry = 0,  ///< the vertex that halves the area of the tooth's top
    LocalCurvature = 1, ///< the sharpest outward corner
};
