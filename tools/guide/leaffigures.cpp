// The figures that show leaves, and the symbols of the models.

#include "guide/drawing.h"
#include "guide/figures.h"
#include "guide/leafview.h"
#include "interface/itempainter.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

const char* const leafName = "plain-03";

/// The point of a list that is nearest to a place.
QPointF nearest(const QPolygonF& points, const QPointF& place)
{
    return *std::min_element(points.begin(), points.end(), [&](const QPointF& a, const QPointF& b) {
        const QPointF u = a - place;
        const QPointF v = b - place;
        return QPointF::dotProduct(u, u) < QPointF::dotProduct(v, v);
    });
}

/// Pictures beside each other with a caption below each.
QImage besideEachOther(const QList<QPair<QImage, QString>>& parts)
{
    constexpr int gap = 8;
    constexpr int captionHeight = 20;
    QSize size(0, 0);
    for (const auto& part : parts) {
        size = QSize(size.width() + part.first.width() + (size.width() > 0 ? gap : 0),
                     std::max(size.height(), part.first.height()));
    }
    QImage picture = whitePage(size + QSize(0, captionHeight));
    QPainter painter(&picture);
    setUpLabels(painter);
    int x = 0;
    for (const auto& part : parts) {
        painter.drawImage(x, 0, part.first);
        painter.drawText(QRectF(x, size.height(), part.first.width(), captionHeight),
                         Qt::AlignCenter, part.second);
        x += part.first.width() + gap;
    }
    return picture;
}

/// The parts of a leaf and their landmarks, with their names.
QImage anatomy(const LeafView& leaf)
{
    const QRectF part(190, 60, 520, 1160);
    constexpr double scale = 0.36;
    const QPointF corner(8, 8);
    QImage picture = whitePage(QSize(330, 434));
    QPainter painter(&picture);
    painter.drawImage(corner, leaf.draw(part, scale, 0.75));
    setUpLabels(painter);
    const auto place = [&](const QPointF& point) {
        return corner + (point - part.topLeft()) * scale;
    };
    const QPolygonF junctions = leaf.points("Petiole");
    const QPolygonF tips = leaf.points("Primary Peak");
    const QPolygonF sinuses = leaf.points("Primary Sinus");
    const double right = corner.x() + part.width() * scale;
    drawCallout(painter, place(leaf.points("Apex").first()), QPointF(right + 14, 24), "apex");
    drawCallout(painter, place(nearest(tips, QPointF(640, 390))), QPointF(right + 14, 110),
                "tip of a tooth");
    drawCallout(painter, place(nearest(sinuses, QPointF(640, 500))), QPointF(right + 14, 160),
                "sinus");
    drawCallout(painter, place(QPointF(605, 880)), QPointF(right + 14, 290), "contour");
    drawCallout(painter, place(junctions.last()), QPointF(right + 14, 350),
                "junctions of\nblade and petiole");
    drawCallout(painter, place(junctions.first()), QPointF(right + 14, 350), QString());
    drawCallout(painter, place(QPointF(455, 1130)), QPointF(right + 14, 412), "petiole");
    painter.setPen(Qt::white);
    painter.drawText(QRectF(place(QPointF(460, 600)), QSizeF(60, 40)), Qt::AlignCenter,
                     "lower\nhalf");
    painter.drawText(QRectF(place(QPointF(280, 600)), QSizeF(60, 40)), Qt::AlignCenter,
                     "upper\nhalf");
    return picture;
}

QImage photographs(const QString& folder)
{
    constexpr double scale = 0.15;
    const QRectF whole(0, 0, 900, 1300);
    const LeafView light(folder + "/serrate.sdf", leafName);
    const LeafView dark(folder + "/lobed.sdf");
    return besideEachOther(
        {{light.draw(whole, scale, 1.0, {"none"}), "light background"},
         {dark.draw(whole, scale, 1.0, {"none"}), "dark background"},
         {light.draw(QRectF(330, 150, 570, 823), 0.2369, 1.0, {"none"}), "touches the edge"}});
}

QImage fidelities(const QString& folder)
{
    QList<QPair<QImage, QString>> parts;
    for (const QString& percent : QStringList({"100", "50", "20"})) {
        const LeafView leaf(
            folder + (percent == "100" ? "/serrate.sdf" : "/serrate-" + percent + ".sdf"),
            leafName);
        parts.append(
            {leaf.draw(QRectF(590, 330, 116, 140), 1.2, 0.6, {"Contour"}), percent + " %"});
    }
    return besideEachOther(parts);
}

