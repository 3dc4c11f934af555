// The figures that explain the measures, the averages and the exported teeth.

#include "guide/drawing.h"
#include "guide/figures.h"
#include "guide/leafview.h"
#include "shape/curves/curve.h"
#include "system/exception.h"

#include <QDir>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

const QColor lengthColour(200, 30, 30);
const QColor widthColour(170, 90, 0);
const QColor hullColour(110, 60, 170);

/// A photograph made pale, so that what is drawn on it shows.
QImage pale(const QImage& picture)
{
    QImage result = picture.convertToFormat(QImage::Format_RGB32);
    QPainter painter(&result);
    painter.fillRect(result.rect(), QColor(255, 255, 255, 130));
    return result;
}

double across(const QPointF& a, const QPointF& b)
{
    return a.x() * b.y() - a.y() * b.x();
}

QPolygonF convexHull(QPolygonF points)
{
    std::sort(points.begin(), points.end(), [](const QPointF& a, const QPointF& b) {
        return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
    });
    QPolygonF hull;
    for (int pass = 0; pass < 2; ++pass) {
        const int begin = hull.size();
        for (const QPointF& point : points) {
            while (hull.size() >= begin + 2 && across(hull[hull.size() - 1] - hull[hull.size() - 2],
                                                      point - hull[hull.size() - 1]) <= 0.0) {
                hull.removeLast();
            }
            hull.append(point);
        }
        hull.removeLast();
        std::reverse(points.begin(), points.end());
    }
    return hull;
}

/// The vertices from one junction over the apex to the other.
QPolygonF bladeOf(const LeafView& leaf)
{
    const QPolygonF contour = leaf.points("Contour");
    const QPolygonF junctions = leaf.points("Petiole");
    const int a = contour.indexOf(junctions.first());
    const int b = contour.indexOf(junctions.last());
    return QPolygonF(contour.mid(std::min(a, b), std::abs(b - a) + 1));
}

/// The point of a list that is farthest from a line, on the side that `sign` tells.
QPointF
farthest(const QPolygonF& points, const QPointF& origin, const QPointF& direction, double sign)
{
    return *std::max_element(points.begin(), points.end(), [&](const QPointF& u, const QPointF& v) {
        return sign * across(direction, u - origin) < sign * across(direction, v - origin);
    });
}

QPointF foot(const QPointF& point, const QPointF& origin, const QPointF& direction)
{
    return origin + direction * (QPointF::dotProduct(point - origin, direction) /
                                 QPointF::dotProduct(direction, direction));
}

QImage leafMeasures(const LeafView& leaf)
{
    const QRectF part(140, 60, 620, 1060);
    constexpr double scale = 0.42;
    QImage picture =
        pale(leaf.draw(part, scale, 0.6, {"Contour", "Petiole", "Primary Sinus", "Apex"}));
    const auto place = [&](const QPointF& point) { return (point - part.topLeft()) * scale; };
    const QPolygonF junctions = leaf.points("Petiole");
    const QPointF middle = (junctions.first() + junctions.last()) / 2.0;
    const QPointF apex = leaf.points("Apex").first();
    const QPolygonF blade = bladeOf(leaf);

    QPainter painter(&picture);
    setUpLabels(painter);
    painter.setPen(QPen(hullColour, 1.5, Qt::DashLine));
    QPolygonF hull;
    for (const QPointF& point : convexHull(blade)) {
        hull.append(place(point));
    }
    painter.drawPolygon(hull);
    painter.setPen(QPen(lengthColour, 2.0));
    painter.drawLine(place(middle), place(apex));
    const auto drawWidth = [&](const QPolygonF& points, const QColor& colour, Qt::PenStyle style) {
        painter.setPen(QPen(colour, 2.0, style));
        QPointF last;
        for (const double sign : {-1.0, 1.0}) {
            const QPointF end = farthest(points, middle, apex - middle, sign);
            last = foot(end, middle, apex - middle);
            painter.drawLine(place(end), place(last));
        }
        return place(last);
    };
    const QPointF boxAt = drawWidth(blade, widthColour, Qt::SolidLine);
    const QPointF sinusAt =
        drawWidth(leaf.points("Primary Sinus"), QColor(0, 130, 0), Qt::SolidLine);
    painter.setPen(Qt::black);
    drawName(painter, boxAt + QPointF(-64, -14), "Blade_Width(BB)");
    drawName(painter, sinusAt + QPointF(-60, 34), "Blade_Width(IS)");
    drawName(painter, place((middle + apex * 3.0) / 4.0), "Blade_Length");
    drawName(painter, place(middle) + QPointF(0, 22), "Petiole_Width");
    drawName(painter, place(QPointF(640, 180)), "convex hull");
    return picture;
}

