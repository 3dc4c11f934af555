#pragma once

#include "intake/scale/scalerequest.h"

/// Looks for a marker on a photograph of red, green and blue: a square, a disc, or four dots at the
/// corners of a square, turned any way, of one colour on another. One that is printed dark on light
/// is preferred; more than one, or one more than 5 per cent from its shape, are none.
FoundScale findMarker(const cv::Mat& photograph, const ScaleRequest& request);
