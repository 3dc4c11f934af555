#include "guide/drawing.h"

QImage whitePage(const QSize& size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    return picture;
}

void setUpLabels(QPainter& painter)
{
    QFont font("DejaVu Sans");
    font.setPixelSize(12);
    painter.setFont(font);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::black);
    painter.setBrush(Qt::NoBrush);
}

void drawCallout(QPainter& painter, const QPointF& place, const QPointF& text, const QString& name)
{
    painter.save();
    painter.setPen(QPen(QColor(90, 90, 90), 1.0));
    painter.drawLine(place, text - QPointF(3, 0));
    painter.restore();
    painter.drawText(QRectF(text.x(), text.y() - 20, 200, 40), Qt::AlignVCenter | Qt::AlignLeft,
                     name);
}

void drawName(QPainter& painter, const QPointF& centre, const QString& name)
{
    const QRectF room = painter.fontMetrics().boundingRect(name).adjusted(-3, -1, 3, 1);
    QRectF box(QPointF(), room.size());
    box.moveCenter(centre);
    painter.fillRect(box, QColor(255, 255, 255, 215));
    painter.drawText(box, Qt::AlignCenter, name);
}
