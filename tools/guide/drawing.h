#pragma once

#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QString>

/// A white picture.
QImage whitePage(const QSize& size);

/// Smooth lines and the letters of labels, in black.
void setUpLabels(QPainter& painter);

/// A thin line from a place in the figure to its name, which begins at `text`.
void drawCallout(QPainter& painter, const QPointF& place, const QPointF& text, const QString& name);

/// A name on a light ground, its middle at `centre`.
void drawName(QPainter& painter, const QPointF& centre, const QString& name);