QImage toothMeasures(const LeafView& leaf)
{
    const QRectF part(605, 440, 110, 140);
    constexpr double scale = 2.6;
    QImage picture = pale(leaf.draw(part, scale, 0.9));
    const auto place = [&](const QPointF& point) {
        return (point + QPointF(0.5, 0.5) - part.topLeft()) * scale;
    };
    const QPolygonF contour = leaf.points("Contour");
    const auto indexNear = [&](const QString& model, const QPointF& at) {
        const QPolygonF points = leaf.points(model);
        return contour.indexOf(*std::min_element(
            points.begin(), points.end(), [&](const QPointF& a, const QPointF& b) {
                return (a - at).manhattanLength() < (b - at).manhattanLength();
            }));
    };
    const int tip = indexNear("Primary Peak", part.center());
    int first = 0;
    int last = contour.size();
    for (const QPointF& sinus : leaf.points("Primary Sinus")) {
        const int at = contour.indexOf(sinus);
        first = at < tip ? std::max(first, at) : first;
        last = at > tip ? std::min(last, at) : last;
    }
    const QPolygonF chain(contour.mid(first, last - first + 1));
    const QPointF chord = contour[last] - contour[first];
    const QPointF top = farthest(chain, contour[first], chord, -1.0);

    QPainter painter(&picture);
    setUpLabels(painter);
    QPolygonF area;
    for (const QPointF& point : chain) {
        area.append(place(point));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 220, 90, 130));
    painter.drawPolygon(area);
    painter.setPen(QPen(widthColour, 2.0));
    painter.drawLine(place(contour[first]), place(contour[last]));
    painter.setPen(QPen(lengthColour, 2.0));
    painter.drawLine(place(top), place(foot(top, contour[first], chord)));
    painter.setPen(QPen(hullColour, 2.0, Qt::DashLine));
    painter.drawLine(place((contour[first] + contour[last]) / 2.0), place(contour[tip]));
    painter.setPen(Qt::black);
    drawName(painter, place((contour[first] + contour[last]) / 2.0) + QPointF(-50, 0), "width");
    drawName(painter, place(contour[tip]) + QPointF(6, -22), "tip");
    const QPointF base = foot(top, contour[first], chord);
    drawName(painter, place((top + base) / 2.0) + QPointF(-10, -16), "altitude");
    drawName(painter,
             place((contour[tip] + (contour[first] + contour[last]) / 2.0) / 2.0) + QPointF(4, 30),
             "median");
    return picture;
}

QPolygonF readCurve(const QString& path)
{
    Curve<float> curve;
    curve.load(path.toStdString());
    QPolygonF points;
    for (int i = 0; i < curve.getSize(); ++i) {
        points.append(QPointF(double(curve[i][0]), double(curve[i][1])));
    }
    return points;
}

/// Curves over each other, at one scale, from left to right.
QImage curvesOver(const QStringList& files, const QSize& size, const QList<QColor>& colours)
{
    QList<QPolygonF> curves;
    QRectF box;
    for (const QString& file : files) {
        curves.append(readCurve(file));
        box = box.united(curves.last().boundingRect());
    }
    if (curves.isEmpty()) {
        raise<ValueError>("QImage curvesOver(...)", "There are no curves to draw");
    }
    constexpr int margin = 16;
    QImage picture = whitePage(size);
    QPainter painter(&picture);
    setUpLabels(painter);
    const double scale = std::min((size.width() - 2 * margin) / box.width(),
                                  (size.height() - 2 * margin) / box.height());
    const QPointF origin(margin - box.left() * scale, size.height() - margin + box.top() * scale);
    painter.setPen(QPen(QColor(150, 150, 150), 1.0));
    painter.drawLine(QPointF(0, origin.y()), QPointF(size.width(), origin.y()));
    painter.drawLine(QPointF(origin.x(), 0), QPointF(origin.x(), size.height()));
    for (int k = 0; k < curves.size(); ++k) {
        QPolygonF drawn;
        for (const QPointF& point : curves[k]) {
            drawn.append(origin + QPointF(point.x(), -point.y()) * scale);
        }
        painter.setPen(QPen(colours[k % colours.size()], 1.5));
        painter.drawPolyline(drawn);
    }
    return picture;
}

QStringList curveFiles(const QString& folder, const QStringList& patterns)
{
    QStringList files;
    for (const QString& name : QDir(folder).entryList(patterns, QDir::Files, QDir::Name)) {
        if (!name.contains("-sampled")) {
            files.append(folder + "/" + name);
        }
    }
    return files;
}

} // namespace

void addMeasureFigures(Figures& figures, const QString& folder)
{
    const LeafView leaf(folder + "/serrate-tips.sdf", "plain-03");
    figures["guide-leaf-measures.png"] = leafMeasures(leaf);
    figures["guide-tooth-measures.png"] = toothMeasures(leaf);
    figures["guide-averages.png"] =
        curvesOver(curveFiles(folder + "/averages", {"*-ho-*.cv"}), QSize(440, 270),
                   {QColor(200, 60, 30), QColor(40, 110, 200), QColor(0, 140, 60)});
    figures["guide-teeth.png"] = curvesOver(curveFiles(folder + "/teeth/l/3", {"*.cv"}),
                                            QSize(440, 200), {QColor(0, 90, 160, 150)});
}
