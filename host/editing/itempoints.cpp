#include "host/editing/itempoints.h"

#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

Vector<int> vertexOf(const QPoint& point)
{
    Vector<int> vertex(2);
    vertex[0] = point.x();
    vertex[1] = point.y();
    return vertex;
}

QPoint pointOf(const Vector<int>& vertex)
{
    return {vertex[0], vertex[1]};
}

Vertices<int> verticesOf(const std::vector<QPoint>& points)
{
    Vertices<int> vertices(2, static_cast<int>(points.size()), 0, 16);
    for (std::size_t i = 0; i < points.size(); ++i) {
        vertices[static_cast<int>(i)] = vertexOf(points[i]);
    }
    return vertices;
}

std::vector<QPoint> pointsOf(const ModelItem& item)
{
    std::vector<QPoint> points;
    for (int i = 0; i < item.getSize(); ++i) {
        points.push_back(pointOf(item.getVertices()[i]));
    }
    return points;
}

bool holdsPoints(const Model& model)
{
    return model.getProperties().definesGeometry() &&
           model.getProperties().getGeometry() == PRIMITIVE_POLYPOINT;
}

bool isRegion(const ModelItem& item)
{
    const Model* model = item.getModel();
    return model && model->getProperties().definesGeometry() &&
           model->getProperties().getGeometry() == PRIMITIVE_REGION;
}
