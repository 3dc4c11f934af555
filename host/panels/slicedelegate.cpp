#include "host/panels/slicedelegate.h"

#include "host/panels/slicelistmodel.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

constexpr int margin = 5;

void drawTick(QPainter& painter, const QRectF& box, bool dark)
{
    painter.setPen(QPen(dark ? QColor(110, 210, 130) : QColor(20, 130, 50), 2.0, Qt::SolidLine,
                        Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({box.topLeft() + QPointF(1.0, 0.55 * box.height()),
                                    box.topLeft() + QPointF(0.4 * box.width(), box.height() - 1.5),
                                    box.topRight() + QPointF(-0.5, 1.5)}));
}

void drawRing(QPainter& painter, const QRectF& box, const QColor& colour)
{
    painter.setPen(QPen(colour, 1.6, Qt::DotLine, Qt::RoundCap));
    painter.drawEllipse(box.adjusted(1.0, 1.0, -1.0, -1.0));
}

void drawWarning(QPainter& painter, const QRectF& box, bool dark)
{
    QPainterPath triangle;
    triangle.moveTo(box.center().x(), box.top());
    triangle.lineTo(box.bottomRight());
    triangle.lineTo(box.bottomLeft());
    triangle.closeSubpath();
    painter.fillPath(triangle, dark ? QColor(250, 180, 60) : QColor(200, 110, 0));
    painter.setPen(QPen(dark ? Qt::black : Qt::white, 1.6, Qt::SolidLine, Qt::RoundCap));
    const double x = box.center().x();
    painter.drawLine(QPointF(x, box.top() + 0.38 * box.height()),
                     QPointF(x, box.top() + 0.62 * box.height()));
    painter.drawPoint(QPointF(x, box.top() + 0.85 * box.height()));
}

void drawMark(
    QPainter& painter, SliceListModel::Mark mark, const QRectF& box, const QColor& text, bool dark)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    switch (mark) {
    case SliceListModel::Mark::Good:
        drawTick(painter, box, dark);
        break;
    case SliceListModel::Mark::Missing:
        drawRing(painter, box, text);
        break;
    case SliceListModel::Mark::Suspicious:
        drawWarning(painter, box, dark);
        break;
    }
}

void drawPicture(QPainter& painter, const QPixmap& picture, const QRect& room, QColor frame)
{
    if (picture.isNull()) {
        frame.setAlpha(60);
        painter.setPen(frame);
        painter.drawRect(room.adjusted(0, 0, -1, -1));
        return;
    }
    const QSize size = picture.size().scaled(room.size(), Qt::KeepAspectRatio);
    QRect place(QPoint(), size);
    place.moveCenter(room.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, picture);
}

void drawName(QPainter& painter,
              const QString& name,
              const QRect& room,
              const QFont& font,
              const QColor& colour)
{
    const QFontMetrics metrics(font);
    painter.setPen(colour);
    painter.setFont(font);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignTop,
                     metrics.elidedText(name, Qt::ElideMiddle, room.width()));
}

void drawRemark(
    QPainter& painter, const QString& remark, const QRect& room, const QFont& font, QColor colour)
{
    QFont smaller = font;
    if (smaller.pointSizeF() > 0.0) {
        smaller.setPointSizeF(0.9 * smaller.pointSizeF());
    }
    colour.setAlpha(200);
    painter.setPen(colour);
    painter.setFont(smaller);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, remark);
}

} // namespace

void SliceDelegate::paint(QPainter* painter,
                          const QStyleOptionViewItem& option,
                          const QModelIndex& index) const
{
    paintGround(*painter, option, index);
    const bool selected = option.state & QStyle::State_Selected;
    const QColor colour =
        option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    const bool dark = colour.lightness() > 128;
    const QRect inner = option.rect.adjusted(margin, margin, -margin, -margin);
    const QRect room(inner.left(), inner.center().y() - pictureSide / 2 + 1, pictureSide,
                     pictureSide);
    const QRect texts(room.right() + 2 * margin, inner.top(),
                      inner.right() - room.right() - 2 * margin, inner.height());
    const QFontMetrics metrics(option.font);
    const int line = metrics.lineSpacing();
    const double side = 0.75 * metrics.height();
    const int second = texts.top() + line;
    painter->save();
    drawPicture(*painter, index.data(Qt::DecorationRole).value<QPixmap>(), room, colour);
    drawName(*painter, index.data().toString(), texts, option.font, colour);
    drawMark(*painter,
             static_cast<SliceListModel::Mark>(index.data(SliceListModel::MarkRole).toInt()),
             QRectF(texts.left(), second + (line - side) / 2.0, side, side), colour, dark);
    QRect rest = texts;
    rest.setTop(second);
    rest.setLeft(texts.left() + static_cast<int>(side) + margin);
    drawRemark(*painter, index.data(SliceListModel::RemarkRole).toString(), rest, option.font,
               colour);
    painter->restore();
}

/// The ground of the row as the style draws it, selected or not, without text and icon.
void SliceDelegate::paintGround(QPainter& painter,
                                const QStyleOptionViewItem& option,
                                const QModelIndex& index) const
{
    QStyleOptionViewItem ground = option;
    initStyleOption(&ground, index);
    ground.text.clear();
    ground.icon = QIcon();
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &ground, &painter, option.widget);
}

QSize SliceDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    const int lines = 3 * QFontMetrics(option.font).lineSpacing() + 5 * margin;
    return {pictureSide + 100, std::max(pictureSide + 2 * margin, lines)};
}
