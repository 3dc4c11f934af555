#pragma once

#include "image/pixels/bitplane.h"

template <class T>
class Curve;

/// Thins each region to its inner 8-connected edge: a pixel whose eight neighbours are all set is
/// cleared. Does what `Thresholding0::contours` does, by ANDs of words with their neighbours.
BitPlane edgesOf(const BitPlane& image);

/// The outline of the region that holds the first pixel of the last row with any, as a closed curve
/// of (column, row) vertices that stand where the outline turns. Without any pixel the outline is
/// the vertex (0, 0).
Curve<int> outlineOf(const BitPlane& image);
