#pragma once

class StackSlice;

/// The half neighbourhood for the sinuses of a leaf from the length of its outline in pixels: in
/// proportion to it, so that a leaf photographed at twice the size gets twice the vertices. At least
/// 5; unlike the number that a user sets it has no upper bound.
int autoHalfNeighbourhood(double outlineLength);

/// The same for the contour of a slice; 5 without one.
int autoHalfNeighbourhood(const StackSlice& slice);
