#include "host/slicedelegate.h"

#include "host/slicelistmodel.h"

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

} // namespace

void SliceDelegate::paint(QPainter* painter,
                          const QStyleOptionViewItem& option,
                          const QModelIndex& index) const
{
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    background.icon = QIcon();
    const QWidget* widget = option.widget;
    const QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, widget);

    const bool selected = option.state & QStyle::State_Selected;
    const QColor text = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    const QColor ground = option.palette.color(selected ? QPalette::Highlight : QPalette::Base);
    const QRect inner = option.rect.adjusted(margin, margin, -margin, -margin);
    painter->save();
    const QRect room(inner.left(), inner.center().y() - pictureSide / 2 + 1, pictureSide,
                     pictureSide);
    drawPicture(*painter, index.data(Qt::DecorationRole).value<QPixmap>(), room, text);

    const QFontMetrics metrics(option.font);
    const int line = metrics.lineSpacing();
    const QRect texts(room.right() + 2 * margin, inner.top() + margin,
                      inner.right() - room.right() - 2 * margin, inner.height() - 2 * margin);
    painter->setPen(text);
    painter->setFont(option.font);
    painter->drawText(
        QRect(texts.left(), texts.top(), texts.width(), line), Qt::AlignLeft | Qt::AlignVCenter,
        metrics.elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideMiddle, texts.width()));
    const auto mark =
        static_cast<SliceListModel::Mark>(index.data(SliceListModel::MarkRole).toInt());
    const double side = 0.75 * metrics.height();
    const int second = texts.top() + line + margin / 2;
    drawMark(*painter, mark, QRectF(texts.left(), second + (line - side) / 2.0, side, side), text,
             ground.lightness() < 128);
    QColor faint = text;
    faint.setAlpha(200);
    painter->setPen(faint);
    const int indent = static_cast<int>(side) + margin;
    painter->drawText(
        QRect(texts.left() + indent, second, texts.width() - indent, texts.bottom() - second + 1),
        Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
        index.data(SliceListModel::RemarkRole).toString());
    painter->restore();
}

QSize SliceDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    const int lines = 3 * QFontMetrics(option.font).lineSpacing() + 5 * margin;
    return {pictureSide + 100, std::max(pictureSide + 2 * margin, lines)};
}
