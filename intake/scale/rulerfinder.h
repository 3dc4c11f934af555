#pragma once

#include "intake/scale/scalerequest.h"

/// Looks for a ruler on a photograph of red, green and blue, turned any way, by its dark ticks.
///
/// Millimetres are told by longer ticks at each tenth, inches by ticks that are longer at each
/// halving; the centimetre of a ruler in millimetres is ten of its ticks. A ruler whose ticks are all
/// of one length is taken by the unit that is requested. Rulers that disagree are none, and so is
/// one whose period changes by more than 5 per cent from one half to the other.
FoundScale findRuler(const cv::Mat& photograph, ScaleRequest::Unit unit);
