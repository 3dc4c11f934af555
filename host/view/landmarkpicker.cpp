#include "host/view/landmarkpicker.h"

#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <QRectF>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double landmarkReach = 9.0; // view pixels
constexpr double lineReach = 5.0;

MPrimitive geometryOf(const ModelItem& item)
{
    const Model* model = item.getModel();
    return model && model->getProperties().definesGeometry() ? model->getProperties().getGeometry()
                                                             : PRIMITIVE_UNKNOWN;
}

QPointF middle(const Vector<int>& vertex)
{
    return {vertex[0] + 0.5, vertex[1] + 0.5};
}

double distanceToEdge(const QPointF& point, const QPointF& a, const QPointF& b)
{
    const QPointF way = b - a;
    const double squared = QPointF::dotProduct(way, way);
    const double along =
        squared > 0.0 ? std::clamp(QPointF::dotProduct(point - a, way) / squared, 0.0, 1.0) : 0.0;
    const QPointF rest = point - (a + along * way);
    return std::hypot(rest.x(), rest.y());
}

} // namespace

bool LandmarkPicker::isVisible(const ModelItem& item)
{
    if (item.getProperties().definesRenderingVisibility()) {
        return item.getProperties().getRenderingVisibility();
    }
    const Model* model = item.getModel();
    return !model || !model->getItemProperties().definesRenderingVisibility() ||
           model->getItemProperties().getRenderingVisibility();
}

bool LandmarkPicker::isPoints(const ModelItem& item)
{
    return geometryOf(item) == PRIMITIVE_POLYPOINT;
}

bool LandmarkPicker::exists(const VertexPlace& place) const
{
    if (place.item < 0 || place.item >= slice_.getNumItems()) {
        return false;
    }
    const ModelItem& item = slice_.getItem(place.item);
    return isVisible(item) && (place.isWholeItem() || (isPoints(item) && place.vertex >= 0 &&
                                                       place.vertex < item.getSize()));
}

VertexPlaces LandmarkPicker::all() const
{
    VertexPlaces places;
    for (int i = 0; i < slice_.getNumItems(); ++i) {
        const ModelItem& item = slice_.getItem(i);
        for (int k = 0; isPoints(item) && isVisible(item) && k < item.getSize(); ++k) {
            places.push_back({i, k});
        }
    }
    return places;
}

VertexPlaces LandmarkPicker::in(const QRectF& viewRect) const
{
    VertexPlaces places;
    for (const VertexPlace& place : all()) {
        if (viewRect.contains(position(place))) {
            places.push_back(place);
        }
    }
    return places;
}

std::optional<VertexPlace> LandmarkPicker::at(const QPointF& viewPoint) const
{
    std::optional<VertexPlace> nearest;
    double smallest = landmarkReach;
    for (const VertexPlace& place : all()) {
        const QPointF way = position(place) - viewPoint;
        const double distance = std::hypot(way.x(), way.y());
        if (distance <= smallest) { // of equal ones that which is drawn last
            smallest = distance;
            nearest = place;
        }
    }
    return nearest ? nearest : lineAt(viewPoint);
}

std::optional<VertexPlace> LandmarkPicker::lineAt(const QPointF& viewPoint) const
{
    const QPointF point = imageToView_.inverted().map(viewPoint);
    std::optional<VertexPlace> nearest;
    double smallest = lineReach / imageToView_.m11();
    for (int i = 0; i < slice_.getNumItems(); ++i) {
        const ModelItem& item = slice_.getItem(i);
        const double distance =
            isVisible(item) ? distanceToLine(item, point) : std::numeric_limits<double>::infinity();
        if (distance <= smallest) {
            smallest = distance;
            nearest = VertexPlace{i, VertexPlace::wholeItem};
        }
    }
    return nearest;
}

/// Infinite for items that are no lines.
double LandmarkPicker::distanceToLine(const ModelItem& item, const QPointF& imagePoint) const
{
    double smallest = std::numeric_limits<double>::infinity();
    const MPrimitive geometry = geometryOf(item);
    if (geometry != PRIMITIVE_POLYGON && geometry != PRIMITIVE_POLYLINE) {
        return smallest;
    }
    const Vertices<int>& vertices = item.getVertices();
    const int size = vertices.getSize();
    for (int i = geometry == PRIMITIVE_POLYGON ? 0 : 1; i < size; ++i) {
        smallest =
            std::min(smallest, distanceToEdge(imagePoint, middle(vertices[(i + size - 1) % size]),
                                              middle(vertices[i])));
    }
    return smallest;
}

QPoint LandmarkPicker::vertex(const VertexPlace& place) const
{
    const Vector<int>& vertex = slice_.getItem(place.item).getVertices()[place.vertex];
    return {vertex[0], vertex[1]};
}

QPointF LandmarkPicker::position(const VertexPlace& place) const
{
    return imageToView_.map(QPointF(vertex(place)) + QPointF(0.5, 0.5));
}

QString LandmarkPicker::describe(const VertexPlace& place) const
{
    const ModelItem& item = slice_.getItem(place.item);
    const QString name =
        item.getModel() ? QString::fromStdString(item.getModel()->getName()) : QString("Item");
    if (place.isWholeItem()) {
        return QString("%1, %2 vertices").arg(name).arg(item.getSize());
    }
    const QPoint point = vertex(place);
    return QString("%1 %2 at (%3, %4)")
        .arg(name)
        .arg(place.vertex + 1)
        .arg(point.x())
        .arg(point.y());
}
