#pragma once

/// Place of a contour in a series of contours that are joined in space: the series begins at a
/// `Begin` contour and ends at an `End` contour; `None` lies between two of them or outside.
enum class CurveStackTriangulationContourTag { None = 0, Begin = 1, End = 2 };
