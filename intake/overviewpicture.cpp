#include "intake/overviewpicture.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int longSide = 1600;

QPolygonF polygon(const std::vector<cv::Point>& points, double scale)
{
    QPolygonF result;
    for (const cv::Point& point : points) {
        result.append(QPointF((point.x + 0.5) * scale, (point.y + 0.5) * scale));
    }
    return result;
}

QPolygonF polygon(const Curve<int>& outline, const cv::Point& corner, double scale)
{
    QPolygonF result;
    for (int i = 0; i < outline.getSize(); ++i) {
        result.append(QPointF((outline[i][0] + corner.x + 0.5) * scale,
                              (outline[i][1] + corner.y + 0.5) * scale));
    }
    return result;
}

/// Text that can be read on every ground.
void drawText(QPainter& painter, const QRectF& around, const QString& text, const QColor& colour)
{
    const QRectF bounds(painter.viewport());
    QRectF place = painter.fontMetrics().boundingRect(text).adjusted(-3, -1, 3, 1);
    place.moveCenter(around.center());
    place.moveLeft(std::clamp(place.left(), 0.0, std::max(0.0, bounds.width() - place.width())));
    place.moveTop(std::clamp(place.top(), 0.0, std::max(0.0, bounds.height() - place.height())));
    painter.fillRect(place, QColor(255, 255, 255, 200));
    painter.setPen(colour);
    painter.drawText(place, Qt::AlignCenter, text);
}

/// What the scale was taken from, with its misfit.
void drawScale(QPainter& painter, const FoundScale& found, double scale)
{
    const QColor colour(170, 0, 170);
    QPolygonF line;
    for (const cv::Point2d& corner : found.place) {
        line.append(QPointF((corner.x + 0.5) * scale, (corner.y + 0.5) * scale));
    }
    painter.setPen(QPen(colour, 2.0));
    painter.drawPolygon(line);
    drawText(painter, line.boundingRect(),
             QString::number(found.pixelSize, 'g', 5) + " mm a pixel, misfit " +
                 QString::number(found.misfit, 'f', 2) + " %",
             colour);
}

} // namespace

QImage OverviewPicture::draw(const IntakePicture& picture,
                             const FoundLeaves& found,
                             const std::vector<IntakeLeaf>& leaves)
{
    const cv::Mat& pixels = picture.pixels.pixels();
    const QImage whole(pixels.data, pixels.cols, pixels.rows, static_cast<int>(pixels.step),
                       QImage::Format_RGB888);
    const double scale = std::min(1.0, double(longSide) / std::max(pixels.cols, pixels.rows));
    const QSize size(std::max(1, int(pixels.cols * scale)), std::max(1, int(pixels.rows * scale)));
    QImage sheet = whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .convertToFormat(QImage::Format_RGB32);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font;
    font.setPixelSize(std::max(11, std::max(size.width(), size.height()) / 60));
    painter.setFont(font);
    const QColor leafColour(0, 70, 255);
    const QColor otherColour(220, 0, 0);
    for (const FoundObject& object : found.objects) {
        if (object.isLeaf) {
            continue;
        }
        const QRectF box(object.box.x * scale, object.box.y * scale, object.box.width * scale,
                         object.box.height * scale);
        painter.setPen(QPen(otherColour, 1.5));
        painter.drawRect(box);
        painter.drawLine(box.topLeft(), box.bottomRight());
        painter.drawLine(box.topRight(), box.bottomLeft());
        if (object.verdict != "small") {
            drawText(painter, box, QString::fromStdString(object.verdict), otherColour);
        }
    }
    for (std::size_t i = 0; i < found.leaves.size(); ++i) {
        const FoundObject& object = found.objects[std::size_t(found.leaves[i])];
        const bool traced = i < leaves.size() && leaves[i].outline.outline.getSize() > 0;
        const QPolygonF line =
            traced ? polygon(leaves[i].outline.outline, leaves[i].cut.part.tl(), scale)
                   : polygon(object.outline, scale);
        painter.setPen(QPen(leafColour, 2.0));
        painter.drawPolygon(line);
        if (i < leaves.size()) {
            drawText(painter, line.boundingRect(), QString::fromStdString(leaves[i].name),
                     leafColour);
        }
    }
    if (picture.scale.found) {
        drawScale(painter, picture.scale, scale);
    }
    return sheet;
}
