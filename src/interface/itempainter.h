#pragma once

#include <QTransform>

class ModelItem;
class ModelItemOwner;
class QPainter;
class QPointF;

/// Draws items as a user sees them on a slice: polygons and polylines as lines, points as their
/// symbols, regions as tinted pixels; in the colour, line width, point size and symbol of the item,
/// or of its model where the item states none.
///
/// Symbols: cube a square, dot a point, diamond, sphere a circle, tetrahedron a triangle, each an
/// outline unless its filling is on. Vertex (x, y) lies in the middle of its pixel. The painter of
/// the calls below paints in device coordinates and keeps its state.
class ItemPainter
{
public:
    /// `imageToDevice` takes image coordinates (pixel (0, 0) reaches from (0, 0) to (1, 1)) to those
    /// of the device. Line widths and point sizes are in device pixels, times `symbolScale`.
    explicit ItemPainter(const QTransform& imageToDevice, double symbolScale = 1.0);

    /// A scale at which symbols show on a picture of this size, seen as a whole on a screen.
    static double symbolScaleFor(int width, int height);

    /// All items of a slice: regions and lines first, points above them.
    void paintItems(QPainter& painter, const ModelItemOwner& slice) const;

    void paintItem(QPainter& painter, const ModelItem& item) const;

    /// Marks the selected vertices of an item by squares around them.
    void paintSelection(QPainter& painter, const ModelItem& item) const;

private:
    QPointF position(const ModelItem& item, int vertex) const;
    void paintLine(QPainter& painter, const ModelItem& item, bool closed) const;
    void paintPoints(QPainter& painter, const ModelItem& item) const;
    void paintRegion(QPainter& painter, const ModelItem& item) const;

    QTransform imageToDevice_;
    double symbolScale_;
};
