#pragma once

#include <QPoint>

#include <vector>

template <class T>
class Vertices;

/// The closed line of a contour, in pixels: where it is nearest to a point, and what it becomes when
/// a piece of it is drawn again.
class ContourLine
{
public:
    /// A place on the line: on the edge from vertex `edge` to the next one.
    struct Place
    {
        int edge;
        double x;
        double y;
        double distance; ///< of the point that was asked for

        QPoint pixel() const;
    };

    /// Copies the vertices, of which there must be one at least.
    explicit ContourLine(const Vertices<int>& contour);

    /// Of equal distances the first edge.
    Place nearest(const QPoint& point) const;

    /// Diagonal of the box.
    double diagonal() const;

    /// The contour with the drawn line in place of one of the two pieces between the places nearest
    /// to its ends: the piece that lies nearer to the drawn line on average, the shorter one where
    /// they are equal. The new piece has a vertex at each pixel step; the sense stays, and vertex 0
    /// is the one nearest to the old one. Two points of the line at least.
    std::vector<QPoint> redrawn(const std::vector<QPoint>& drawn) const;

    /// A line with all pixel steps between its points, and no point twice in a row; a closed one
    /// ends a step before its first point.
    static std::vector<QPoint> pixelSteps(const std::vector<QPoint>& points, bool closed);

private:
    std::vector<QPoint> piece(const Place& from, const Place& to) const;

    int sizeOf() const { return static_cast<int>(vertices_.size()); }

    std::vector<QPoint> vertices_;
};
