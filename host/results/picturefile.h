#pragma once

#include <QSize>
#include <QString>

#include <functional>

class QPainter;

/// Writes a picture as PNG, with twice as many pixels as `size`, or as SVG, by the suffix of the
/// file; `paint` draws into the rectangle of that size. An older file stays until the new one is
/// whole. Raises `UsageError` for another suffix, `FileWriteError` for a file that can't be written.
void savePicture(const QString& filename,
                 const QSize& size,
                 const std::function<void(QPainter&)>& paint);
