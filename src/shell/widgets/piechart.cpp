#include "shell/widgets/piechart.h"

#include <QPainter>

PieChart::PieChart(QWidget* parent)
    : QWidget(parent)
{
    setBackgroundRole(QPalette::Midlight);
    setAutoFillBackground(true);
}

QSize PieChart::sizeHint() const
{
    return QSize(20, 20);
}

void PieChart::setSpanAngle(int degrees)
{
    spanAngle = 16 * degrees;
    startAngle = 16 * ((180 - degrees) / 2);
    update();
}

void PieChart::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(Qt::black, Qt::SolidPattern));
    painter.setBackground(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPie(QRect(5, 5, 35, 35), startAngle, spanAngle);
}
