#pragma once

#include "image/pixels/bitplane.h"

/// Minimum over a square of 2 `radius` + 1 pixels a side, cut at the border, in place: the result of
/// `MinFilter0` on a two-valued image. `radius` is 0 to 31 (`ValueError`).
///
/// The AND of a window of n pixels is made from windows of 1, 2, 4 ... pixels, each the AND of two
/// that are half as long; a last AND of two windows that overlap gives n. Rows are shifted as long
/// numbers, columns are ANDs of rows.
void erodeSquare(BitPlane& plane, int radius);
