#include "interface/itempainter.h"

#include "stack/model.h"
#include "stack/modelitem.h"

#include <QPainter>
#include <QPolygonF>

#include <algorithm>

namespace {

/// What the item states, and what it leaves to its model.
ModelItemProperties effectiveProperties(const ModelItem& item)
{
    ModelItemProperties properties;
    properties.setDefaults();
    if (item.getModel()) {
        properties.update(item.getModel()->getItemProperties());
    }
    properties.update(item.getProperties());
    return properties;
}

MPrimitive geometryOf(const ModelItem& item)
{
    const Model* model = item.getModel();
    return model && model->getProperties().definesGeometry() ? model->getProperties().getGeometry()
                                                             : PRIMITIVE_UNKNOWN;
}

QColor colourOf(const ModelItemProperties& properties)
{
    const Vector<int>& rgb = properties.getColor();
    return QColor(std::clamp(rgb[0], 0, 255), std::clamp(rgb[1], 0, 255),
                  std::clamp(rgb[2], 0, 255));
}

QPolygonF triangleAround(const QPointF& centre, double radius)
{
    constexpr double half = 0.8660254037844386;
    return QPolygonF({centre + QPointF(0.0, -radius), centre + QPointF(half * radius, 0.5 * radius),
                      centre + QPointF(-half * radius, 0.5 * radius)});
}

QPolygonF diamondAround(const QPointF& centre, double radius)
{
    return QPolygonF({centre + QPointF(0.0, -radius), centre + QPointF(radius, 0.0),
                      centre + QPointF(0.0, radius), centre + QPointF(-radius, 0.0)});
}

QRectF squareAround(const QPointF& centre, double radius)
{
    return QRectF(centre.x() - radius, centre.y() - radius, 2.0 * radius, 2.0 * radius);
}

void paintSymbol(QPainter& painter, VertexSymbol symbol, const QPointF& centre, double radius)
{
    switch (symbol) {
    case VertexSymbol::Cube:
        painter.drawRect(squareAround(centre, radius));
        break;
    case VertexSymbol::Dot:
        painter.drawPoint(centre);
        break;
    case VertexSymbol::Diamond:
        painter.drawPolygon(diamondAround(centre, radius));
        break;
    case VertexSymbol::Tetrahedron:
        painter.drawPolygon(triangleAround(centre, radius));
        break;
    case VertexSymbol::Sphere:
    case VertexSymbol::Unknown:
        painter.drawEllipse(centre, radius, radius);
        break;
    }
}

class SavedPainter
{
public:
    explicit SavedPainter(QPainter& painter)
        : painter_(painter)
    {
        painter_.save();
    }

    ~SavedPainter() { painter_.restore(); }

    SavedPainter(const SavedPainter&) = delete;
    SavedPainter& operator=(const SavedPainter&) = delete;

private:
    QPainter& painter_;
};

} // namespace

ItemPainter::ItemPainter(const QTransform& imageToDevice, double symbolScale)
    : imageToDevice_(imageToDevice)
    , symbolScale_(symbolScale)
{}

double ItemPainter::symbolScaleFor(int width, int height)
{
    constexpr double screen = 1200.0;
    return std::max(1.0, std::max(width, height) / screen);
}

void ItemPainter::paintItems(QPainter& painter, const ModelItemOwner& slice) const
{
    for (const bool points : {false, true}) {
        for (int i = 0; i < slice.getNumItems(); ++i) {
            const ModelItem& item = slice.getItem(i);
            if ((geometryOf(item) == PRIMITIVE_POLYPOINT) == points) {
                paintItem(painter, item);
            }
        }
    }
}

void ItemPainter::paintItem(QPainter& painter, const ModelItem& item) const
{
    const SavedPainter saved(painter);
    painter.resetTransform();
    painter.setRenderHint(QPainter::Antialiasing);
    switch (geometryOf(item)) {
    case PRIMITIVE_POLYGON:
        paintLine(painter, item, true);
        break;
    case PRIMITIVE_POLYLINE:
        paintLine(painter, item, false);
        break;
    case PRIMITIVE_POLYPOINT:
        paintPoints(painter, item);
        break;
    case PRIMITIVE_REGION:
        paintRegion(painter, item);
        break;
    case PRIMITIVE_UNKNOWN:
        break;
    }
}

void ItemPainter::paintSelection(QPainter& painter, const ModelItem& item) const
{
    const SavedPainter saved(painter);
    painter.resetTransform();
    painter.setPen(QPen(Qt::yellow, symbolScale_));
    painter.setBrush(Qt::NoBrush);
    constexpr double margin = 4.0;
    const Vertices<int> selected = item.selectedVertices();
    for (int i = 0; i < selected.getSize(); ++i) {
        painter.drawRect(
            squareAround(imageToDevice_.map(QPointF(selected[i][0] + 0.5, selected[i][1] + 0.5)),
                         margin * symbolScale_));
    }
}

QPointF ItemPainter::position(const ModelItem& item, int vertex) const
{
    const Vector<int>& place = item.getVertices()[vertex];
    return imageToDevice_.map(QPointF(place[0] + 0.5, place[1] + 0.5));
}

void ItemPainter::paintLine(QPainter& painter, const ModelItem& item, bool closed) const
{
    const ModelItemProperties properties = effectiveProperties(item);
    QPen pen(colourOf(properties), double(properties.getLineWidth()) * symbolScale_);
    pen.setJoinStyle(Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    QPolygonF line;
    for (int i = 0; i < item.getSize(); ++i) {
        line.append(position(item, i));
    }
    if (closed) {
        painter.drawPolygon(line);
    } else {
        painter.drawPolyline(line);
    }
}

void ItemPainter::paintPoints(QPainter& painter, const ModelItem& item) const
{
    const ModelItemProperties properties = effectiveProperties(item);
    const VertexSymbol symbol = properties.getVertexSymbol();
    const double size = double(properties.getPointSize()) * symbolScale_;
    const double width =
        symbol == VertexSymbol::Dot ? size : double(properties.getLineWidth()) * symbolScale_;
    QPen pen(colourOf(properties), width);
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(properties.getVertexSymbolFilling() ? QBrush(colourOf(properties))
                                                         : QBrush(Qt::NoBrush));
    for (int i = 0; i < item.getSize(); ++i) {
        paintSymbol(painter, symbol, position(item, i), size);
    }
}

void ItemPainter::paintRegion(QPainter& painter, const ModelItem& item) const
{
    constexpr int tint = 110;
    QColor colour = colourOf(effectiveProperties(item));
    colour.setAlpha(tint);
    painter.setTransform(imageToDevice_);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const Vertices<int> pixels = item.pixels();
    for (int i = 0; i < pixels.getSize(); ++i) {
        painter.fillRect(QRectF(pixels[i][0], pixels[i][1], 1.0, 1.0), colour);
    }
}
