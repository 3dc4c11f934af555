#pragma once

#include "samples/leafoutline.h"
#include "samples/leafpicture.h"

/// What a detector of notches finds on the two halves of a leaf.
struct NotchCount
{
    int upper = 0;
    int lower = 0;
};

/// Finds notches the plain way: the angle at each point of the outline between the points 25 before
/// and behind it, a notch where at least six angles stay below 145 degrees until the outline bulges
/// again, placed at the smallest. Only notches between a junction and the tip count.
///
/// `outline` is closed, clockwise on the screen, about a point per pixel.
NotchCount countNotches(const Polyline& outline, const LeafOutline& leaf);

/// The outline of the largest region of a picture that differs from its corner, point by point.
Polyline traceOutline(const Picture& picture);
