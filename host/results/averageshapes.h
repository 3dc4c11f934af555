#pragma once

#include <QPolygonF>
#include <QString>

#include <string>
#include <vector>

class LMXStack;

/// An outline to be laid over others. In the frame of the average shapes the middle of the two
/// junctions is the origin and the apex lies on the positive first axis; the second axis points to
/// the right of one who looks along the first in an image.
struct AverageShape
{
    QString name;
    QPolygonF outline; ///< open: from the one junction to the other
    bool closed = false;
    int slice = -1; ///< of the stack that it was taken from
};

/// The blades of a stack, of averages or of leaves, in the frame of the averages and in the stack's
/// unit. Slices without contour, two junctions and apex are left out.
std::vector<AverageShape> shapesOfStack(LMXStack& stack);

/// Curve files, in their own coordinates, of which the first two count. Raises `FileReadError` and
/// `FileFormatError` for what is no file of a curve with vertices.
std::vector<AverageShape> shapesOfFiles(const std::vector<std::string>& filenames);

/// The curve files of a folder, by natural order of their names: without those in pixels
/// ("-sampled.cv") where there are others.
std::vector<std::string> curveFiles(const std::string& folder);

/// What tells the names apart: without the beginning that all share, up to a hyphen.
std::vector<QString> shortNames(const std::vector<AverageShape>& shapes);
