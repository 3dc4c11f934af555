#pragma once

#include "host/editing/vertexplace.h"

#include <QPoint>
#include <QString>
#include <QTransform>

#include <optional>

class ModelItem;
class QRectF;
class StackSlice;

/// What lies where on a slice as a view shows it: landmarks, which are the vertices of point models,
/// and the lines of other items. What is not visible can't be picked.
class LandmarkPicker
{
public:
    LandmarkPicker(const StackSlice& slice, const QTransform& imageToView)
        : slice_(slice)
        , imageToView_(imageToView)
    {}

    /// The item, or its model where it states nothing itself, is to be drawn.
    static bool isVisible(const ModelItem& item);

    static bool isPoints(const ModelItem& item);

    /// The place names a vertex or an item that can be seen.
    bool exists(const VertexPlace& place) const;

    /// The nearest landmark within a few pixels of the view; else the nearest line, as a whole item.
    std::optional<VertexPlace> at(const QPointF& viewPoint) const;

    /// The landmarks whose points lie in a rectangle of the view.
    VertexPlaces in(const QRectF& viewRect) const;

    /// All of them, in the order of the items.
    VertexPlaces all() const;

    QPoint vertex(const VertexPlace& place) const;

    /// In the view, the middle of the vertex's pixel.
    QPointF position(const VertexPlace& place) const;

    /// "Primary Sinus 3 at (120, 45)".
    QString describe(const VertexPlace& place) const;

private:
    std::optional<VertexPlace> lineAt(const QPointF& viewPoint) const;
    double distanceToLine(const ModelItem& item, const QPointF& imagePoint) const;

    const StackSlice& slice_;
    QTransform imageToView_;
};
