#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

#include <vector>

class QPainter;
class QTransform;
class Slice;

/// The pixels of one slice at full size, and halved again and again, so that it is drawn fast and
/// smoothly at any scale. Or why there are none.
class SlicePicture
{
public:
    /// Reads the image. Raises nothing: what fails is told by `fault`.
    explicit SlicePicture(const Slice& slice);

    /// A sentence for the user; empty if there is a picture.
    const QString& fault() const { return fault_; }

    /// Draws the part that lies in `exposed` of the view; enlarged pixels have sharp edges.
    void paint(QPainter& painter, const QTransform& imageToView, const QRectF& exposed) const;

private:
    const QImage& levelFor(double scale) const;

    std::vector<QImage> levels_;
    QString fault_;
};
