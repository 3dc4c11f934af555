// Part of `ModelItem`: the tests against points: near which vertex, near which segment, inside or
// outside.

#include "shape/curves/curve.h"
#include "stack/model.h"
#include "stack/modelitem.h"

#include <memory>

namespace {

using Wide = long long;

struct Difference
{
    Wide x;
    Wide y;
};

Difference difference(const Vector<int>& to, const Vector<int>& from)
{
    return {Wide(to[0]) - from[0], Wide(to[1]) - from[1]};
}

Wide dot(Difference u, Difference w)
{
    return u.x * w.x + u.y * w.y;
}

Wide cross(Difference u, Difference w)
{
    return u.x * w.y - u.y * w.x;
}

Wide squareDistance(const Vector<int>& a, const Vector<int>& b)
{
    const Difference d = difference(a, b);
    return dot(d, d);
}

bool liesOnSegment(const Vector<int>& a, const Vector<int>& b, const Vector<int>& p)
{
    const Difference u = difference(b, a);
    const Difference w = difference(p, a);
    return cross(u, w) == 0 && dot(u, w) >= 0 && dot(w, w) <= dot(u, u);
}

bool liesOnOutline(const Vertices<int>& outline, const Vector<int>& p)
{
    const int n = outline.getSize();
    for (int i = 0; i < n; ++i) {
        if (liesOnSegment(outline[i], outline[(i + 1) % n], p)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool ModelItem::pointNearSegment(
    const Vector<int>& a, const Vector<int>& b, const Vector<int>& p, int tolerance, bool withEnds)
{
    const Wide limit = Wide(tolerance) * tolerance;
    const Difference u = difference(b, a);
    const Difference w = difference(p, a);
    const Wide along = dot(u, w);
    const Wide square = dot(u, u);
    if (along > 0 && along < square) {
        const auto height = static_cast<float>(cross(u, w));
        if (height * height / static_cast<float>(square) <= static_cast<float>(limit)) {
            return true;
        }
    }
    return withEnds && (squareDistance(p, a) <= limit || squareDistance(p, b) <= limit);
}

int ModelItem::findNearVertex(const Vector<int>& p, int tolerance) const
{
    const int n = vertices.getSize();
    switch (primitive()) {
    case PRIMITIVE_POLYPOINT:
        for (int i = 0; i < n; ++i) {
            if (squareDistance(p, vertices[i]) <= Wide(tolerance) * tolerance) {
                return i;
            }
        }
        return -1;
    case PRIMITIVE_REGION:
        return rleItemSet.findNearVertex(regionPosition(p), tolerance);
    case PRIMITIVE_POLYGON:
        if (n > 0 && pointNearSegment(vertices[n - 1], vertices[0], p, tolerance, true)) {
            return 0;
        }
        [[fallthrough]];
    case PRIMITIVE_POLYLINE:
        for (int i = 1; i < n; ++i) {
            if (pointNearSegment(vertices[i - 1], vertices[i], p, tolerance, true)) {
                return i;
            }
        }
        return -1;
    default:
        return -1;
    }
}

int ModelItem::findNearestVertex(const Vector<int>& p, int tolerance) const
{
    const Wide limit = Wide(tolerance) * tolerance;
    if (primitive() == PRIMITIVE_REGION) {
        const Vector<int> position = regionPosition(p);
        const int pixel = rleItemSet.findNearestVertex(position);
        return pixel >= 0 && squareDistance(position, rleItemSet.vertex(pixel)) <= limit ? pixel
                                                                                         : -1;
    }
    int nearest = -1;
    Wide smallest = limit;
    for (int i = 0; i < vertices.getSize(); ++i) {
        const Wide distance = squareDistance(p, vertices[i]);
        if (distance < smallest || (nearest < 0 && distance == limit)) {
            smallest = distance;
            nearest = i;
        }
    }
    return nearest;
}

int ModelItem::findInsertion(const Vector<int>& p, int tolerance) const
{
    const int n = vertices.getSize();
    if (primitive() == PRIMITIVE_POLYPOINT) {
        return n;
    }
    for (int i = 0; i + 1 < n; ++i) {
        if (pointNearSegment(vertices[i], vertices[i + 1], p, tolerance, false)) {
            return i + 1;
        }
    }
    if (isClosed() && n > 0 &&
        pointNearSegment(vertices[n - 1], vertices[0], p, tolerance, false)) {
        return n;
    }
    return -1;
}

bool ModelItem::partiallyContains(const ModelItem& other) const
{
    if (!isClosed() || slice != other.slice || slice == nullptr) {
        return false;
    }
    const std::unique_ptr<Shape<double>> shape(toShape<double>());
    const auto& outline = static_cast<const Curve<double>&>(*shape);
    const BoundingBox<int> box = vertices.boundingBox();
    const Vertices<int> points = other.pixels();
    for (int i = 0; i < points.getSize(); ++i) {
        const Vector<int>& p = points[i];
        if (box.contains(p) &&
            (liesOnOutline(vertices, p) || outline.contains(p.toType<double>(), 0, 1))) {
            return true;
        }
    }
    return false;
}

// Run-length sets count rows first.
Vector<int> ModelItem::regionPosition(const Vector<int>& p)
{
    Vector<int> position(2);
    position[0] = p[1];
    position[1] = p[0];
    return position;
}