/// The angle that decides on a sinus: between the points `steps` before and behind it.
QImage sinusAngle(const LeafView& leaf, int steps)
{
    const QRectF part(600, 420, 120, 120);
    constexpr double scale = 2.0;
    QImage picture = leaf.draw(part, scale, 0.7, {"Contour", "Primary Sinus"});
    const QPolygonF contour = leaf.points("Contour");
    const QPointF sinus = nearest(leaf.points("Primary Sinus"), part.center());
    const int at = contour.indexOf(nearest(contour, sinus));
    const auto place = [&](int index) {
        return (contour[index] + QPointF(0.5, 0.5) - part.topLeft()) * scale;
    };
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(220, 70, 0), 2.0));
    painter.drawPolyline(QPolygonF({place(at - steps), place(at), place(at + steps)}));
    painter.setBrush(QColor(220, 70, 0));
    for (const int index : {at - steps, at + steps}) {
        painter.drawEllipse(place(index), 3.0, 3.0);
    }
    return picture;
}

QImage sinuses(const QString& folder)
{
    const LeafView leaf(folder + "/serrate-sinus.sdf", leafName);
    return besideEachOther({{leaf.draw(QRectF(200, 60, 500, 1000), 0.24, 0.55), "apex and sinuses"},
                            {sinusAngle(leaf, 25), "25 steps to either side of a sinus"}});
}

QImage tips(const QString& folder)
{
    const LeafView pinnate(folder + "/serrate-tips.sdf", leafName);
    const LeafView palmate(folder + "/lobed.sdf");
    return besideEachOther(
        {{pinnate.draw(QRectF(200, 60, 500, 1000), 0.24, 0.55), "pinnate"},
         {palmate.draw(QRectF(110, 230, 680, 680), 0.353, 0.7), "palmate: the apex is a tip"}});
}

QImage tipMethods(const QString& folder)
{
    const LeafView curvature(folder + "/serrate-tips.sdf", leafName);
    const LeafView symmetry(folder + "/serrate-symmetry.sdf", leafName);
    const QRectF part(580, 310, 130, 130);
    return besideEachOther({{curvature.draw(part, 1.6, 0.9), "Maximal Positive Curvature"},
                            {symmetry.draw(part, 1.6, 0.9), "Local Symmetry"}});
}

QImage hierarchy(const QString& folder)
{
    const LeafView leaf(folder + "/double.sdf");
    return besideEachOther({{leaf.draw(QRectF(170, 340, 400, 270), 1.0, 0.9),
                             "primary (green, red) and secondary (dark green, orange)"}});
}

void addSymbols(Figures& figures, const QString& folder)
{
    constexpr int side = 30;
    LeafView models(folder + "/models.sdf");
    for (int i = 0; i < models.stack().getNumModels(); ++i) {
        const Model& model = models.stack().getModel(i);
        QImage picture = whitePage(QSize(side, side));
        QPainter painter(&picture);
        ModelItem item;
        item.setModel(models.stack().getModel(i));
        Vector<int> vertex(2);
        const bool isPoint = model.getProperties().getGeometry() == PRIMITIVE_POLYPOINT;
        // A symbol in the middle, or a round outline.
        const int corners = isPoint ? 1 : 24;
        const double radius = isPoint ? 0.0 : 10.0;
        for (int k = 0; k < corners; ++k) {
            const double angle = 2.0 * M_PI * k / corners;
            vertex[0] = static_cast<int>(std::lround(side / 2 + radius * std::cos(angle)));
            vertex[1] = static_cast<int>(std::lround(side / 2 + radius * std::sin(angle)));
            item.appendVertex(vertex);
        }
        ItemPainter(QTransform()).paintItem(painter, item);
        QString name = QString::fromStdString(model.getName()).toLower().replace(' ', '-');
        figures["guide-symbol-" + name + ".png"] = picture;
    }
}

} // namespace

void addLeafFigures(Figures& figures, const QString& folder)
{
    figures["guide-anatomy.png"] = anatomy(LeafView(folder + "/serrate-tips.sdf", leafName));
    figures["guide-photographs.png"] = photographs(folder);
    figures["guide-fidelity.png"] = fidelities(folder);
    figures["guide-junctions.png"] =
        LeafView(folder + "/serrate.sdf", leafName).draw(QRectF(350, 940, 200, 160), 1.4, 1.0);
    figures["guide-sinus.png"] = sinuses(folder);
    figures["guide-tips.png"] = tips(folder);
    figures["guide-tip-methods.png"] = tipMethods(folder);
    figures["guide-hierarchy.png"] = hierarchy(folder);
    addSymbols(figures, folder);
}
